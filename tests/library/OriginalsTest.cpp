#include "library/OriginalDecodeQueue.h"
#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <condition_variable>
#include <future>
#include <mutex>
#include <optional>
#include <set>

namespace lumisort::library {
namespace {

using files::FileUrl;
using testing::ElementsAre;

std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xff);
    return bytes;
}

/// PNG, second edition, annex D.
std::string chunk(const std::string& typeAndData) {
    std::uint32_t crc = 0xffffffff;
    for (const char byte : typeAndData) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? 0xedb88320 ^ crc >> 1 : crc >> 1;
    }
    return bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData + bigEndian(~crc);
}

/// A PNG that has a size and no pixels.
std::string emptyPng(std::uint32_t width, std::uint32_t height) {
    return "\x89PNG\r\n\x1a\n" +
           chunk("IHDR" + bigEndian(width) + bigEndian(height) + std::string("\x08\x02\0\0\0", 5)) +
           chunk("IDAT") + chunk("IEND");
}

std::string messageFor(const FileUrl& url) {
    try {
        OriginalLoader::load(files::FileSystem::real(), url);
        return "loaded";
    } catch (const OriginalError& error) {
        return error.what();
    }
}

TEST(OriginalLoader, SaysWhyAnOriginalCannotBeShown) {
    const std::string unavailable = "Source unavailable. Reconnect the drive or check the file location.";
    const std::string tooLarge = "Image exceeds the 80 MP preview limit. Open it externally.";
    const test::TemporaryFolder folder;
    EXPECT_EQ(messageFor(folder.url().child("gone.jpg")), unavailable);
    EXPECT_EQ(messageFor(folder.write("large.png", emptyPng(10'000, 8'001))), tooLarge);
    EXPECT_EQ(messageFor(folder.write("wide.png", emptyPng(300'000, 300'000))), tooLarge);
    // Allowed, and then found to be empty.
    const auto damaged = messageFor(folder.write("limit.png", emptyPng(10'000, 8'000)));
    EXPECT_THAT(damaged, testing::Not(testing::AnyOf("", "loaded", tooLarge, unavailable)));
    EXPECT_THAT(messageFor(folder.write("text.jpg", "no photo")), testing::Not(testing::AnyOf("", "loaded")));

    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(
        OriginalLoader::load(files::FileSystem::real(), folder.url().child("gone.jpg"), stop.get_token()),
        tasks::Cancelled);
}

/// A queue whose decoder the test holds and lets go. A picture has `side` × 1 pixels of four bytes.
class OriginalDecodeQueueTest : public testing::Test {
protected:
    using Queue = OriginalDecodeQueue;

    static constexpr int side = 100;

    OriginalDecodeQueueTest() {
        for (const auto* name : {"/a", "/b", "/c", "/d", "/hold"}) system_.write(name, "x");
    }

    static FileUrl url(std::string_view path) { return FileUrl::fromPath(path); }

    images::PicturePyramid load(const FileUrl& file, const std::stop_token& stop) {
        std::unique_lock lock(mutex_);
        started_.push_back(file.path());
        changed_.notify_all();
        changed_.wait(lock, stop, [&] { return !held_.contains(file.path()); });
        tasks::checkCancelled(stop);
        if (!system_.isReadable(file.path())) throw OriginalError("gone");
        return images::PicturePyramid(
            images::Bitmap(side, 1, std::vector<std::uint8_t>(4 * side)));
    }

    void hold(const std::string& path) {
        const std::scoped_lock lock(mutex_);
        held_.insert(path);
    }
    void letGo(const std::string& path) {
        const std::scoped_lock lock(mutex_);
        held_.erase(path);
        changed_.notify_all();
    }
    /// Returns when as many decodes have begun.
    void waitForStarts(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return started_.size() >= count; });
    }
    std::vector<std::string> started() {
        const std::scoped_lock lock(mutex_);
        return started_;
    }

    Queue::Ticket ask(std::string_view path, Queue::Priority priority = Queue::Priority::shown) {
        return queue_.request(url(path), priority,
                              [this, path = std::string(path)](const Queue::Answer& answer) {
                                  const std::scoped_lock lock(mutex_);
                                  answered_.push_back(path + (answer ? "" : ": " + answer.error()));
                              });
    }
    /// What a request made now is answered with, after all that are of its priority.
    Queue::Answer answerTo(std::string_view path, Queue::Priority priority = Queue::Priority::prefetch) {
        std::promise<Queue::Answer> given;
        const auto ticket = queue_.request(url(path), priority,
                                           [&](Queue::Answer answer) { given.set_value(std::move(answer)); });
        return given.get_future().get();
    }

    test::MemoryFileSystem system_;
    std::mutex mutex_; ///< guards the next four
    std::condition_variable_any changed_;
    std::set<std::string> held_;
    std::vector<std::string> started_, answered_;
    Queue queue_{system_,
                 [this](files::FileSystem&, const FileUrl& file, const std::stop_token& stop) {
                     return load(file, stop);
                 },
                 std::size_t{2} * 4 * side};
};

