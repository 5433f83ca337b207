// An organize run against bare loops over the same files with the same library calls: two digests of each
// source, a copy, the flushes that the run makes (copy, folder, list, report, root), and a digest of the copy
// read back from the medium. Runs alternate, so that other load on the machine meets both. Then the report
// alone: a step of one photo at growing lengths, with the file system's exchange of names and written in
// full.
//
//   benchmark-organize PHOTOS FOLDER [rounds]     (PHOTOS read-only, FOLDER on the medium that counts; 5)

#include "organize/OrganizeEngine.h"
#include "platform/files/Digest.h"
#include "platform/files/DoubleBufferedFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;
using files::FileSystem;

template <class Work>
double seconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void flush(const fs::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fsync(file) != 0) std::abort();
    ::close(file);
}

/// Appends a line and flushes it, as the list of checksums and the report do.
void record(const fs::path& path, const std::string& line) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (::write(file, line.data(), line.size()) < 0 || fsync(file) != 0) std::abort();
    ::close(file);
}

void bareLoops(const std::vector<library::Photo>& photos, const fs::path& root) {
    auto& system = FileSystem::real();
    for (const auto& photo : photos) files::sha256(system, photo.url.path(), {});
    fs::create_directory(root);
    int number = 0;
    for (const auto& photo : photos) {
        const fs::path partial = root / ".partial", target = root / "Unknown Date" / std::to_string(number++);
        fs::create_directories(target.parent_path());
        files::sha256(system, photo.url.path(), {});
        system.copy(photo.url.path(), partial, {});
        flush(partial);
        system.open(partial, files::Links::follow)->dropCache();
        files::sha256(system, partial, {});
        fs::rename(partial, target);
        flush(target.parent_path());
        record(root / "list", std::string(100, 'x'));
        record(root / "report", std::string(300, 'x'));
        flush(root);
    }
}

void compareRuns(const std::vector<library::Photo>& photos, const fs::path& folder, int rounds) {
    std::vector<double> run, bare;
    const auto destination = files::FileUrl::fromPath((folder / "run").string());
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(seconds([&] { bareLoops(photos, folder / "bare"); }));
        fs::remove_all(folder / "bare");
        fs::create_directory(folder / "run");
        run.push_back(seconds([&] {
            const auto report = organize::OrganizeEngine().copy(
                photos, destination, {.skipDuplicates = false}, [](double, const auto&) {}, {});
            if (report.copied.size() != photos.size()) std::abort();
        }));
        fs::remove_all(folder / "run");
    }
    std::vector<double> ratios;
    for (std::size_t i = 0; i < run.size(); ++i) ratios.push_back(run[i] / bare[i]);
    std::printf("%-12s %8.2f s\n%-12s %8.2f s\n", "organize", median(run), "bare loops", median(bare));
    std::printf("organize / bare loops: %.3f (median of %d rounds, %.3f to %.3f)\n", median(ratios), rounds,
                std::ranges::min(ratios), std::ranges::max(ratios));
}

void compareReports(const fs::path& folder) {
    const std::string path = folder / "report", hidden = folder / ".report.partial", entry(350, 'x');
    std::printf("\n%-16s %14s %14s %8s\n", "report of", "step, ms", "in full, ms", "ratio");
    for (const std::size_t copies : {1'000, 10'000, 50'000}) {
        std::string text(copies * entry.size(), 'x');
        files::DoubleBufferedFile twin(FileSystem::real(), path, hidden);
        twin.save(text, 0);
        twin.save(text, 0);
        std::vector<double> steps, whole;
        for (int step = 0; step < 11; ++step) {
            const std::size_t unchanged = text.size();
            text += entry;
            steps.push_back(seconds([&] { twin.save(text, unchanged); }));
            whole.push_back(seconds([&] {
                files::DoubleBufferedFile full(FileSystem::real(), path + "2", hidden + "2");
                full.save(text, 0);
            }));
        }
        std::printf("%6zu copies    %14.2f %14.2f %8.3f\n", copies, median(steps) * 1e3, median(whole) * 1e3,
                    median(steps) / median(whole));
        fs::remove(path);
        fs::remove(path + "2");
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 3) {
        std::fprintf(stderr, "usage: %s PHOTOS FOLDER [rounds]\n", arguments[0]);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::vector<library::Photo> photos;
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(arguments[1])) {
        if (!entry.is_regular_file()) continue;
        photos.push_back({.url = files::FileUrl::fromPath(entry.path().string())});
        bytes += entry.file_size();
    }
    const fs::path folder = fs::path(arguments[2]) / ("lumisort-benchmark-" + std::to_string(getpid()));
    fs::create_directories(folder);
    std::printf("%zu files, %.1f MB\n", photos.size(), static_cast<double>(bytes) / 1e6);
    compareRuns(photos, folder, argumentCount > 3 ? std::max(1, std::atoi(arguments[3])) : 5);
    compareReports(folder);
    fs::remove_all(folder);
}
