// Thumbnails of a 24-megapixel photo, 256 pixels for a fingerprint and 900 for the window, against
// `vipsthumbnail --size …` (Debian package libvips-tools), and reading photo properties against `exiftool
// -fast2` (libimage-exiftool-perl). CPU time, the best of several runs; of the other programs without their
// start, which a tiny image measures.
//
//   benchmark-decoding PHOTO FOLDER
//
// PHOTO is enlarged to 6000 x 4000 with sensor-like noise, so that its JPEG has a camera file's size.

#include "platform/images/Decoder.h"
#include "platform/images/decoding/DecoderSetup.h"
#include "platform/images/decoding/Vips.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;
using images::runVips;

constexpr int runs = 7;

double ownCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template <class Work>
double best(Work&& work) {
    double least = 1e9;
    for (int run = 0; run < runs; ++run) {
        const double start = ownCpuSeconds();
        work();
        least = std::min(least, ownCpuSeconds() - start);
    }
    return least;
}

/// CPU seconds of a program, none where it is not installed or fails.
std::optional<double> programCpu(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const auto& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    double least = 1e9;
    for (int run = 0; run < runs; ++run) {
        const pid_t child = fork();
        if (child == 0) {
            const int nowhere = open("/dev/null", O_WRONLY);
            dup2(nowhere, 1);
            dup2(nowhere, 2);
            execvp(arguments[0], arguments.data());
            _exit(127);
        }
        int status = 0;
        rusage usage{};
        if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) == 127)
            return std::nullopt;
        const auto seconds = [](const timeval& t) {
            return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
        };
        least = std::min(least, seconds(usage.ru_utime) + seconds(usage.ru_stime));
    }
    return least;
}

images::ImageReference cameraLike(const char* photo) {
    constexpr int width = 6000, height = 4000;
    constexpr double noise = 3;
    const auto large = runVips([&](VipsImage** out) {
        return vips_thumbnail(photo, out, width, "height", height, "size", VIPS_SIZE_FORCE, nullptr);
    });
    const auto grain = runVips([&](VipsImage** out) {
        return vips_gaussnoise(out, width, height, "sigma", noise, "mean", 0.0, nullptr);
    });
    const auto noisy =
        runVips([&](VipsImage** out) { return vips_add(large.get(), grain.get(), out, nullptr); });
    const auto clipped =
        runVips([&](VipsImage** out) { return vips_cast(noisy.get(), out, VIPS_FORMAT_UCHAR, nullptr); });
    // In memory: the photo is read from top to bottom, which serves one file only.
    return runVips([&](VipsImage** out) { return (*out = vips_image_copy_memory(clipped.get())) ? 0 : -1; });
}

void compareThumbnails(const char* photo, const fs::path& folder) {
    const auto tiny = runVips([&](VipsImage** out) { return vips_black(out, 8, 8, "bands", 3, nullptr); });
    const auto large = cameraLike(photo);
    const auto vipsthumbnail = [&](const fs::path& file, int side) {
        return programCpu({"vipsthumbnail", file.string(), "--size", std::to_string(side) + ">", "-o",
                           (folder / "out.v").string()});
    };
    for (const char* name : {"photo.jpg[Q=93]", "progressive.jpg[Q=93,interlace]", "photo.png[compression=3]",
                             "photo.tif[compression=lzw]"}) {
        const std::string options = name;
        const std::string file = options.substr(0, options.find('['));
        const std::string tinyFile = "tiny-" + file;
        if (vips_image_write_to_file(large.get(), (folder / options).c_str(), nullptr) != 0 ||
            vips_image_write_to_file(tiny.get(), (folder / tinyFile).c_str(), nullptr) != 0) {
            std::printf("%s cannot be written\n", file.c_str());
            continue;
        }
        const auto url = files::FileUrl::fromPath((folder / file).string());
        for (const int side : {256, 900}) {
            const double ours = best([&] { images::decoder().thumbnail(url, side); });
            std::printf("thumbnail %d of %-16s %5.1f MB  %6.1f ms CPU", side, file.c_str(),
                        static_cast<double>(fs::file_size(folder / file)) / 1e6, ours * 1e3);
            const auto theirs = vipsthumbnail(folder / file, side),
                       start = vipsthumbnail(folder / tinyFile, side);
            if (theirs && start)
                std::printf("  vipsthumbnail %6.1f ms without its start of %.1f  ratio %.2f\n",
                            (*theirs - *start) * 1e3, *start * 1e3, ours / (*theirs - *start));
            else
                std::printf("  vipsthumbnail is absent\n");
        }
    }
}

void compareProperties(const fs::path& photos) {
    std::vector<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(photos))
        if (entry.is_regular_file()) paths.push_back(entry.path().string());
    std::vector<files::FileUrl> urls;
    for (const auto& path : paths) urls.push_back(files::FileUrl::fromPath(path));
    const auto count = static_cast<double>(paths.size());
    const double ours = best([&] {
        for (const auto& url : urls) try {
                images::decoder().properties(url);
            } catch (const images::ImageError&) { // What is no photo costs time as well.
            }
    });
    std::printf("properties of %zu files  %.3f ms CPU each", paths.size(), ours / count * 1e3);
    std::vector<std::string> command{"exiftool", "-fast2", "-q", "-q", "-ImageSize", "-DateTimeOriginal"};
    command.insert(command.end(), paths.begin(), paths.end());
    if (const auto theirs = programCpu(command))
        std::printf("  exiftool -fast2 %.1f ms each  %.0f times as fast\n", *theirs / count * 1e3,
                    *theirs / ours);
    else
        std::printf("  exiftool is absent\n");
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: %s PHOTO FOLDER\n", arguments[0]);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    images::initialiseDecoder();
    images::decoding::start({});
    const fs::path folder = fs::temp_directory_path() / ("lumisort-benchmark-" + std::to_string(getpid()));
    fs::create_directories(folder);
    try {
        compareThumbnails(arguments[1], folder);
        compareProperties(arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", arguments[1], error.what());
    }
    fs::remove_all(folder);
    return 0;
}
