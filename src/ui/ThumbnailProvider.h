#pragma once

#include "library/ThumbnailStore.h"

#include <QImage>
#include <QQuickAsyncImageProvider>
#include <QString>

namespace lumisort::ui {

/// The address of a photo's preview for an Image: `image://thumbnail/<photo>?revision=<n>`, where <photo> is
/// the text of its file URL in Base64 with the URL alphabet and without padding (RFC 4648, section 5). Those
/// characters mean nothing to a URL, so that no name is changed on its way through Qt's URLs, whatever bytes
/// it holds. The revision takes no part in finding the preview; a new one makes an Image ask again.
QString thumbnailSource(const files::FileUrl& photo, int revision);

/// Previews for Image, provider name "thumbnail": decoded by the store, never on the main or the render
/// thread. An Image that goes or changes its source stops its request. Where there is no preview, the Image
/// is Ready and has no size: an error would print a line for each.
///
/// The preview is at most ThumbnailStore::maxSide on its longest side. With a sourceSize it comes scaled to
/// fit into that, which saves memory and looks better than scaling while drawing; it is never enlarged.
class ThumbnailProvider : public QQuickAsyncImageProvider {
public:
    /// The store outlives the provider's engine.
    explicit ThumbnailProvider(library::ThumbnailStore& store) : store_(store) {}

    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

    /// What is shown from now on is decoded anew; call it when LibraryModel::thumbnailRevision rises. Any
    /// thread.
    void forgetAll() { store_.removeAll(); }

private:
    library::ThumbnailStore& store_;
};

/// The pixels of the preview, shared and not copied.
QImage sharedImage(library::Thumbnail thumbnail);

} // namespace lumisort::ui
