#include "ui/ThumbnailProvider.h"

#include <QByteArray>
#include <QSize>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>

namespace lumisort::ui {

namespace {

constexpr auto encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

std::optional<files::FileUrl> photoOf(const QString& id) {
    const auto name = id.left(id.indexOf(QLatin1Char('?'))).toLatin1();
    const auto decoded =
        QByteArray::fromBase64Encoding(name, encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) return {};
    return files::FileUrl::fromString(decoded.decoded.toStdString());
}

/// `image` within `box`, of which a side that is 0 does not count.
QImage fitted(const QImage& image, QSize box) {
    if (box.width() <= 0) box.setWidth(image.width());
    if (box.height() <= 0) box.setHeight(image.height());
    const auto size = image.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    if (size.width() >= image.width() && size.height() >= image.height()) return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

class Response : public QQuickImageResponse {
public:
    Response() { link_->response = this; }
    ~Response() override {
        cancel();
        const std::scoped_lock lock(link_->mutex);
        link_->response = nullptr;
    }

    void ask(library::ThumbnailStore& store, const files::FileUrl& photo, const QSize& box) {
        store.image(
            photo,
            [link = link_, box](library::Thumbnail thumbnail) {
                const auto image = thumbnail ? fitted(sharedImage(std::move(thumbnail)), box) : QImage();
                const std::scoped_lock lock(link->mutex);
                if (link->response) link->response->finish(image);
            },
            stop_.get_token());
    }
    void finish(const QImage& image) {
        image_ = image;
        Q_EMIT finished();
    }

    void cancel() override { stop_.request_stop(); }
    QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(image_);
    }

private:
    /// The response can go while the store works for it.
    struct Link {
        std::mutex mutex;
        Response* response = nullptr; ///< guarded by mutex
    };

    std::shared_ptr<Link> link_ = std::make_shared<Link>();
    std::stop_source stop_;
    QImage image_; ///< written before `finished`, read after it
};

} // namespace

QString thumbnailSource(const files::FileUrl& photo, int revision) {
    const auto url = photo.string();
    return QStringLiteral("image://thumbnail/%1?revision=%2")
        .arg(QString::fromLatin1(
            QByteArray::fromRawData(url.data(), static_cast<qsizetype>(url.size())).toBase64(encoding)))
        .arg(revision);
}

QQuickImageResponse* ThumbnailProvider::requestImageResponse(const QString& id, const QSize& requestedSize) {
    auto response = std::make_unique<Response>();
    if (const auto photo = photoOf(id))
        response->ask(store_, *photo, requestedSize);
    else
        response->finish({});
    return response.release();
}

QImage sharedImage(library::Thumbnail thumbnail) {
    const auto* pixels = thumbnail->rgba().data();
    const int width = thumbnail->width(), height = thumbnail->height();
    return QImage(
        pixels, width, height, static_cast<qsizetype>(width) * 4, QImage::Format_RGBA8888,
        [](void* held) { delete static_cast<library::Thumbnail*>(held); },
        new library::Thumbnail(std::move(thumbnail)));
}

} // namespace lumisort::ui
