#include "app/desktop/DeviceWatch.h"

#include "support/quick/QuickStage.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <vector>

namespace lumisort::app {

using testing::ElementsAre;

namespace {

/// A watch whose time is up when the test says so, and whose mount table is one end of a pair of sockets:
/// urgent data is a priority event, too.
class DeviceWatchTest : public testing::Test {
protected:
    ~DeviceWatchTest() override {
        for (const int end : mounts_) close(end);
    }

    struct Timer {
        std::chrono::milliseconds delay;
        std::function<void()> function;
    };

    std::vector<int> delaysMS() const {
        std::vector<int> delays;
        for (const auto& timer : timers_) delays.push_back(static_cast<int>(timer.delay.count()));
        return delays;
    }
    void letTimersFire() {
        for (auto& timer : std::exchange(timers_, {})) timer.function();
    }
    void mount() {
        ASSERT_EQ(send(mounts_[1], "!", 1, MSG_OOB), 1);
        ASSERT_TRUE(test::QuickStage::until([this, before = changes_] { return changes_ > before; }));
    }
    bool mountsChanged() {
        char event = 0;
        changes_ += recv(mounts_[0], &event, 1, MSG_OOB) == 1;
        return true;
    }

    static std::array<int, 2> pairOfSockets() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        return ends;
    }

    std::array<int, 2> mounts_ = pairOfSockets();
    std::vector<Timer> timers_;
    int looks_ = 0, changes_ = 0;
    DeviceWatch watch_{
        [this] { ++looks_; },
        {.mountDescriptor = mounts_[0],
         .mountsChanged = [this] { return mountsChanged(); },
         .after =
             [this](std::chrono::milliseconds delay, QObject*, std::function<void()> function) {
                 timers_.push_back({delay, std::move(function)});
             }}};
};

TEST_F(DeviceWatchTest, LooksAtOnceAndEveryHalfMinuteWhileTheWindowShows) {
    EXPECT_EQ(looks_, 0);
    watch_.setShown(true);
    EXPECT_EQ(looks_, 1);
    for (int round = 2; round <= 4; ++round) {
        EXPECT_THAT(delaysMS(), ElementsAre(30'000));
        letTimersFire();
        EXPECT_EQ(looks_, round);
    }
    watch_.setShown(false);
    letTimersFire();
    EXPECT_EQ(looks_, 4);
    EXPECT_TRUE(timers_.empty());
}

TEST_F(DeviceWatchTest, ShownAgainItKeepsOneRound) {
    watch_.setShown(true);
    watch_.setShown(true);
    watch_.setShown(false);
    watch_.setShown(true);
    EXPECT_EQ(looks_, 2);
    letTimersFire(); // of the first showing and of the second
    EXPECT_EQ(looks_, 3);
    EXPECT_EQ(timers_.size(), 1u);
}

TEST_F(DeviceWatchTest, LooksWhenTheApplicationBecomesActive) {
    watch_.applicationActivated();
    EXPECT_EQ(looks_, 0) << "no window yet";
    watch_.setShown(true);
    watch_.applicationActivated();
    EXPECT_EQ(looks_, 2);
}

TEST_F(DeviceWatchTest, LooksOnceForMountsThatComeTogetherAndAgainForLaterOnes) {
    watch_.setShown(true);
    timers_.clear();
    for (int drive = 1; drive <= 3; ++drive) {
        mount();
        mount();
        EXPECT_EQ(looks_, drive) << "not before the table has settled";
        EXPECT_EQ(timers_.size(), 1u);
        letTimersFire();
        EXPECT_EQ(looks_, drive + 1);
    }
    watch_.setShown(false);
    mount();
    letTimersFire();
    EXPECT_EQ(looks_, 4);
}

} // namespace

} // namespace lumisort::app
