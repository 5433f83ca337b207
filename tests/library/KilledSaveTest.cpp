#include "library/LibraryFile.h"
#include "library/LibraryStorage.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <random>

namespace lumisort::library {
namespace {

/// The n-th state of a library; more than one piece of text long.
LibraryContents stateNumber(std::int64_t n) {
    return {
        std::vector<Photo>(4500, {.url = files::FileUrl::fromPath("/photos/IMG_1.JPG"), .bytes = n}), {}, {}};
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

/// Saves one state after the other, reporting which are complete, until it is killed. With two programs each
/// finds what the other wrote, and keeps a copy of it first.
[[noreturn]] void saveUntilKilled(std::int64_t first, const files::FileUrl& document, int report, bool two,
                                  std::chrono::microseconds life) {
    dieAfter(life);
    LibraryFile file(files::FileSystem::real(), document, time::Clock::system());
    LibraryFile other(files::FileSystem::real(), document, time::Clock::system());
    file.load();
    other.load();
    for (std::int64_t n = first;; ++n) {
        (two && n % 2 == 0 ? other : file).save(stateNumber(n));
        if (write(report, &n, sizeof n) != sizeof n) _exit(1);
    }
}

std::chrono::microseconds timeOfOneSave(const files::FileUrl& document) {
    const auto begin = std::chrono::steady_clock::now();
    writeLibrary(files::FileSystem::real(), stateNumber(0), document);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
}

/// The number of the state in a document that must be whole.
std::int64_t numberIn(const files::FileUrl& document) {
    const auto left = readLibrary(files::FileSystem::real(), document);
    const auto number = left.photos.at(0).bytes;
    EXPECT_EQ(left, stateNumber(number));
    return number;
}

} // namespace

TEST(LibraryFile, AKilledProgramLosesNoSaveAndTheNextStartFindsNothingElse) {
    const char* wanted = std::getenv("LUMISORT_KILLS"); // NOLINT(concurrency-mt-unsafe): nothing sets it
    const int kills = wanted ? std::atoi(wanted) : 300; // NOLINT(cert-err34-c): a test's own knob
    const test::TemporaryFolder folder;
    const auto document = folder.url().child("library.json");
    timeOfOneSave(document);
    const auto oneSave = timeOfOneSave(document); // here and now: sanitizers and slow disks multiply it
    std::mt19937 random(5);
    std::int64_t complete = 0;
    int within = 0; // kills between the beginning and the end of a save
    for (int kill = 0; kill < kills; ++kill) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const auto life = oneSave / 4 + oneSave * (random() % 1000) / 300;
        const pid_t child = fork();
        if (child == 0) saveUntilKilled(complete + 1, document, ends[1], kill % 4 == 0, life);
        close(ends[1]);
        while (read(ends[0], &complete, sizeof complete) == sizeof complete) {
        }
        close(ends[0]);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

        const auto isLeftover = [](const auto& entry) { return entry.path().extension() == ".tmp"; };
        const std::filesystem::directory_iterator left(folder.path());
        within += std::ranges::any_of(left, isLeftover);
        LibraryFile(files::FileSystem::real(), document, time::Clock::system()).load();
        const auto number = numberIn(document);
        ASSERT_TRUE(number == complete || number == complete + 1) << number << " after " << complete;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path() == document.path()) continue;
            ASSERT_TRUE(entry.path().filename().string().starts_with("library.json.changed-")) << entry;
            ASSERT_LE(numberIn(files::FileUrl::fromPath(entry.path().string())), number);
            std::filesystem::remove(entry.path());
        }
        complete = number;
    }
    EXPECT_GT(complete, kills / 100); // the children lived long enough to save
    EXPECT_GT(within, kills / 100);   // and were killed in the middle of it
}

} // namespace lumisort::library
