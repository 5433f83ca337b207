#include "film/editor/FilmBatch.h"

#include "film/render/FilmRenderError.h"
#include "platform/tasks/Cancellation.h"

#include <QCoroFuture>
#include <QPointer>
#include <utility>

namespace lumisort::film {

namespace {

/// Photos of one name from several folders, and earlier exports, get a number.
constexpr int mostNumbers = 999;

std::string exportName(const files::FileUrl& photo, int number) {
    std::string stem(photo.name());
    if (const auto point = stem.rfind('.'); point != std::string::npos && point > 0) stem.resize(point);
    return stem + "-film" + (number > 1 ? "-" + std::to_string(number) : "") + ".tif";
}

} // namespace

FilmBatch::FilmBatch(FilmEditorServices& services, QObject* parent) : QObject(parent), services_(services) {}

FilmBatch::~FilmBatch() {
    stop_.request_stop();
}

void FilmBatch::prepare(std::vector<files::FileUrl> photos) {
    if (running_ || photos.empty()) return;
    photos_ = std::move(photos);
    finished_ = 0;
    summary_.clear();
    failures_.clear();
    open_ = true;
    Q_EMIT changed();
}

void FilmBatch::run(const QUrl& folder) {
    const auto url = files::FileUrl::fromString(folder.toEncoded().toStdString());
    if (running_ || !url) return;
    folder_ = folder;
    finished_ = 0;
    summary_.clear();
    failures_.clear();
    running_ = true;
    stop_ = {};
    exportAll(*url, stop_.get_token());
}

void FilmBatch::cancel() {
    stop_.request_stop();
}

void FilmBatch::close() {
    if (running_) return;
    open_ = false;
    Q_EMIT changed();
}

QCoro::Task<> FilmBatch::exportAll(files::FileUrl folder, std::stop_token stop) {
    const QPointer<FilmBatch> self(this);
    const auto photos = photos_;
    for (const auto& photo : photos) {
        current_ = QString::fromUtf8(photo.name());
        Q_EMIT changed();
        QString failure;
        try {
            auto exporting = exportOne(photo, folder, stop);
            co_await exporting;
        } catch (const tasks::Cancelled&) {
        } catch (const std::exception& error) {
            failure = QString::fromUtf8(error.what());
        }
        if (!self) co_return;
        if (stop.stop_requested()) break;
        if (!failure.isEmpty()) failures_ += current_ + QStringLiteral(": ") + failure;
        ++finished_;
    }
    const auto exported = finished_ - failures_.size();
    summary_ = exported == 1 ? QStringLiteral("1 photo exported")
                             : QStringLiteral("%1 photos exported").arg(exported);
    if (!failures_.isEmpty()) summary_ += QStringLiteral(" · %1 failed").arg(failures_.size());
    if (stop.stop_requested()) summary_ += QStringLiteral(" · cancelled");
    running_ = false;
    Q_EMIT changed();
}

QCoro::Task<> FilmBatch::exportOne(files::FileUrl photo, files::FileUrl folder, std::stop_token stop) {
    auto& services = services_;
    auto loading = services.load(photo);
    const auto snapshot = co_await loading;
    if (snapshot.persistenceWarning) throw std::runtime_error(*snapshot.persistenceWarning);
    for (int number = 1;; ++number) {
        tasks::checkCancelled(stop);
        try {
            auto exporting =
                services.exportTiff(photo, snapshot.settings, folder.child(exportName(photo, number)), stop);
            co_await exporting;
            co_return;
        } catch (const FilmRenderError& error) {
            if (error.problem() != FilmRenderProblem::outputExists || number == mostNumbers) throw;
        }
    }
}

} // namespace lumisort::film
