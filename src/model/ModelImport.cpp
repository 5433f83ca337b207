// Folders that come into the library and leave it.

#include "model/LibraryModel.h"
#include "model/Utf8.h"

#include <algorithm>

namespace lumisort::model {

using files::FileUrl;
using library::Photo;

namespace {

struct Sorted {
    std::vector<FileUrl> folders, others;
};

Sorted sorted(files::FileSystem& system, const std::vector<FileUrl>& urls) {
    Sorted result;
    for (const auto& url : urls) {
        bool isFolder = false;
        try {
            isFolder = system.status(url.path(), files::Links::follow).kind == files::FileKind::directory;
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): then it is none that can be added
        }
        if (isFolder)
            result.folders.push_back(url.child({})); // with the slash at its end that folder choosers give
        else
            result.others.push_back(url);
    }
    return result;
}

} // namespace

void LibraryModel::chooseFolder(const std::optional<FileUrl>& startingAt) {
    if (!busy_) Q_EMIT folderWanted(startingAt);
}

void LibraryModel::importFolder(const FileUrl& folder) {
    if (busy_) return;
    scanStop_ = std::stop_source();
    importRunning_ = true;
    setBusy(true);
    say(QStringLiteral("Scanning %1…").arg(fromUtf8(folder.name())));
    const auto progress = [post = runner_.mainThread(), model = QPointer(this)](std::size_t count) {
        post([model, count] {
            // The last reports may come in behind the result, or behind a stop.
            if (model && model->importRunning_ && !model->scanStop_.stop_requested())
                model->say(QStringLiteral("Scanning %1 photos…").arg(count));
        });
    };
    work_ = runner_.start(
        this,
        [scan = with_.scan, folder, progress, stop = scanStop_.get_token()] {
            return scan(folder, progress, stop);
        },
        [this, folder](Outcome<library::FolderScan> result) {
            applyImport(folder, result ? *std::move(result) : library::FolderScan{});
        });
}

void LibraryModel::importFolders(std::vector<FileUrl> urls) {
    runner_.start(
        this, [&system = with_.system, urls = std::move(urls)] { return sorted(system, urls); },
        [this](Outcome<Sorted> found) {
            if (!found) return;
            std::ranges::move(found->folders, std::back_inserter(foldersToImport_));
            if (!found->others.empty()) Q_EMIT foldersRefused(found->others);
            importNextFolder();
        });
}

void LibraryModel::importNextFolder() {
    if (busy_ || foldersToImport_.empty()) return;
    const auto folder = std::move(foldersToImport_.front());
    foldersToImport_.pop_front();
    importFolder(folder);
}

void LibraryModel::stopImport() {
    foldersToImport_.clear();
    if (!importRunning_) return;
    scanStop_.request_stop();
    say(QStringLiteral("Stopping…"));
}

void LibraryModel::applyImport(const FileUrl& folder, library::FolderScan result) {
    const auto scanned = result.photos.size();
    const bool stopped = scanStop_.stop_requested();
    auto photos = state_.photos();
    std::ranges::copy_if(result.photos, std::back_inserter(photos),
                         [this](const Photo& photo) { return !state_.find(photo.url); });
    installPhotos(std::move(photos));
    if (std::ranges::find(folders(), folder) == folders().end()) {
        auto all = folders();
        all.push_back(folder);
        state_.setFolders(std::move(all));
        ++libraryRevision_;
        Q_EMIT foldersChanged();
    }
    invalidateSimilarity();
    setSection(QStringLiteral("library"));
    importRunning_ = false;
    setBusy(false);
    auto text = QStringLiteral("%1 photos scanned").arg(scanned);
    if (result.skipped >= 1) text += QStringLiteral(" · %1 unreadable").arg(result.skipped);
    if (stopped) text += QStringLiteral(" · stopped");
    say(text);
    refreshAvailability();
    saveSession();
}

void LibraryModel::removeFolder(const FileUrl& folder) {
    if (busy_) return;
    auto remainingFolders = folders();
    std::erase(remainingFolders, folder);
    state_.setFolders(remainingFolders);
    ++libraryRevision_;
    if (selectedFolder_ == folder) {
        selectedFolder_.reset();
        if (section_ == QStringLiteral("folder")) setSection(QStringLiteral("library"));
    }
    installPhotos(library::photosInside(photos(), remainingFolders));

    std::unordered_set<std::string_view> remaining;
    for (const auto& photo : photos()) remaining.insert(photo.url.path());
    auto marks = state_.marks();
    std::erase_if(marks, [&](const auto& entry) { return !remaining.contains(entry.first); });
    state_.setMarks(std::move(marks));
    std::erase_if(importPhotos_, [&](const Photo& photo) { return !remaining.contains(photo.url.path()); });
    derivedChanged();
    Q_EMIT foldersChanged();
    setSelected({});
    invalidateSimilarity();
    refreshAvailability();
    say(QStringLiteral("Removed from library · Files unchanged"));
    saveSession();
}

void LibraryModel::browseDevice(const FileUrl& volume) {
    if (busy_) return;
    if (!library::DeviceDiscovery::mountedDevices(with_.volumes()).contains(volume)) {
        updateDevices();
        return;
    }
    dismissDevice(volume);
    chooseFolder(volume);
}

void LibraryModel::dismissDevice(const FileUrl& volume) {
    if (std::erase(devices_.pending, volume) > 0) Q_EMIT devicesChanged();
}

} // namespace lumisort::model
