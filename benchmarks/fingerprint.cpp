// Fingerprinting one photo, in processor time, against `vipsthumbnail --size 256` on the same file: that
// program's time for several copies of the file less its time for one, so that its start does not count. Then
// a scan of several photos with 1, 2 and 4 workers, in wall-clock time.
//
//   benchmark-fingerprint CORPUS      (vipsthumbnail comes with the Debian package libvips-tools)

#include "similarity/Fingerprinting.h"
#include "similarity/NearDuplicateScan.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vips/vips.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

using namespace lumisort;
using namespace lumisort::similarity;
namespace fs = std::filesystem;

namespace {

constexpr int repetitions = 6;

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double processorSeconds(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A photo of 24 megapixels with the detail of one out of a camera: an enlarged real one with noise,
/// quality 92.
void makeLarge(const std::string& source, const std::string& target) {
    VipsImage *in = vips_image_new_from_file(source.c_str(), nullptr), *large = nullptr, *noise = nullptr,
              *sum = nullptr;
    if (!in ||
        vips_thumbnail_image(in, &large, 6000, "height", 4000, "crop", VIPS_INTERESTING_CENTRE, nullptr) ||
        vips_gaussnoise(&noise, 6000, 4000, "sigma", 6.0, "mean", 0.0, "seed", 1, nullptr) ||
        vips_add(large, noise, &sum, nullptr) || vips_cast(sum, &in, VIPS_FORMAT_UCHAR, nullptr) ||
        vips_jpegsave(in, target.c_str(), "Q", 92, nullptr)) {
        std::fprintf(stderr, "%s\n", vips_error_buffer());
        std::exit(1);
    }
}

double thumbnailerSeconds(const std::string& file, int copies, const fs::path& folder) {
    std::vector<std::string> words{"vipsthumbnail", "--size", "256", "-o",
                                   (folder / "thumbnail.jpg").string()};
    words.insert(words.end(), copies, file);
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const double start = processorSeconds(RUSAGE_CHILDREN);
    if (const pid_t child = fork(); child == 0) {
        setenv("VIPS_CONCURRENCY", "1", 1);
        execvp(arguments[0], arguments.data());
        _exit(127);
    } else {
        int status = 0;
        waitpid(child, &status, 0);
        if (status != 0) std::fprintf(stderr, "vipsthumbnail is missing or failed\n"), std::exit(1);
    }
    return processorSeconds(RUSAGE_CHILDREN) - start;
}

void compare(const std::string& name, const std::string& file, const fs::path& folder) {
    double ours = std::numeric_limits<double>::infinity(), theirs = ours;
    const auto url = files::FileUrl::fromPath(file);
    for (int turn = 0; turn < 3; ++turn) {
        const double start = processorSeconds(RUSAGE_SELF);
        for (int i = 0; i < repetitions; ++i) (void)fingerprint(url);
        ours = std::min(ours, (processorSeconds(RUSAGE_SELF) - start) / repetitions);
        const double one = thumbnailerSeconds(file, 1, folder);
        theirs = std::min(theirs, (thumbnailerSeconds(file, 1 + repetitions, folder) - one) / repetitions);
    }
    std::printf("| %s | %.1f ms | %.1f ms | %.2f |\n", name.c_str(), 1e3 * ours, 1e3 * theirs, ours / theirs);
    std::fflush(stdout);
}

void scale(const std::vector<library::Photo>& photos) {
    std::printf("\n| workers | %zu photos | times as fast as one |\n|---|---|---|\n", photos.size());
    double one = 0;
    for (const int workers : {1, 2, 4}) {
        const auto start = std::chrono::steady_clock::now();
        (void)scanNearDuplicates(NearDuplicateDependencies::real(), photos, SimilarityLevel::balanced, {},
                                 workers, {});
        const double taken = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (workers == 1) one = taken;
        std::printf("| %d | %.2f s | %.2f |\n", workers, taken, one / taken);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return std::fprintf(stderr, "usage: %s CORPUS\n", argv[0]), 2;
    const fs::path corpus = argv[1];
    const fs::path folder = fs::temp_directory_path() / "lumisort-fingerprint";
    fs::create_directories(folder);
    const auto url = [](const fs::path& path) { return files::FileUrl::fromPath(path.string()); };
    (void)fingerprint(url(corpus / "orientation/recurser/Landscape_1.jpg")); // starts libvips

    const std::string large = (folder / "24mp.jpg").string();
    makeLarge((corpus / "photos/wallpapers/mate-nature/FreshFlower.jpg").string(), large);
    std::printf("| photo | fingerprint | vipsthumbnail | ratio |\n|---|---|---|---|\n");
    compare("camera JPEG, 24 megapixels", large, folder);
    compare("camera JPEG, 2 megapixels", (corpus / "orientation/recurser/Landscape_1.jpg").string(), folder);

    std::vector<library::Photo> photos;
    for (int i = 0; i < 16; ++i) {
        const fs::path copy = folder / (std::to_string(i) + ".jpg");
        fs::copy_file(large, copy, fs::copy_options::overwrite_existing);
        photos.push_back({.url = url(copy)});
    }
    scale(photos);
    fs::remove_all(folder);
}
