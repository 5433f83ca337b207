// The library document, read and written, against a bare simdjson parse and a bare write of the same bytes.
//
//   benchmark-library_document [photos]      (100000 photos, half of them marked, without an argument)

#include "library/LibraryStorage.h"
#include "platform/files/AtomicFile.h"

#include <simdjson.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace lumisort;

library::LibraryContents generated(std::size_t count) {
    library::LibraryContents session;
    session.folders = {files::FileUrl::fromPath("/media/anna/Fotos 2/"),
                       files::FileUrl::fromPath("/home/anna/Bilder/")};
    for (std::size_t i = 0; i < count; ++i) {
        const auto url = session.folders[i % 2].child(std::to_string(2000 + i % 25) + "/Urlaub Süd/IMG_" +
                                                      std::to_string(100'000 + i) + ".JPG");
        const double taken = 1.5e8 + 7919.0 * static_cast<double>(i);
        session.photos.push_back({url, 4'000'000 + static_cast<std::int64_t>(i * 37), 6000, 4000,
                                  i % 5 ? std::optional(time::Timestamp(taken)) : std::nullopt});
        if (i % 2) continue;
        const auto modified =
            time::Timestamp::fromUnix(1'700'000'000 + static_cast<std::int64_t>(i), 123'456'789);
        session.reviewMarks.emplace(url.path(),
                                    library::ReviewMark{library::ReviewDecision::keep,
                                                        {session.photos.back().bytes, modified, modified}});
    }
    return session;
}

/// Processor time of the best of five runs, in seconds: the machine may be busy with other work.
template <class Work>
double seconds(Work&& work) {
    double best = 1e9;
    for (int run = 0; run < 5; ++run) {
        const std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
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
    const std::size_t count = argumentCount > 1 ? std::strtoul(arguments[1], nullptr, 10) : 100'000;
    const auto folder =
        std::filesystem::temp_directory_path() / ("lumisort-benchmark-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const auto url = files::FileUrl::fromPath((folder / "library.json").string());
    auto& disk = files::FileSystem::real();

    const auto session = generated(count);
    const double memoryBefore = peakMiB();
    const double write = seconds([&] { library::writeLibrary(disk, session, url); });
    const double memoryWritten = peakMiB();
    const double read = seconds([&] {
        if (library::readLibrary(disk, url).photos.size() != count) std::abort();
    });
    const double memoryRead = peakMiB();

    const std::string bytes = files::readFile(disk, url.path(), 1LL << 32);
    const double bareWrite = seconds([&] { files::replaceFile(disk, url.path() + ".bare", bytes); });
    simdjson::dom::parser parser;
    const double bareRead = seconds([&] {
        auto text = simdjson::padded_string::load(url.path());
        if (parser.parse(text.value()).error()) std::abort();
    });
    std::filesystem::remove_all(folder);

    std::printf("%zu photos, %zu marks, %.1f MB\n", count, session.reviewMarks.size(),
                static_cast<double>(bytes.size()) / 1e6);
    std::printf("%-34s %8s %8s %8s\n", "", "ours s", "bare s", "ratio");
    std::printf("%-34s %8.4f %8.4f %8.2f\n", "read / simdjson DOM parse", read, bareRead, read / bareRead);
    std::printf("%-34s %8.4f %8.4f %8.2f\n", "write / replacement with the bytes", write, bareWrite,
                write / bareWrite);
    std::printf("peak memory MiB: session %.0f, after writing %.0f, after reading a second one %.0f\n",
                memoryBefore, memoryWritten, memoryRead);
}
