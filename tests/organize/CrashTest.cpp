#include "organize/ChecksumList.h"
#include "organize/OrganizeScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

namespace lumisort::organize {

namespace {

using test::Crashed;
using test::OrganizeScene;
using Entries = test::MemoryFileSystem::UnflushedEntries;

constexpr std::size_t photoCount = 4;

OrganizePlan planOf(OrganizeScene& scene) {
    scene.add("a.jpg", "abc").add("b.jpg", "bcd", test::midMonth(2025, 1)).add("c.jpg", "cde", std::nullopt);
    auto plan = scene.add("d.jpg", "def").plan();
    scene.system.write("/photos/c.jpg", "edited"); // one that fails
    return plan;
}

/// What holds at every instant: every file under a final name is the whole photo, the checksums name no
/// copies that the report does not, and the report is well formed and names no file that is not there.
/// Returns how many copies the report names, 0 without one.
std::size_t expectWhole(OrganizeScene& scene, const OrganizePlan& plan) {
    std::string wholeLines; // checksums of the destinations that are there
    for (const auto& item : plan.items) {
        const auto copy = scene.system.contents(item.destination.path());
        if (!copy) continue;
        EXPECT_EQ(copy, scene.system.contents(item.source.path())) << item.destination.path();
        wholeLines += checksumLine(item.digest, item.destination.path().substr(scene.root.size() + 1));
    }
    const std::string listed = scene.system.contents(scene.root + "/SHA256SUMS").value_or("");
    EXPECT_TRUE(wholeLines.starts_with(listed)) << listed;
    if (!scene.system.contents(scene.root + "/Lumisort-report.json")) {
        EXPECT_EQ(wholeLines, "");
        return 0;
    }
    const auto recorded = scene.storedReport().copied;
    for (const auto& item : recorded) EXPECT_TRUE(scene.system.contents(item.destination.path()));
    EXPECT_GE(recorded.size(), static_cast<std::size_t>(std::ranges::count(listed, '\n')));
    return recorded.size();
}

TEST(OrganizeFaults, ACrashAtAnyInstantLosesNoRecordedCopy) {
    for (const int variant : {0, 1, 2, 3}) {
        bool crashed = true;
        for (std::size_t n = 0; crashed; ++n) {
            SCOPED_TRACE("operation " + std::to_string(n) + " of variant " + std::to_string(variant));
            OrganizeScene scene;
            scene.system.setCanExchange(variant < 2);
            const auto plan = planOf(scene);
            scene.system.crashAt(n);
            std::int64_t begun = 0;
            try {
                scene.engine.execute(plan, [&](std::int64_t done, std::int64_t) { begun = done; }, {});
                crashed = false;
            } catch (const Crashed&) {
            }
            scene.system.restart(variant % 2 == 0 ? Entries::lost : Entries::kept);
            // Of the items before the one at hand all but the third were copied, and then recorded.
            const std::int64_t copied[] = {0, 0, 1, 2, 2, 3};
            EXPECT_GE(expectWhole(scene, plan), copied[crashed ? begun : photoCount + 1]);
        }
    }
}

TEST(OrganizeFaults, AFailureOfAnyOperationIsALineOrEndsTheRun) {
    bool met = true;
    std::size_t lines = 0;
    for (std::size_t n = 0; met; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        OrganizeScene scene;
        const auto plan = planOf(scene);
        scene.system.failAt(n, EIO);
        try {
            const auto report = scene.execute(plan);
            const auto unlisted = std::ranges::count_if(
                report.failures, [](const auto& line) { return line.contains("SHA256SUMS"); });
            EXPECT_EQ(report.copied.size() + report.failures.size(),
                      photoCount + static_cast<std::size_t>(unlisted));
            EXPECT_EQ(report, scene.storedReport());
            lines += report.failures.size() - 1;
        } catch (const files::FileError& error) {
            EXPECT_EQ(error.code(), EIO);
        }
        met = scene.system.faultMet();
        if (!met) break; // the fault would meet the checks
        expectWhole(scene, plan);
        for (const auto& path : scene.system.filesBelow("/usb"))
            EXPECT_EQ(path.find("/.ABCD"), std::string::npos) << "a partial copy is left";
    }
    EXPECT_GT(lines, 20U);
}

} // namespace

} // namespace lumisort::organize