TEST_F(OriginalDecodeQueueTest, DecodesWhatIsShownFirstAndSkipsWhatWasCancelled) {
    hold("/hold");
    const auto first = ask("/hold");
    waitForStarts(1);
    const auto ahead = ask("/a", Queue::Priority::prefetch);
    {
        const auto left = ask("/b");
    }
    const auto shown = ask("/c");
    letGo("/hold");
    ASSERT_TRUE(answerTo("/d"));
    EXPECT_THAT(started(), ElementsAre("/hold", "/c", "/a", "/d"));
    EXPECT_THAT(answered_, ElementsAre("/hold", "/c", "/a"));
}

TEST_F(OriginalDecodeQueueTest, EndsTheDecodeThatNobodyWaitsForAnyMore) {
    hold("/a");
    {
        const auto left = ask("/a");
        waitForStarts(1);
    }
    EXPECT_TRUE(answerTo("/b"));
    EXPECT_THAT(answered_, ElementsAre());
}

TEST_F(OriginalDecodeQueueTest, PutsOffAPrefetchForWhatIsShownUnlessItIsThatItself) {
    hold("/a");
    const auto ahead = ask("/a", Queue::Priority::prefetch);
    waitForStarts(1);
    const auto shown = ask("/b"); // cuts /a short
    waitForStarts(3);             // /a, /b, /a again
    {
        auto sameAhead = std::optional(ask("/c", Queue::Priority::prefetch));
        hold("/c");
        letGo("/a");
        waitForStarts(4);
        const auto same = ask("/c");
        sameAhead.reset(); // the decode under way is wanted all the same
        letGo("/c");
        ASSERT_TRUE(answerTo("/c"));
    }
    EXPECT_THAT(started(), ElementsAre("/a", "/b", "/a", "/c"));
}

TEST_F(OriginalDecodeQueueTest, EndsAPrefetchThatWasTakenOverWhenNobodyWantsItAnyMore) {
    hold("/a");
    auto ahead = std::optional(ask("/a", Queue::Priority::prefetch));
    waitForStarts(1);
    auto shown = std::optional(ask("/a"));
    ahead.reset(); // goes on for the one that is shown
    shown.reset(); // ends it, though "/a" is never let go
    EXPECT_TRUE(answerTo("/b"));
    EXPECT_THAT(answered_, ElementsAre());
    EXPECT_THAT(started(), ElementsAre("/a", "/b"));
}

TEST_F(OriginalDecodeQueueTest, KeepsWhatWasUsedLastWithinItsBudget) {
    const auto a = answerTo("/a");
    ASSERT_TRUE(a);
    ASSERT_TRUE(answerTo("/b"));
    EXPECT_EQ(queue_.recall(url("/a")), *a); // used: /b goes first
    ASSERT_TRUE(answerTo("/c"));
    EXPECT_LE(queue_.keptBytes(), std::size_t{2} * 4 * side);
    EXPECT_EQ(queue_.recall(url("/b")), nullptr);
    EXPECT_EQ(*answerTo("/a"), *a);
    EXPECT_THAT(started(), ElementsAre("/a", "/b", "/c"));
    // What a view still shows is found even after the budget has let it go.
    ASSERT_TRUE(answerTo("/b"));
    ASSERT_TRUE(answerTo("/c"));
    ASSERT_TRUE(answerTo("/d"));
    EXPECT_EQ(queue_.recall(url("/a")), *a);
}

TEST_F(OriginalDecodeQueueTest, DecodesAChangedFileAgainAndForgetsOneThatIsGone) {
    const auto before = answerTo("/a");
    ASSERT_TRUE(before);
    system_.write("/a", "changed");
    EXPECT_EQ(queue_.recall(url("/a")), *before); // shown until the new one is there
    const auto after = answerTo("/a");
    ASSERT_TRUE(after);
    EXPECT_NE(*after, *before);
    system_.remove("/a");
    EXPECT_EQ(answerTo("/a"), std::unexpected(std::string("gone")));
    EXPECT_EQ(queue_.recall(url("/a")), nullptr);
}

} // namespace
} // namespace lumisort::library
