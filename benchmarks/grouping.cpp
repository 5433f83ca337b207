// Grouping of 100,000 fingerprints on one core, in processor time. Uniformly random hashes are the worst case
// for an index; windows cut from real photos stand for a real collection, with its crowds of photos that look
// alike. The last column compares with what comparing every photo with every anchor's hashes would cost,
// measured on a part.
//
//   benchmark-grouping CORPUS [count]

#include "similarity/Grouping.h"

#include "platform/images/Decoder.h"
#include "similarity/Fingerprinting.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

using namespace lumisort;
using namespace lumisort::similarity;

namespace {

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

std::vector<VisualFingerprint> randomFingerprints(std::size_t count) {
    std::mt19937_64 random(1);
    std::vector<VisualFingerprint> made(count);
    for (auto& fingerprint : made) {
        fingerprint = {.hash = 0,
                       .colors = {},
                       .aspect = random() % 2 ? 1.5 : 0.75,
                       .deviation = 0.2,
                       .orientationHashes = {}};
        for (std::size_t i = 0; i < colourValueCount; ++i)
            fingerprint.colors.push_back(static_cast<double>(random() % 4081) / 4080);
        for (std::size_t k = 0; k < orientationCount; ++k) fingerprint.orientationHashes.push_back(random());
        fingerprint.hash = fingerprint.orientationHashes.front();
    }
    return made;
}

std::vector<images::Bitmap> smallPhotos(const std::filesystem::path& corpus) {
    std::vector<images::Bitmap> photos;
    for (const char* folder : {"photos", "groups", "heic", "orientation"})
        for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus / folder)) try {
                photos.push_back(
                    images::decoder().thumbnail(files::FileUrl::fromPath(entry.path().string()), 192));
            } catch (const std::exception&) {
                continue; // a folder, a table or a damaged file
            }
    return photos;
}

images::Bitmap window(const images::Bitmap& photo, int left, int top, int width, int height) {
    images::Bitmap cut(width, height);
    for (int y = 0; y < height; ++y)
        std::ranges::copy(photo.row(top + y).subspan(std::size_t{4} * left, std::size_t{4} * width),
                          cut.row(y).begin());
    return cut;
}

/// Windows of all sizes from a third of a photo on, in the shapes that cameras give; a third of them once
/// more, moved by a pixel, as in a burst.
std::vector<VisualFingerprint> windowFingerprints(const std::vector<images::Bitmap>& photos,
                                                  std::size_t count) {
    std::mt19937_64 random(2);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(std::max(1, limit)));
    };
    constexpr double shapes[] = {1.5, 4.0 / 3, 4.0 / 3, 16.0 / 9, 2.0 / 3, 0.75};
    std::vector<VisualFingerprint> made;
    while (made.size() < count) {
        const auto& photo = photos[random() % photos.size()];
        const double aspect = shapes[random() % std::size(shapes)];
        const int widest = std::min(photo.width(), static_cast<int>(photo.height() * aspect));
        const int width = widest / 3 + below(widest * 2 / 3);
        const int height = static_cast<int>(width / aspect);
        if (width < 24 || height < 24) continue;
        const int left = below(photo.width() - width), top = below(photo.height() - height);
        const int shots = left > 0 && random() % 3 == 0 ? 2 : 1;
        for (int shot = 0; shot < shots; ++shot) {
            made.push_back(fingerprint(drawCanvas(window(photo, left - shot, top, width, height)), aspect));
            if (made.back().isLowDetail()) made.pop_back();
        }
    }
    return made;
}

/// Time to compare each of a sample with the eight hashes of all, scaled to comparing each with half of all.
double secondsWithoutIndex(const std::vector<VisualFingerprint>& all) {
    const std::size_t sample = std::min<std::size_t>(all.size(), 200);
    std::vector<std::uint64_t> keys;
    for (const auto& fingerprint : all)
        keys.insert(keys.end(), fingerprint.orientationHashes.begin(), fingerprint.orientationHashes.end());
    std::size_t found = 0;
    const double start = processorSeconds();
    for (std::size_t i = 0; i < sample; ++i)
        for (const auto key : keys) found += std::popcount(key ^ all[i].hash) <= 12;
    const double seconds = processorSeconds() - start;
    if (found < sample) std::abort();
    return seconds / static_cast<double>(sample) * static_cast<double>(all.size()) / 2;
}

void measure(const char* name, const std::vector<VisualFingerprint>& fingerprints) {
    std::vector<library::Photo> photos;
    for (std::size_t i = 0; i < fingerprints.size(); ++i)
        photos.push_back({.url = files::FileUrl::fromPath("/photos/" + std::to_string(i) + ".jpg")});
    std::vector<GroupingItem> items;
    for (std::size_t i = 0; i < fingerprints.size(); ++i) items.push_back({photos[i], fingerprints[i]});
    const double plain = secondsWithoutIndex(fingerprints);
    for (const auto level : allSimilarityLevels) {
        const double start = processorSeconds();
        const auto groups = groupNearDuplicates(items, level);
        const double seconds = processorSeconds() - start;
        std::size_t grouped = 0;
        for (const auto& group : groups) grouped += group.photos.size();
        std::printf("| %s | %s | %zu | %zu | %.2f s | %.0f × |\n", name,
                    std::string(storedName(level)).c_str(), groups.size(), grouped, seconds, plain / seconds);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::fprintf(stderr, "usage: %s CORPUS [count]\n", argv[0]), 2;
    const auto count = static_cast<std::size_t>(argc > 2 ? std::atoll(argv[2]) : 100'000);
    std::printf("| %zu fingerprints | level | groups | photos in them | one core | faster than every pair |\n"
                "|---|---|---|---|---|---|\n",
                count);
    measure("uniformly random", randomFingerprints(count));
    measure("windows of real photos", windowFingerprints(smallPhotos(argv[1]), count));
}
