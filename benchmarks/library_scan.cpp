// A scan of a folder tree against a bare walk of it (every entry listed, every file's status asked) and,
// where it is installed, against `exiftool -fast2 -r`, which reads the same metadata.
//
//   benchmark-library_scan PHOTOS [files]     (a tree of 10000 hard links to copies of the photos in PHOTOS)

#include "library/FolderScan.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;

std::size_t buildTree(const fs::path& photos, const fs::path& tree, std::size_t count) {
    fs::create_directories(tree / "originals");
    std::vector<fs::path> originals;
    for (const auto& entry : fs::recursive_directory_iterator(photos)) {
        const std::string name = std::to_string(originals.size()) + entry.path().extension().string();
        if (!entry.is_regular_file()) continue;
        fs::copy_file(entry.path(), tree / "originals" / name);
        originals.push_back(tree / "originals" / name);
    }
    for (std::size_t i = originals.size(); i < count; ++i) {
        const fs::path folder = tree / std::to_string(i / 500);
        fs::create_directories(folder);
        const auto& original = originals[i % originals.size()];
        fs::create_hard_link(original, folder / (std::to_string(i) + original.extension().string()));
    }
    return std::max(count, originals.size());
}

std::size_t walk(const fs::path& tree) {
    std::size_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(tree)) {
        struct stat status{};
        if (lstat(entry.path().c_str(), &status) == 0) bytes += static_cast<std::size_t>(status.st_size);
    }
    return bytes;
}

template <class Work>
double seconds(int runs, Work&& work) {
    double best = 1e9;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best =
            std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: %s PHOTOS [files]\n", arguments[0]);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // exiftool takes minutes
    const std::size_t wanted = argumentCount > 2 ? std::strtoul(arguments[2], nullptr, 10) : 10'000;
    const fs::path tree = fs::temp_directory_path() / ("lumisort-benchmark-" + std::to_string(getpid()));
    const auto count = static_cast<double>(buildTree(arguments[1], tree, wanted));
    const auto url = files::FileUrl::fromPath(tree.string());

    library::scanFolder(files::FileSystem::real(), files::FileUrl::fromPath((tree / "originals").string()),
                        {});
    const double before = peakMiB();
    library::FolderScan result;
    const double scan = seconds(3, [&] { result = library::scanFolder(files::FileSystem::real(), url, {}); });
    const double after = peakMiB();
    const double bare = seconds(3, [&] {
        if (walk(tree) == 0) std::abort();
    });
    std::printf("%.0f files: %zu photos, %lld skipped; peak memory %.0f MiB after the originals alone, %.0f "
                "at the end\n",
                count, result.photos.size(), static_cast<long long>(result.skipped), before, after);
    std::printf("%-28s %10s %12s\n", "", "ms a file", "scan / this");
    std::printf("%-28s %10.4f\n", "scan", scan / count * 1e3);
    std::printf("%-28s %10.4f %12.2f\n", "bare walk", bare / count * 1e3, scan / bare);
    if (std::system("command -v exiftool >/dev/null") == 0) { // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        const std::string command = "exiftool -q -q -fast2 -r '" + tree.string() + "' >/dev/null 2>&1";
        const double peer = seconds(1, [&] { std::ignore = std::system(command.c_str()); }); // NOLINT
        std::printf("%-28s %10.4f %12.4f\n", "exiftool -fast2 -r", peer / count * 1e3, scan / peer);
        std::printf("scan is %.1f times as fast as exiftool -fast2\n", peer / scan);
    }
    fs::remove_all(tree);
}
