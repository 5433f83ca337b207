#include "library/FolderScan.h"

#include "platform/files/FileError.h"
#include "platform/files/FolderListing.h"
#include "platform/images/Decoder.h"
#include "platform/text/Collation.h"
#include "platform/time/LocalTime.h"

namespace lumisort::library {

namespace {

constexpr std::array<std::string_view, 15> packageExtensions{
    "app",           "aplibrary",     "bundle",   "cocatalogdb", "cosessiondb",          "fcpbundle",
    "framework",     "imovielibrary", "lrdata",   "lrlibrary",   "migratedphotolibrary", "photolibrary",
    "photoslibrary", "theater",       "tvlibrary"};

/// The extension in lower case. All extensions that matter here are ASCII.
std::string lowerExtension(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos) return {};
    std::string extension(name.substr(dot + 1));
    for (char& c : extension) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return extension;
}

bool isIn(const auto& extensions, std::string_view name) {
    return std::ranges::find(extensions, lowerExtension(name)) != extensions.end();
}

class Scan {
public:
    Scan(const ScanProgress& progress, const std::stop_token& stop) : progress_(progress), stop_(stop) {}

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
            files::eachEntry(folder, links, [&](std::string_view name, files::FileKind kind) {
                if (stop_.stop_requested()) return false;
                if (!name.starts_with('.')) visit(prefix, name, kind);
                return true;
            });
        } catch (const files::FileError&) { // the folder is passed over
        }
    }

    void visit(const std::string& prefix, std::string_view name, files::FileKind kind) {
        if (kind == files::FileKind::directory) {
            if (!isIn(packageExtensions, name)) pending_.push_back(prefix + std::string(name));
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

    static Photo record(const files::FileUrl& url) {
        const auto properties = images::decoder().properties(url);
        const auto status = files::FileSystem::real().status(url.path(), files::Links::doNotFollow);
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

    const ScanProgress& progress_;
    const std::stop_token& stop_;
    std::vector<std::string> pending_;
    FolderScan result_;
};

} // namespace

FolderScan scanFolder(const files::FileUrl& folder, const ScanProgress& progress,
                      const std::stop_token& stop) {
    return Scan(progress, stop).run(folder.path());
}

} // namespace lumisort::library
