#pragma once

#include "library/OriginalDecodeQueue.h"
#include "ui/PaneGeometry.h"

#include <QSGImageNode>
#include <map>
#include <tuple>

class QQuickWindow;

namespace lumisort::review {

/// The tiles of an original in the scene graph. Tiles that stay visible keep their textures. Render thread,
/// while the main thread waits.
///
/// An identity QSGTransformNode, not a plain QSGNode: Qt's software renderer passes position and clip to
/// children added later only below transform and clip nodes.
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
