#include "library/LibraryStorage.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <random>

namespace lumisort::library {
namespace {

/// The n-th state of a library; several pieces of text long.
LibraryContents stateNumber(std::int64_t n) {
    return {
        std::vector<Photo>(1500, {.url = files::FileUrl::fromPath("/photos/IMG_1.JPG"), .bytes = n}), {}, {}};
}

/// Ends this process at once after a while; no handler runs.
void dieAfter(std::chrono::microseconds delay) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    const itimerspec due{{}, {0, std::chrono::nanoseconds(delay).count()}};
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &due, nullptr) != 0)
        _exit(1);
}

/// Saves one state after the other, telling which are complete, until it is killed.
[[noreturn]] void saveUntilKilled(std::int64_t first, const files::FileUrl& document, int report,
                                  std::chrono::microseconds life) {
    dieAfter(life);
    for (std::int64_t n = first;; ++n) {
        writeLibrary(files::FileSystem::real(), stateNumber(n), document);
        if (write(report, &n, sizeof n) != sizeof n) _exit(1);
    }
}

} // namespace

TEST(LibraryStorage, AKilledProcessLeavesAWholeDocumentNoOlderThanItsLastSave) {
    constexpr int kills = 300;
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("library.json");
    writeLibrary(files::FileSystem::real(), stateNumber(0), document);
    const auto begin = std::chrono::steady_clock::now();
    writeLibrary(files::FileSystem::real(), stateNumber(0), document);
    const auto oneSave = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - begin); // here and now: sanitizers and slow disks multiply it
    std::mt19937 random(5);
    std::int64_t complete = 0;
    int within = 0; // kills between the beginning and the end of a save
    for (int kill = 0; kill < kills; ++kill) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const auto life = oneSave / 4 + oneSave * (random() % 1000) / 200;
        const pid_t child = fork();
        if (child == 0) saveUntilKilled(complete + 1, document, ends[1], life);
        close(ends[1]);
        while (read(ends[0], &complete, sizeof complete) == sizeof complete) {
        }
        close(ends[0]);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

        const auto left = readLibrary(files::FileSystem::real(), document);
        ASSERT_FALSE(left.photos.empty());
        const auto number = left.photos.front().bytes;
        ASSERT_EQ(left, stateNumber(number));
        ASSERT_TRUE(number == complete || number == complete + 1) << number << " after " << complete;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            within += entry.path() != document.path() && std::filesystem::remove(entry.path());
        complete = number;
    }
    EXPECT_GT(complete, kills / 10); // the children lived long enough to save
    EXPECT_GT(within, kills / 10);   // and were killed in the middle of it
}

} // namespace lumisort::library
