#pragma once

#include "library/OriginalDecodeQueue.h"
#include "ui/PaneGeometry.h"

#include <QSGImageNode>
#include <map>
#include <tuple>

class QQuickWindow;

namespace lumisort::review {

/// The tiles of an original in the scene graph. Those that stay on show keep their textures. Render thread,
/// while the main thread waits.
///
/// A transform that changes nothing, because to nodes that are added later the software renderer hands
/// position and clip on only from parents of a kind that has such.
class TilesNode : public QSGTransformNode {
public:
    void show(QQuickWindow& window, const library::OriginalDecodeQueue::Original& original,
              const ui::PaneView& view);

private:
    using Key = std::tuple<std::size_t, int, int>; ///< level, column, row

    library::OriginalDecodeQueue::Original original_;
    std::map<Key, QSGImageNode*> tiles_; ///< children of this
};

} // namespace lumisort::review
