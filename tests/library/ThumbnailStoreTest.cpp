#include "library/ThumbnailStore.h"

#include "platform/tasks/Cancellation.h"

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <new>
#include <semaphore>
#include <string>
#include <vector>

namespace lumisort::library {
namespace {

using files::FileUrl;
using testing::ElementsAre;

FileUrl url(std::string_view name) {
    return FileUrl::fromPath("/p/" + std::string(name));
}

/// A store of previews of 100 bytes whose decoder notes what it decodes and waits where the test says so.
class ThumbnailStoreTest : public testing::Test {
protected:
    Thumbnail ask(std::string_view name, const std::stop_token& stop = {}) {
        std::promise<Thumbnail> answer;
        store_->image(url(name), [&](Thumbnail image) { answer.set_value(std::move(image)); }, stop);
        return answer.get_future().get();
    }

    /// Asks without waiting; `answers_` notes what came.
    void queue(std::string_view name, const std::stop_token& stop = {}) {
        store_->image(
            url(name),
            [this, name = std::string(name)](const Thumbnail& image) {
                answers_.push_back(name + (image ? "" : ":none"));
                answered_.release();
            },
            stop);
        ++asked_;
    }

    /// Has the decoder wait at "gate", so that requests queue up behind it.
    void closeGate() {
        queue("gate");
        atGate_.acquire();
    }
    void openGate() { gate_.release(); }

    images::Bitmap decode(const FileUrl& photo, int maxSide, const std::stop_token& stop) {
        EXPECT_EQ(maxSide, 900);
        const std::string name(photo.name());
        decoded_.push_back(name);
        if (name == "gate") {
            const std::stop_callback ended(stop, [this] { gate_.release(); });
            atGate_.release();
            gate_.acquire();
            tasks::checkCancelled(stop);
        }
        if (name.starts_with("broken")) throw images::ImageError("is no photo");
        if (name.starts_with("huge")) throw std::bad_alloc();
        return {name == "large" ? 25 : 5, 5};
    }

    /// Waits until all that was queued is answered.
    void drain() {
        for (; asked_ > 0; --asked_) answered_.acquire();
    }

    std::counting_semaphore<> gate_{0}, atGate_{0}, answered_{0};
    int asked_ = 0;
    double now_ = 0;
    std::vector<std::string> decoded_, answers_; // written on the store's thread, read after `drain`
    std::unique_ptr<ThumbnailStore> store_ = std::make_unique<ThumbnailStore>(
        [this](const auto& photo, int side, const auto& stop) { return decode(photo, side, stop); },
        time::Clock{.now = [] { return time::Timestamp(0); }, .uptimeSeconds = [this] { return now_; }}, 300);
};

TEST_F(ThumbnailStoreTest, KeepsWhatWasUsedLastWithinItsBytes) {
    for (const auto* name : {"a", "b", "c", "a", "d", "a", "c", "b", "large", "b", "large"})
        EXPECT_TRUE(ask(name)) << name;
    EXPECT_THAT(decoded_, ElementsAre("a", "b", "c", "d", "b", "large", "large"));
    EXPECT_EQ(ask("b"), ask("b")); // one picture for all who show it
}

TEST_F(ThumbnailStoreTest, HasNoPreviewOfWhatCannotBeRead) {
    for (const auto* name : {"broken", "huge", "broken"}) EXPECT_FALSE(ask(name)) << name;
    EXPECT_THAT(decoded_, ElementsAre("broken", "huge", "broken")) << "it may be whole by the next time";
}

TEST_F(ThumbnailStoreTest, SkipsWhatIsNotWantedAnyMore) {
    std::stop_source gone;
    closeGate();
    for (const auto* name : {"a", "b", "c"}) queue(name, gone.get_token());
    queue("d");
    gone.request_stop();
    openGate();
    drain();
    EXPECT_THAT(decoded_, ElementsAre("gate", "d"));
    EXPECT_THAT(answers_, ElementsAre("gate", "a:none", "b:none", "c:none", "d"));
}

TEST_F(ThumbnailStoreTest, ServesTheLatestScreenFirstAndEachFromItsTop) {
    closeGate();
    const struct {
        double at;
        const char* name;
    } requests[] = {{1.0, "a1"}, {1.4, "a2"}, {1.8, "a3"}, {2.4, "b1"},
                    {2.5, "b2"}, {9.0, "c1"}, {9.1, "c2"}};
    for (const auto& [at, name] : requests) {
        now_ = at;
        queue(name);
    }
    openGate();
    drain();
    EXPECT_THAT(answers_, ElementsAre("gate", "c1", "c2", "b1", "b2", "a1", "a2", "a3"));
}

TEST_F(ThumbnailStoreTest, DecodesAnewWhatIsAskedForAfterForgetting) {
    ask("a");
    closeGate();
    queue("b");
    store_->removeAll();
    now_ = 5; // a new burst, which is served before the forgetting had its turn
    queue("a");
    openGate();
    drain();
    EXPECT_THAT(decoded_, ElementsAre("a", "gate", "a", "b"));
}

TEST_F(ThumbnailStoreTest, AnswersAllBeforeItGoes) {
    closeGate();
    queue("a");
    queue("b");
    store_.reset();
    EXPECT_THAT(answers_, ElementsAre("gate:none", "a:none", "b:none"));
    EXPECT_THAT(decoded_, ElementsAre("gate"));
}

} // namespace
} // namespace lumisort::library
