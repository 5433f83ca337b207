// Finding exact copies in the page cache. The ways that are compared take turns; the best turn of each
// counts, because others share the machine.
//
// - Files of one size, every second a copy: against a bare loop of 1 MiB reads into OpenSSL's SHA-256 over
// the
//   same files, in processor time.
// - 400 files of five sizes (2.7 GB) that are all different: against `jdupes -q -r`, where it is installed,
// in
//   time that passes, from the start of a process to its end on both sides.
//
//   benchmark-exact_copies [folder for 2.7 GB of files]

#include "similarity/ExactCopies.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace lumisort;
namespace fs = std::filesystem;

namespace {

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Files of random bytes, every second the copy of the one before.
std::vector<library::Photo> makeFiles(const fs::path& folder, std::size_t count, std::size_t bytes) {
    std::mt19937_64 random(1);
    std::vector<std::uint64_t> contents(bytes / sizeof(std::uint64_t));
    std::vector<library::Photo> photos;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 2 == 0) std::ranges::generate(contents, std::ref(random));
        const auto path = folder / (std::to_string(i) + ".jpg");
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(contents.data()),
                   static_cast<std::streamsize>(contents.size() * sizeof(contents[0])));
        photos.push_back({.url = files::FileUrl::fromPath(path.string())});
    }
    return photos;
}

void bareLoop(const std::vector<library::Photo>& photos) {
    std::vector<char> buffer(1 << 20);
    EVP_MD* algorithm = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    for (const auto& photo : photos) {
        const int file = open(photo.url.path().c_str(), O_RDONLY | O_CLOEXEC);
        EVP_DigestInit_ex2(context, algorithm, nullptr);
        while (const ssize_t count = read(file, buffer.data(), buffer.size())) {
            if (count < 0) std::abort();
            EVP_DigestUpdate(context, buffer.data(), static_cast<std::size_t>(count));
        }
        unsigned char digest[EVP_MAX_MD_SIZE];
        EVP_DigestFinal_ex(context, digest, nullptr);
        close(file);
    }
    EVP_MD_CTX_free(context);
    EVP_MD_free(algorithm);
}

double secondsPassed() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <class Work>
void keepBest(double& best, Work work) {
    const double start = processorSeconds();
    work();
    best = std::min(best, processorSeconds() - start);
}

void measure(const fs::path& folder, std::size_t count, std::size_t bytes) {
    fs::create_directories(folder);
    const auto photos = makeFiles(folder, count, bytes);
    double ours = std::numeric_limits<double>::infinity(), bare = ours;
    for (int turn = 0; turn < 7; ++turn) {
        keepBest(bare, [&] { bareLoop(photos); });
        keepBest(ours, [&] {
            const auto copies = similarity::findExactCopies(files::FileSystem::real(), photos);
            if (copies.groups.size() != count / 2 || copies.failed != 0) std::abort();
        });
    }
    fs::remove_all(folder);
    const double megabytes = static_cast<double>(count) * static_cast<double>(bytes) / 1e6;
    std::printf("| %zu × %zu KiB | %.0f MB/s | %.0f MB/s | %.2f |\n", count, bytes / 1024, megabytes / ours,
                megabytes / bare, bare / ours);
}

/// Files that are equal in their first `same` bytes and random from there on.
std::vector<library::Photo> makeDifferentFiles(const fs::path& folder, std::size_t same) {
    std::mt19937_64 random(2);
    std::vector<library::Photo> photos;
    for (const std::size_t megabytes : {4, 5, 6, 8, 11})
        for (int i = 0; i < 80; ++i) {
            std::vector<std::uint64_t> contents((megabytes << 20) / sizeof(std::uint64_t));
            std::generate(contents.begin() + static_cast<std::ptrdiff_t>(same / sizeof(std::uint64_t)),
                          contents.end(), std::ref(random));
            const auto path = folder / (std::to_string(photos.size()) + ".jpg");
            std::ofstream(path, std::ios::binary)
                .write(reinterpret_cast<const char*>(contents.data()),
                       static_cast<std::streamsize>(contents.size() * sizeof(contents[0])));
            photos.push_back({.url = files::FileUrl::fromPath(path.string())});
        }
    return photos;
}

/// Runs `work` in a process of its own, as the other program is one.
template <class Work>
double processTime(Work work) {
    const double start = secondsPassed();
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) return std::numeric_limits<double>::quiet_NaN();
    return secondsPassed() - start;
}

void measureDifferent(const fs::path& folder, std::size_t same) {
    fs::create_directories(folder);
    const auto photos = makeDifferentFiles(folder, same);
    double ours = std::numeric_limits<double>::infinity(), other = ours;
    for (int turn = 0; turn < 7; ++turn) {
        other = std::min(other, processTime([&] {
                             const int none = open("/dev/null", O_WRONLY | O_CLOEXEC);
                             dup2(none, STDOUT_FILENO);
                             dup2(none, STDERR_FILENO);
                             execlp("jdupes", "jdupes", "-q", "-r", folder.c_str(), nullptr);
                             _exit(1);
                         }));
        ours = std::min(ours, processTime([&] {
                            const auto copies =
                                similarity::findExactCopies(files::FileSystem::real(), photos);
                            if (!copies.groups.empty() || copies.failed != 0) _exit(1);
                        }));
    }
    fs::remove_all(folder);
    std::printf("| %zu KiB | %.1f ms | %.1f ms | %.2f |\n", same / 1024, ours * 1e3, other * 1e3,
                ours / other);
}

} // namespace

int main(int argc, char** argv) {
    const fs::path folder =
        fs::path(argc > 1 ? argv[1] : fs::temp_directory_path()) / "lumisort-exact-copies";
    std::printf("| files of one size | exact copies | bare loop | ratio |\n|---|---|---|---|\n");
    measure(folder, 16, 16 << 20);
    measure(folder, 64, 4 << 20);
    measure(folder, 1000, 64 << 10);
    std::printf(
        "\n| 400 different files, equal in the first | exact copies | jdupes | ratio |\n|---|---|---|---|\n");
    for (const std::size_t same : {0, 16 << 10, 1 << 20, 3 << 20}) measureDifferent(folder, same);
}
