#include "app/desktop/DeviceWatch.h"

#include "platform/volumes/MountTable.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <vector>

namespace lumisort::app {

using testing::ElementsAre;

namespace {

/// A watch whose timers fire when the test says so, and whose mount table is one end of a pair of sockets:
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
        char event = '!';
        ASSERT_EQ(send(mounts_[1], &event, 1, MSG_OOB), 1);
        for (int round = 0; round < 3; ++round) QCoreApplication::processEvents();
        ASSERT_EQ(recv(mounts_[0], &event, 1, MSG_OOB), 1); // what polling does with the kernel's event
    }

    static std::array<int, 2> pairOfSockets() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        return ends;
    }

    std::array<int, 2> mounts_ = pairOfSockets();
    std::vector<Timer> timers_;
    int looks_ = 0;
    DeviceWatch watch_{
        [this] { ++looks_; },
        {.mountDescriptor = mounts_[0],
         .after = [this](std::chrono::milliseconds delay, QObject*, std::function<void()> function) {
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

TEST(DeviceWatch, LooksSoonAfterARealMountAndUnmount) {
    const test::TemporaryFolder folder;
    const auto table = volumes::watchMountTable();
    int looks = 0;
    DeviceWatch watch([&] { ++looks; }, {.mountDescriptor = table.number()});
    watch.setShown(true);
    QCoreApplication::processEvents();
    if (mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "this machine does not let tests mount a file system";
    const auto looksSoon = [&](int wanted) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        return test::QuickStage::until([&] { return looks == wanted; }) &&
               std::chrono::steady_clock::now() < end;
    };
    EXPECT_TRUE(looksSoon(2));
    EXPECT_EQ(umount(folder.path().c_str()), 0);
    EXPECT_TRUE(looksSoon(3));
}

} // namespace

} // namespace lumisort::app
