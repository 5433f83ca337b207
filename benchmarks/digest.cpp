// files::sha256 against a bare loop of 1 MiB reads into OpenSSL EVP over the same files, in turns, with the
// files in the page cache. The ratio of the throughputs is the figure; 1 means that nothing is lost.
//
//   benchmark-digest [FILE…]     without files: generated ones

#include "platform/files/Digest.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace lumisort;

/// Processor time of this thread: other programs on the machine do not count.
double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

unsigned char bareLoop(const std::vector<std::string>& paths) {
    const auto buffer = std::make_unique<unsigned char[]>(files::digestChunkBytes);
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    unsigned char sum = 0;
    for (const auto& path : paths) {
        unsigned char digest[EVP_MAX_MD_SIZE];
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        EVP_DigestInit_ex(context, EVP_sha256(), nullptr);
        for (ssize_t count = 0; (count = read(file, buffer.get(), files::digestChunkBytes)) > 0;)
            EVP_DigestUpdate(context, buffer.get(), static_cast<std::size_t>(count));
        EVP_DigestFinal_ex(context, digest, nullptr);
        close(file);
        sum = static_cast<unsigned char>(sum ^ digest[0]);
    }
    EVP_MD_CTX_free(context);
    return sum;
}

unsigned char throughTheProgram(const std::vector<std::string>& paths) {
    unsigned char sum = 0;
    for (const auto& path : paths)
        sum = static_cast<unsigned char>(
            sum ^ std::stoi(files::sha256(files::FileSystem::real(), path, {}).substr(0, 2), nullptr, 16));
    return sum;
}

void compare(const char* name, const std::vector<std::string>& paths) {
    double megabytes = 0;
    for (const auto& path : paths) megabytes += static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    double bare = 1e9, ours = 1e9;
    for (int round = 0; round < 9; ++round) { // the first round warms the cache
        const auto start = processorSeconds();
        const auto expected = bareLoop(paths);
        const auto middle = processorSeconds();
        if (throughTheProgram(paths) != expected) {
            std::fputs("the digests differ\n", stderr);
            std::exit(1); // NOLINT(concurrency-mt-unsafe): one thread
        }
        const auto end = processorSeconds();
        if (round == 0) continue;
        bare = std::min(bare, middle - start);
        ours = std::min(ours, end - middle);
    }
    std::printf("%-24s %6zu %9.1f %12.0f %12.0f %8.3f\n", name, paths.size(), megabytes, megabytes / bare,
                megabytes / ours, bare / ours);
}

} // namespace

int main(int count, char** arguments) {
    std::printf("%-24s %6s %9s %12s %12s %8s\n", "files", "number", "MB", "bare MB/s", "here MB/s", "ratio");
    if (count > 1) {
        compare("named", std::vector<std::string>(arguments + 1, arguments + count));
        return 0;
    }
    const auto folder =
        std::filesystem::temp_directory_path() / ("lumisort-digest-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const std::pair<const char*, std::pair<int, std::size_t>> sets[] = {
        {"camera RAW, 30 MB", {4, 30'000'000}},    {"camera JPEG, 8 MB", {16, 8'000'000}},
        {"telephone JPEG, 2 MB", {64, 2'000'000}}, {"small, 200 kB", {500, 200'000}},
        {"thumbnails, 10 kB", {2000, 10'000}},
    };
    for (const auto& [name, set] : sets) {
        std::vector<std::string> paths;
        for (int i = 0; i < set.first; ++i) {
            paths.push_back((folder / std::to_string(i)).string());
            std::ofstream(paths.back()) << std::string(set.second, static_cast<char>(i));
        }
        compare(name, paths);
    }
    std::filesystem::remove_all(folder);
}
