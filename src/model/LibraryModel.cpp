#include "model/LibraryModel.h"

#include "library/OrganizeSelection.h"

#include <QTimer>
#include <algorithm>
#include <iterator>

namespace lumisort::model {

using files::FileUrl;
using library::Photo;

void ModelSurroundings::afterOnTimer(std::chrono::milliseconds delay, QObject* context,
                                     std::function<void()> function) {
    QTimer::singleShot(delay, Qt::PreciseTimer, context, std::move(function));
}

LibraryModel::LibraryModel(FileUrl sessionURL, std::optional<library::LibraryContents> initialSession,
                           ModelSurroundings with)
    : with_(std::move(with)),
      document_(std::make_shared<library::LibraryFile>(with_.system, std::move(sessionURL), with_.clock)),
      runner_(with_.background) {
    devices_.connected = library::DeviceDiscovery::mountedDevices(with_.volumes());
    // Queued: whoever ends an operation has more to do than to say so.
    connect(this, &LibraryModel::busyChanged, this, &LibraryModel::importNextFolder, Qt::QueuedConnection);
    if (!initialSession) {
        startLoading();
        return;
    }
    restore(prepared(*std::move(initialSession)));
    refreshAvailability();
}

LibraryModel::~LibraryModel() {
    ended_.request_stop();
    scanStop_.request_stop();
}

std::vector<Photo> LibraryModel::availablePhotos() const {
    std::vector<Photo> photos;
    photos.reserve(state_.readableCount());
    for (const PhotoRow row : state_.readableRows()) photos.push_back(state_.photos()[row]);
    return photos;
}

std::vector<Photo> LibraryModel::unavailablePhotos() const {
    std::vector<Photo> photos;
    for (PhotoRow row = 0; row < state_.photos().size(); ++row)
        if (!state_.isReadable(row)) photos.push_back(state_.photos()[row]);
    return photos;
}

std::optional<Photo> LibraryModel::photo(const FileUrl& url) const {
    const auto row = state_.find(url);
    return row ? std::optional(state_.photos()[*row]) : std::nullopt;
}

bool LibraryModel::isReadable(const Photo& photo) const {
    return stamp(photo).has_value();
}

std::optional<library::FingerprintStamp> LibraryModel::stamp(const Photo& photo) const {
    const auto row = state_.find(photo.url);
    return row ? state_.stamp(*row) : std::nullopt;
}

std::optional<library::FolderState> LibraryModel::folderState(const FileUrl& folder) const {
    return state_.folderState(folder);
}

std::optional<library::ReviewDecision> LibraryModel::decision(const Photo& photo) const {
    const auto row = state_.find(photo.url);
    return row ? state_.decision(*row) : std::nullopt;
}

void LibraryModel::setBusy(bool busy) {
    if (std::exchange(busy_, busy) != busy) Q_EMIT busyChanged();
}

void LibraryModel::say(const QString& status) {
    if (std::exchange(status_, status) != status) Q_EMIT statusChanged();
}

void LibraryModel::installPhotos(std::vector<Photo> photos) {
    state_.setPhotos(std::move(photos));
    photosReplaced();
}

void LibraryModel::photosReplaced() {
    ++libraryRevision_;
    visible_.replacePhotos({sectionNamed(section_.toStdString()), selectedFolder_, query_.toStdString()});
    Q_EMIT countsChanged();
}

void LibraryModel::derivedChanged() {
    updateVisible();
    Q_EMIT countsChanged();
}

void LibraryModel::updateVisible() {
    visible_.show({sectionNamed(section_.toStdString()), selectedFolder_, query_.toStdString()});
}

void LibraryModel::setSection(const QString& section) {
    if (std::exchange(section_, section) == section) return;
    updateVisible();
    Q_EMIT sectionChanged();
}

void LibraryModel::setQuery(const QString& query) {
    if (std::exchange(query_, query) == query) return;
    updateVisible();
    Q_EMIT queryChanged();
}

void LibraryModel::setCompare(bool open) {
    if (std::exchange(compare_, open) != open) Q_EMIT compareChanged();
}

void LibraryModel::setOrganize(bool open) {
    if (std::exchange(organize_, open) != open) Q_EMIT organizeChanged();
}

void LibraryModel::showFolder(const FileUrl& folder) {
    selectedFolder_ = folder;
    section_ = QStringLiteral("folder");
    updateVisible();
    Q_EMIT sectionChanged();
    setSelected({});
}

std::vector<Photo> LibraryModel::visible() const {
    std::vector<Photo> photos;
    photos.reserve(visible_.rows().size());
    for (const PhotoRow row : visible_.rows()) photos.push_back(state_.photos()[row]);
    return photos;
}

std::vector<Photo> LibraryModel::picked() const {
    std::vector<PhotoRow> rows;
    for (const auto& url : selected_)
        if (const auto row = state_.find(url)) rows.push_back(*row);
    std::ranges::sort(rows);
    std::vector<Photo> photos;
    for (const PhotoRow row : rows) photos.push_back(state_.photos()[row]);
    return photos;
}

std::optional<Photo> LibraryModel::detailPhoto() const {
    if (selected_.empty()) return std::nullopt;
    if (focused_)
        if (const auto row = state_.find(*focused_); row && state_.isReadable(*row))
            return state_.photos()[*row];
    const auto photos = picked();
    return photos.empty() ? std::nullopt : std::optional(photos.front());
}

void LibraryModel::setSelected(std::unordered_set<FileUrl> selected) {
    if (selected.empty()) focused_.reset();
    selected_ = std::move(selected);
    Q_EMIT selectionChanged();
}

void LibraryModel::select(const Photo& photo) {
    if (!isReadable(photo)) return;
    auto selected = selected_;
    if (selected.erase(photo.url) == 0) selected.insert(photo.url);
    if (!selected.empty()) focused_ = photo.url;
    setSelected(std::move(selected));
}

void LibraryModel::selectAll(std::unordered_set<FileUrl> photos, const std::optional<FileUrl>& focus) {
    std::erase_if(photos, [this](const FileUrl& url) {
        const auto row = state_.find(url);
        return !row || !state_.isReadable(*row);
    });
    if (focus && photos.contains(*focus)) focused_ = focus;
    setSelected(std::move(photos));
}

void LibraryModel::showDetails(const std::optional<Photo>& photo) {
    if (photo) {
        if (!isReadable(*photo)) return;
        auto selected = selected_;
        selected.insert(photo->url);
        focused_ = photo->url;
        setSelected(std::move(selected));
    }
    if (detailPhoto()) Q_EMIT detailsWanted();
}

void LibraryModel::openFullscreen(const Photo& photo) {
    if (!isReadable(photo)) return;
    std::vector<Photo> sequence;
    std::unordered_set<FileUrl> seen;
    const auto add = [&](const Photo& each) {
        if (isReadable(each) && seen.insert(each.url).second) sequence.push_back(each);
    };
    if (sectionNamed(section_.toStdString()) == Section::similar) {
        const auto text = SearchNames::folded(query_.toStdString());
        for (const auto& group : similarGroups_) {
            const bool passes =
                text.empty() || std::ranges::any_of(group.photos, [&](const Photo& each) {
                    return SearchNames::folded(each.url.name()).find(text) != std::string::npos;
                });
            if (passes) std::ranges::for_each(group.photos, add);
        }
    } else {
        std::ranges::for_each(visible(), add);
    }
    const auto at = std::ranges::find(sequence, photo.url, &Photo::url);
    if (at == sequence.end()) return;
    Q_EMIT fullscreenWanted(sequence, static_cast<int>(at - sequence.begin()));
}

void LibraryModel::beginOrganize() {
    if (busy_) return;
    setBusy(true);
    work_ = prepareImport();
    whenFinished(work_, this, [this] { setBusy(false); });
}

QFuture<void> LibraryModel::prepareImport() {
    auto done = std::make_shared<QPromise<void>>();
    done->start();
    whenFinished(markTask_, this, [this, done] {
        refreshAvailability();
        whenFinished(availabilityTask_, this, [this, done] {
            importPhotos_ = library::photosToOrganize(availablePhotos(), reviewMarks());
            if (!importPhotos_.empty()) setOrganize(true);
            done->finish();
        });
    });
    return done->future();
}

} // namespace lumisort::model
