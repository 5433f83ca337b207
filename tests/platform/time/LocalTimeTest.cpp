#include "platform/time/LocalTime.h"

#include "platform/time/Clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>

namespace lumisort::time {

namespace {

/// Sets the process's time zone while it lives.
class Zone {
public:
    explicit Zone(const char* name) {
        setenv("TZ", name, 1); // NOLINT(concurrency-mt-unsafe): the test has one thread
        tzset();
    }
    ~Zone() {
        unsetenv("TZ"); // NOLINT(concurrency-mt-unsafe)
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
};

/// Rules in place of names: they need no zone files. Berlin, New York, Kathmandu (UTC+5:45), Lord Howe (half
/// an hour of daylight saving).
constexpr const char* zones[] = {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT,M3.2.0,M11.1.0",
                                 "<+0545>-5:45", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"};

TEST(ExifDate, TakesOneShapeAndRealDatesOnly) {
    const Zone zone("UTC0");
    struct Case {
        std::string_view text;
        std::optional<double> unixSeconds;
    };
    for (const auto& [text, expected] : {
             Case{"2001:01:01 00:00:00", 978'307'200},
             Case{"2021:07:04 18:30:00", 1'625'423'400},
             Case{{"2021:07:04 18:30:00\0", 20}, 1'625'423'400},
             Case{"2021:07:04 18:30:00 \n", 1'625'423'400},
             Case{"1969:12:31 23:59:59", -1},
             Case{"2024:02:29 23:59:59", 1'709'251'199},
             Case{"2000:02:29 00:00:00", 951'782'400},
             Case{"2023:02:29 00:00:00", std::nullopt},
             Case{"1900:02:29 00:00:00", std::nullopt},
             Case{"0000:00:00 00:00:00", std::nullopt},
             Case{"0000:01:01 00:00:00", std::nullopt},
             Case{"2021:13:40 00:00:00", std::nullopt},
             Case{"2021-13-40 00:00:00", std::nullopt},
             Case{"2021-07-04 18:30", std::nullopt},
             Case{"2021-07-04 18:30:00", std::nullopt},
             Case{"2021:7:4 18:30:00", std::nullopt},
             Case{"2021: 7: 4 18:30:00", std::nullopt},
             Case{"2021:07:04 18:30:00.5", std::nullopt},
             Case{"2021:07:04T18:30:00", std::nullopt},
             Case{"2021:07:04 24:00:00", std::nullopt},
             Case{"2021:07:04 18:60:00", std::nullopt},
             Case{"2021:07:04 18:30:60", std::nullopt},
             Case{"2021:07:04 18:30:+1", std::nullopt},
             Case{" 2021:07:04 18:30:00", std::nullopt},
             Case{"    :  :     :  :  ", std::nullopt},
             Case{"", std::nullopt},
         }) {
        const auto parsed = parseExifDate(text);
        const auto seconds = parsed.transform([](Timestamp t) { return t.secondsSinceUnixEpoch(); });
        EXPECT_EQ(seconds, expected) << text;
    }
}

TEST(ExifDate, IsTheWallClockOfTheCurrentZone) {
    for (const auto* name : zones) {
        const Zone zone(name);
        for (const char* text : {"1980:01:31 23:59:59", "2021:07:04 18:30:00", "2021:12:31 23:59:59",
                                 "2024:02:29 12:00:00", "2021:03:28 12:00:00"}) {
            const auto parsed = parseExifDate(text);
            ASSERT_TRUE(parsed) << text;
            const auto fields = localTime(*parsed);
            char back[64];
            std::snprintf(back, sizeof back, "%04d:%02d:%02d %02d:%02d:%02d", fields.year, fields.month,
                          fields.day, fields.hour, fields.minute, fields.second);
            EXPECT_STREQ(back, text) << name;
        }
    }
}

TEST(ExifDate, SkippedAndRepeatedTimesUseTheOffsetBeforeTheChange) {
    struct Case {
        const char *zone, *text, *asUtc;
    };
    for (const auto& [name, text, asUtc] : {
             Case{zones[1], "2021:03:28 01:59:59", "20210328T005959Z"},
             Case{zones[1], "2021:03:28 02:30:00", "20210328T013000Z"}, // skipped
             Case{zones[1], "2021:03:28 03:00:00", "20210328T010000Z"},
             Case{zones[1], "2021:10:31 02:30:00", "20211031T003000Z"}, // twice: the first
             Case{zones[1], "2021:10:31 03:00:00", "20211031T020000Z"},
             Case{zones[2], "2021:03:14 02:30:00", "20210314T073000Z"},
             Case{zones[2], "2021:11:07 01:30:00", "20211107T053000Z"},
             Case{zones[4], "2021:10:03 02:15:00", "20211002T154500Z"},
         }) {
        const Zone zone(name);
        const auto parsed = parseExifDate(text);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(utcStamp(*parsed), asUtc) << text << " in " << name;
    }
}

TEST(Stamps, AnyNumberIsATime) {
    const Zone zone("<+0545>-5:45");
    const auto instant = Timestamp::fromUnix(1'795'373'100, 999'000'000); // 2026-11-22 18:45 UTC
    EXPECT_EQ(utcStamp(instant), "20261122T184500Z");
    EXPECT_EQ(folderStamp(instant), "2026-11-23-003000");
    EXPECT_EQ(utcStamp(Timestamp(-978'307'200.25)), "19691231T235959Z"); // before the epoch downwards too
    EXPECT_EQ(utcStamp(Timestamp(1e300)), "99991231T235959Z");
    EXPECT_EQ(localTime(Timestamp(-std::numeric_limits<double>::max())).year, 1);
    EXPECT_EQ(utcStamp(Timestamp(std::numeric_limits<double>::quiet_NaN())), "20010101T000000Z");
}

TEST(Clock, AgreesWithTheSystemAndNeverGoesBack) {
    const auto clock = Clock::system();
    EXPECT_NEAR(clock.now().secondsSinceUnixEpoch(), static_cast<double>(std::time(nullptr)), 2);
    double last = clock.uptimeSeconds();
    for (int i = 0; i < 1000; ++i) {
        const double next = clock.uptimeSeconds();
        EXPECT_GE(next, last);
        last = next;
    }
}

} // namespace

} // namespace lumisort::time
