#include "film/editor/FilmEditorModel.h"

#include "platform/tasks/Cancellation.h"

#include <QClipboard>
#include <QCoroFuture>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QPromise>
#include <memory>
#include <utility>

namespace lumisort::film {

FilmEditorModel::FilmEditorModel(files::FileUrl photo, FilmEditorServices& services, QObject* parent,
                                 Sleep sleep)
    : QObject(parent), photo_(std::move(photo)), services_(services), sleep_(std::move(sleep)),
      drafts_(
          CoalescedRender<DraftRequest>::Running::finishes,
          [this](const DraftRequest& request, std::stop_token stop) {
              return services_.draft(photo_, request.settings, request.longEdge, std::move(stop));
          },
          [this](const DraftRequest& request, const QImage& picture, double milliseconds) {
              showDraft(request, picture, milliseconds);
          }),
      details_(
          CoalescedRender<DetailRequest>::Running::isCancelled,
          [this](const DetailRequest& request, std::stop_token stop) {
              return services_.detail(photo_, request.settings, request.rectangle, std::move(stop));
          },
          [this](const DetailRequest& request, const QImage& picture, double) {
              applyDetail(request, picture);
          }) {
    detailUnused_.setSingleShot(true);
    detailUnused_.setInterval(detailKept);
    connect(&detailUnused_, &QTimer::timeout, this, [this] { services_.forgetDetail(photo_); });
}

FilmEditorModel::~FilmEditorModel() {
    close();
}

QFuture<void> FilmEditorModel::sleepOnTimer(std::chrono::milliseconds delay) {
    auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    QTimer::singleShot(delay, Qt::PreciseTimer, [promise] { promise->finish(); });
    return promise->future();
}

QString FilmEditorModel::photoName() const {
    return QString::fromUtf8(photo_.name());
}

QString FilmEditorModel::proposedName() const {
    return QFileInfo(photoName()).completeBaseName() + QStringLiteral("-film.tif");
}

QUrl FilmEditorModel::photoFolder() const {
    return QUrl(QString::fromStdString(photo_.parent().string()));
}

QUrl FilmEditorModel::destination(const QUrl& folder, const QString& name) const {
    const auto url = files::FileUrl::fromString(folder.toEncoded().toStdString());
    if (!url) return {};
    const auto suffix = QFileInfo(name).suffix().toLower();
    const auto full = suffix == QLatin1String("tif") || suffix == QLatin1String("tiff")
                          ? name.trimmed()
                          : name.trimmed() + QStringLiteral(".tif");
    return QUrl(QString::fromStdString(url->child(full.toStdString()).string()));
}

// g++ 12 loses temporaries of an expression with co_await when the coroutine is suspended in it, so what is
// awaited has a name. A coroutine below reads members only after it made sure that the model is still there
// and open.

void FilmEditorModel::start() {
    if (loading_ || closed_) return;
    loading_ = true;
    load(revision_);
}

QCoro::Task<> FilmEditorModel::load(quint64 revision) {
    const QPointer<FilmEditorModel> self(this);
    const auto stop = loadStop_.get_token();
    const auto current = [&] { return self && !closed_ && !stop.stop_requested() && revision == revision_; };
    try {
        auto loading = services_.load(photo_);
        const auto snapshot = co_await loading;
        if (!current()) co_return;
        settings_ = snapshot.settings;
        sourceStamp_ = snapshot.stamp;
        canPersist_ = !snapshot.persistenceWarning;
        if (snapshot.persistenceWarning)
            error_ = QStringLiteral("Saved adjustments could not be loaded. You can preview and export, but "
                                    "changes in this window will not be saved. ") +
                     QString::fromStdString(*snapshot.persistenceWarning);
        loaded_ = true;
        history_.clear();
        Q_EMIT settingsChanged();
        requestPreview(Persist::no);
    } catch (const tasks::Cancelled&) {
    } catch (...) {
        if (!current()) co_return;
        rendering_ = false;
        show(std::current_exception());
    }
}

void FilmEditorModel::change(const FilmSettings& settings, int control) {
    if (settings == settings_ || !isEditable()) return;
    if (control == wholeEdit) history_.seal();
    history_.record(settings_, control);
    applySettings(settings);
}

void FilmEditorModel::undo() {
    if (isEditable() && canUndo()) applySettings(history_.undo(settings_));
}

void FilmEditorModel::redo() {
    if (isEditable() && canRedo()) applySettings(history_.redo(settings_));
}

void FilmEditorModel::applySettings(const FilmSettings& settings) {
    settings_ = settings;
    dirty_ = true;
    exportedURL_.clear();
    requestPreview(Persist::yes);
    dropDetail();
    drafts_.request({settings_.validatedForEditing(), revision_, draftSize_.longEdge()});
    Q_EMIT settingsChanged();
}

void FilmEditorModel::cancelPreview() {
    previewStop_.request_stop();
    previewStop_ = {};
}

void FilmEditorModel::requestPreview(Persist persist) {
    if (!sourceStamp_ || sourceChanged_) return;
    cancelPreview();
    ++revision_;
    rendering_ = true;
    Q_EMIT stateChanged();
    renderPreview({*sourceStamp_, revision_, settings_.validatedForEditing(), previewStop_.get_token()},
                  persist);
}

QCoro::Task<> FilmEditorModel::requireUnchanged(library::FileStamp expected) {
    auto reading = services_.stamp(photo_);
    const auto stamp = co_await reading;
    if (stamp != expected) throw FilmEditStoreError(FilmEditStoreError::Kind::sourceChanged);
}

QCoro::Task<> FilmEditorModel::save(const Request& request, std::function<bool()> isCurrent,
                                    std::function<void()> saved) {
    const QPointer<FilmEditorModel> self(this);
    if (!canPersist_) co_return;
    try {
        auto saving = services_.save(request.settings, photo_, request.stamp);
        co_await saving;
        if (self) saved();
    } catch (const FilmEditStoreError& error) {
        if (error.kind() == FilmEditStoreError::Kind::sourceChanged || !isCurrent()) throw;
        error_ = QStringLiteral("Adjustments could not be saved. ") + QString::fromUtf8(error.what());
        Q_EMIT stateChanged();
    } catch (const std::exception& error) {
        if (!isCurrent()) throw;
        error_ = QStringLiteral("Adjustments could not be saved. ") + QString::fromUtf8(error.what());
        Q_EMIT stateChanged();
    }
}

QCoro::Task<> FilmEditorModel::renderPreview(Request request, Persist persist) {
    const QPointer<FilmEditorModel> self(this);
    const auto current = [&] {
        return self && !closed_ && !request.stop.stop_requested() && request.revision == revision_;
    };
    try {
        auto sleeping = sleep_(debounce);
        co_await sleeping;
        if (!current()) co_return;
        auto unchanged = requireUnchanged(request.stamp);
        co_await unchanged;
        if (!current()) co_return;
        if (persist == Persist::yes) {
            const std::function<bool()> isCurrent = current;
            const std::function<void()> saved = [&] {
                if (request.revision == revision_) dirty_ = false;
            };
            auto saving = save(request, isCurrent, saved);
            co_await saving;
        }
        if (!current()) co_return;
        auto rendering = services_.preview(photo_, request.settings, request.stop);
        auto preview = co_await rendering;
        if (!current()) co_return;
        auto stillUnchanged = requireUnchanged(request.stamp);
        co_await stillUnchanged;
        if (!current()) co_return;
        preview_ = std::move(preview);
        previewSettings_ = request.settings;
        shownRevision_ = request.revision;
        draft_ = {};
        rendering_ = false;
        Q_EMIT previewChanged();
        Q_EMIT stateChanged();
        requestDetail();
    } catch (const tasks::Cancelled&) {
    } catch (...) {
        if (!current()) co_return;
        rendering_ = false;
        show(std::current_exception());
    }
}

void FilmEditorModel::showDraft(const DraftRequest& request, const QImage& picture, double milliseconds) {
    draftSize_.took(request.longEdge, milliseconds);
    // Newer than what is shown, and of the file that is being edited: after a reload nothing older counts.
    if (closed_ || !preview_ || !isEditable() || request.revision <= shownRevision_) return;
    shownRevision_ = request.revision;
    draft_ = picture;
    Q_EMIT draftChanged();
}

void FilmEditorModel::showDetail(const QRect& rectangle) {
    if (std::exchange(wantedDetail_, rectangle) == rectangle) return;
    if (rectangle.isEmpty()) {
        dropDetail();
        detailUnused_.start();
    } else {
        detailUnused_.stop();
        requestDetail();
    }
}

void FilmEditorModel::requestDetail() {
    // While settings change, drafts come first: detail is rendered once the preview of the settings is there.
    if (wantedDetail_.isEmpty() || rendering_ || !isEditable() || !preview_) return;
    details_.request({settings_.validatedForEditing(), revision_, wantedDetail_});
}

void FilmEditorModel::applyDetail(const DetailRequest& request, const QImage& picture) {
    if (closed_ || request.revision != revision_) return;
    detail_ = picture;
    detailRectangle_ = request.rectangle;
    Q_EMIT detailChanged();
}

void FilmEditorModel::dropDetail() {
    details_.cancel();
    detailRectangle_ = {};
    if (!std::exchange(detail_, {}).isNull()) Q_EMIT detailChanged();
}

void FilmEditorModel::exportPhoto() {
    if (!canExport()) return;
    savePanelOpen_ = exporting_ = true;
    Q_EMIT stateChanged();
}

void FilmEditorModel::finishSavePanel(const QUrl& destination) {
    if (closed_ || !savePanelOpen_) return;
    savePanelOpen_ = false;
    const auto url = files::FileUrl::fromString(destination.toEncoded().toStdString());
    if (!url || !sourceStamp_) {
        exporting_ = false;
        Q_EMIT stateChanged();
        return;
    }
    cancelPreview();
    drafts_.cancel();
    rendering_ = false;
    Q_EMIT stateChanged();
    writeExport({*sourceStamp_, revision_, settings_.validatedForEditing(), exportStop_.get_token()}, *url);
}

QCoro::Task<> FilmEditorModel::writeExport(Request request, files::FileUrl destination) {
    const QPointer<FilmEditorModel> self(this);
    const auto current = [&] { return self && !closed_ && !request.stop.stop_requested(); };
    std::exception_ptr failure;
    try {
        auto unchanged = requireUnchanged(request.stamp);
        co_await unchanged;
        if (!current()) co_return;
        const std::function<bool()> isCurrent = current;
        const std::function<void()> saved = [&] { dirty_ = false; };
        auto saving = save(request, isCurrent, saved);
        co_await saving;
        if (!current()) co_return;
        auto exporting = services_.exportTiff(photo_, request.settings, destination, request.stop);
        co_await exporting;
        if (!current()) co_return;
        exportedURL_ = QUrl(QString::fromStdString(destination.string()));
    } catch (const tasks::Cancelled&) {
    } catch (...) {
        failure = std::current_exception();
    }
    if (!current()) co_return;
    exporting_ = false;
    if (failure) show(failure);
    if (previewSettings_ != request.settings) requestPreview(Persist::no);
    Q_EMIT stateChanged();
}

void FilmEditorModel::reload() {
    if (closed_ || exporting_) return;
    loadStop_.request_stop();
    loadStop_ = {};
    cancelPreview();
    drafts_.cancel();
    dropDetail();
    shownRevision_ = ++revision_;
    loaded_ = dirty_ = sourceChanged_ = loading_ = false;
    sourceStamp_.reset();
    preview_.reset();
    previewSettings_.reset();
    draft_ = {};
    exportedURL_.clear();
    error_.clear();
    rendering_ = true;
    setShowsOriginal(false);
    Q_EMIT previewChanged();
    Q_EMIT stateChanged();
    start();
}

void FilmEditorModel::close() {
    if (std::exchange(closed_, true)) return;
    ++revision_;
    loadStop_.request_stop();
    cancelPreview();
    exportStop_.request_stop();
    drafts_.cancel();
    details_.cancel();
    services_.forgetDetail(photo_);
    savePanelOpen_ = false;
    // Nobody waits for the answer; the store runs its jobs before the program ends.
    if (loaded_ && dirty_ && canPersist_ && sourceStamp_)
        services_.save(settings_.validatedForEditing(), photo_, *sourceStamp_);
}

void FilmEditorModel::setShowsOriginal(bool shows) {
    if (std::exchange(showsOriginal_, shows) != shows) Q_EMIT showsOriginalChanged();
}

void FilmEditorModel::copySettings() const {
    QGuiApplication::clipboard()->setText(QString::fromStdString(lookText({"", settings_})));
}

void FilmEditorModel::pasteSettings() {
    if (const auto look = lookFromText(QGuiApplication::clipboard()->text().toStdString()))
        change(look->settings, wholeEdit);
}

void FilmEditorModel::tell(const QString& message) {
    error_ = message;
    Q_EMIT stateChanged();
}

void FilmEditorModel::dismissError() {
    error_.clear();
    Q_EMIT stateChanged();
}

void FilmEditorModel::show(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const FilmEditStoreError& changed) {
        sourceChanged_ = sourceChanged_ || changed.kind() == FilmEditStoreError::Kind::sourceChanged;
        error_ = QString::fromUtf8(changed.what());
    } catch (const std::exception& other) {
        error_ = QString::fromUtf8(other.what());
    } catch (...) {
        error_ = QStringLiteral("The film renderer could not finish this photo.");
    }
    if (sourceChanged_) drafts_.cancel();
    Q_EMIT stateChanged();
}

} // namespace lumisort::film
