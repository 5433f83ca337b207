// A search for matches whose photos an earlier run has computed, against that run: no photo is decoded again.
// Photos of the corpus stand under many names (hard links), as far as COUNT.
//
//   benchmark-stored_caches CORPUS SCRATCH near|visual [COUNT]

#include "similarity/database/StoredCaches.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace lumisort;
using namespace lumisort::similarity;
namespace fs = std::filesystem;

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::vector<library::Photo> photosUnderManyNames(const fs::path& corpus, const fs::path& scratch, int count) {
    std::vector<fs::path> originals;
    fs::create_directories(scratch / "photos");
    for (const auto& entry : fs::recursive_directory_iterator(corpus / "photos/exif-samples/jpg"))
        if (entry.path().extension() == ".jpg") {
            originals.push_back(scratch / "photos" / (std::to_string(originals.size()) + "-0.jpg"));
            fs::copy_file(entry.path(), originals.back(), fs::copy_options::overwrite_existing);
        }
    std::vector<library::Photo> photos;
    for (int i = 0; i < count; ++i) {
        const auto which = static_cast<std::size_t>(i) % originals.size();
        const auto path = scratch / "photos" /
                          (std::to_string(which) + "-" + std::to_string(i / originals.size()) + ".jpg");
        if (!fs::exists(path)) fs::create_hard_link(originals[which], path);
        photos.push_back({.url = files::FileUrl::fromPath(path.string()), .date = {}});
    }
    return photos;
}

struct Search {
    double seconds = 0, writtenAfter = 0;
    std::size_t groups = 0;
};

/// One search of a program that has just started.
Search search(const std::string& database, const std::vector<library::Photo>& photos,
              SimilarityMethod method) {
    StoredCaches stored(database);
    MatchCaches known;
    const auto start = std::chrono::steady_clock::now();
    const auto result = stored.findMatches(photos, method, SimilarityLevel::balanced, known,
                                           [](double, std::string_view) {}, {});
    Search done{.seconds = secondsSince(start), .groups = result.groups.size()};
    stored.flush();
    done.writtenAfter = secondsSince(start) - done.seconds;
    return done;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s CORPUS SCRATCH near|visual [COUNT]\n", argv[0]);
        return 2;
    }
    const fs::path scratch = argv[2];
    const auto method =
        argv[3] == std::string("near") ? SimilarityMethod::nearDuplicates : SimilarityMethod::visual;
    const auto photos = photosUnderManyNames(argv[1], scratch, argc > 4 ? std::atoi(argv[4]) : 10'000);
    const auto database = (scratch / "fingerprints.sqlite").string();
    FingerprintDatabase(database).clear();

    const auto first = search(database, photos, method), second = search(database, photos, method);
    std::printf("%zu photos, %s: first %.2f s (writing took %.2f s more), second %.2f s, %.1f times as fast; "
                "%zu and %zu groups; %.1f MiB\n",
                photos.size(), argv[3], first.seconds, first.writtenAfter, second.seconds,
                first.seconds / second.seconds, first.groups, second.groups,
                static_cast<double>(FingerprintDatabase(database).status().bytes) / (1 << 20));
    return first.groups == second.groups ? 0 : 1;
}
