#include "library/FolderScan.h"

#include "platform/files/FileError.h"
#include "platform/images/Decoder.h"
#include "platform/text/Collation.h"
#include "platform/time/LocalTime.h"

namespace lumisort::library {

namespace {

constexpr std::array<std::string_view, 15> packageExtensions{
    "app",           "aplibrary",     "bundle",   "cocatalogdb", "cosessiondb",          "fcpbundle",
    "framework",     "imovielibrary", "lrdata",   "lrlibrary",   "migratedphotolibrary", "photolibrary",
    "photoslibrary", "theater",       "tvlibrary"};

/// Folders, in lower case, in which file browsers, file servers and systems keep what the user threw away or
/// never made: the recycle bins of Windows, of network storage devices and their thumbnails and snapshots.
/// The bins of Linux and macOS are hidden.
constexpr std::array<std::string_view, 7> systemFolders{
    "$recycle.bin", "system volume information", "recycler", "#recycle", "@recycle", "@eadir", "#snapshot"};

/// All names that matter here are ASCII.
std::string lowerCase(std::string_view name) {
    std::string lower(name);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

/// The extension in lower case.
std::string lowerExtension(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos) return {};
    return lowerCase(name.substr(dot + 1));
}

bool isIn(const auto& extensions, std::string_view name) {
    return std::ranges::find(extensions, lowerExtension(name)) != extensions.end();
}

bool isPassedOver(std::string_view folder) {
    return isIn(packageExtensions, folder) ||
           std::ranges::find(systemFolders, lowerCase(folder)) != systemFolders.end();
}

class Scan {
public:
    Scan(files::FileSystem& system, const ScanProgress& progress, const std::stop_token& stop)
        : system_(system), progress_(progress), stop_(stop) {}

    FolderScan run(const std::string& root) {
        list(root, files::Links::follow);
        while (!pending_.empty() && !stop_.stop_requested()) {
            const std::string folder = std::move(pending_.back());
            pending_.pop_back();
            list(folder, files::Links::doNotFollow);
        }
        sort();
        return std::move(result_);
    }

private:
    void list(const std::string& folder, files::Links links) {
        const std::string prefix = folder.ends_with('/') ? folder : folder + '/';
        try {
            system_.eachEntry(folder, links, [&](std::string_view name, files::FileKind kind) {
                if (stop_.stop_requested()) return false;
                if (!name.starts_with('.')) visit(prefix, name, kind);
                return true;
            });
        } catch (const files::FileError&) { // the folder is passed over
        }
    }

    void visit(const std::string& prefix, std::string_view name, files::FileKind kind) {
        if (kind == files::FileKind::directory) {
            if (!isPassedOver(name)) pending_.push_back(prefix + std::string(name));
        } else if (kind == files::FileKind::regular && isIn(supportedExtensions, name)) {
            add(files::FileUrl::fromPath(prefix + std::string(name)));
        }
    }

    void add(const files::FileUrl& url) {
        try {
            result_.photos.push_back(record(url));
        } catch (const images::ImageError&) {
            ++result_.skipped;
            return;
        } catch (const files::FileError&) {
            ++result_.skipped;
            return;
        }
        if (progress_ && result_.photos.size() % 100 == 0) progress_(result_.photos.size());
    }

    Photo record(const files::FileUrl& url) {
        const auto properties = images::decoder().properties(url);
        const auto status = system_.status(url.path(), files::Links::doNotFollow);
        return {url, status.size, properties.width, properties.height,
                time::parseExifDate(properties.dateTimeOriginal)};
    }

    /// By bytes first, so that names that the natural order holds for equal come in the same order
    /// everywhere.
    void sort() {
        auto& photos = result_.photos;
        std::vector<std::string_view> paths;
        paths.reserve(photos.size());
        for (const auto& photo : photos) paths.emplace_back(photo.url.path());
        std::vector<Photo> sorted;
        sorted.reserve(photos.size());
        for (const std::size_t index : text::naturalPermutation(paths))
            sorted.push_back(std::move(photos[index]));
        photos = std::move(sorted);
    }

    files::FileSystem& system_;
    const ScanProgress& progress_;
    const std::stop_token& stop_;
    std::vector<std::string> pending_;
    FolderScan result_;
};

} // namespace

FolderScan scanFolder(files::FileSystem& system, const files::FileUrl& folder, const ScanProgress& progress,
                      const std::stop_token& stop) {
    return Scan(system, progress, stop).run(folder.path());
}

} // namespace lumisort::library
