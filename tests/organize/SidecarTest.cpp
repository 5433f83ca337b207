#include "organize/Sidecar.h"

#include "organize/OrganizeScene.h"
#include "organize/SavedPlan.h"

#include <exiv2/exiv2.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumisort::organize {

namespace {

using test::OrganizeScene;
using test::unheard;
using testing::ElementsAre;
using testing::HasSubstr;

CopyOptions keeping(const std::vector<library::Photo>& photos) {
    const auto kept = std::make_shared<KeptPhotos>();
    for (const auto& photo : photos) kept->insert(photo.url);
    return {.skipDuplicates = true, .leaveOut = {}, .withSidecars = kept};
}

} // namespace

TEST(Sidecar, SaysToOtherProgramsThatThePhotoIsKept) {
    Exiv2::XmpData xmp;
    ASSERT_EQ(Exiv2::XmpParser::decode(xmp, keptSidecarText()), 0);
    EXPECT_EQ(xmp["Xmp.xmp.Rating"].toString(), "5");
    EXPECT_EQ(xmp["Xmp.xmp.Label"].toString(), "Green");
    EXPECT_EQ(xmp["Xmp.digiKam.PickLabel"].toString(), "3");
    EXPECT_EQ(xmp.count(), 3);
}

TEST(Sidecar, LiesBesideTheCopiesOfKeptPhotosAlone) {
    OrganizeScene scene;
    scene.add("a.jpg", "abc").add("b.jpg", "bcd");
    const auto report =
        scene.engine.copy(scene.photos, scene.destination, keeping({scene.photos[1]}), unheard, {});
    EXPECT_EQ(report.copied.size(), 2U);
    EXPECT_THAT(scene.system.filesBelow(scene.root + "/2024"),
                ElementsAre(scene.root + "/2024/05/a.jpg", scene.root + "/2024/05/b.jpg",
                            scene.root + "/2024/05/b.jpg.xmp"));
    EXPECT_EQ(scene.system.contents(scene.root + "/2024/05/b.jpg.xmp"), keptSidecarText());
    EXPECT_THAT(scene.system.filesBelow("/photos"), ElementsAre("/photos/a.jpg", "/photos/b.jpg"));
}

TEST(Sidecar, IsWholeOrMissingAfterACrashAndComesWithTheResumedRun) {
    bool crashed = true;
    for (std::size_t n = 0; crashed; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        OrganizeScene scene;
        scene.add("a.jpg", "abc").add("b.jpg", "bcd");
        const auto options = keeping(scene.photos);
        scene.system.crashAt(n);
        try {
            scene.engine.copy(scene.photos, scene.destination, options, unheard, {});
            crashed = false;
        } catch (const test::Crashed&) {
        }
        scene.system.restart(n % 2 == 0 ? test::MemoryFileSystem::UnflushedEntries::kept
                                        : test::MemoryFileSystem::UnflushedEntries::lost);
        const auto sidecars = [&] {
            int count = 0;
            for (const auto& file : scene.system.filesBelow("/usb"))
                if (file.ends_with(".xmp")) {
                    EXPECT_EQ(scene.system.contents(file), keptSidecarText()) << file;
                    ++count;
                }
            return count;
        };
        sidecars();
        const auto runs = unfinishedRuns(scene.system, scene.destination);
        if (runs.empty()) continue;
        const auto resumed =
            scene.engine.resume(scene.photos, runs[0].folder, options.withSidecars, unheard, {});
        EXPECT_EQ(resumed.report.copied.size(), 2U);
        EXPECT_TRUE(resumed.report.failures.empty());
        EXPECT_EQ(sidecars(), 2);
    }
}

TEST(Sidecar, ThatCannotBeWrittenIsALineAndTheCopyStays) {
    OrganizeScene scene;
    scene.add("a.jpg", "abc");
    scene.system.before = [&](std::string_view operation, const std::string& path) {
        if (operation == "moveWithoutOverwrite" && path.ends_with(".partial") &&
            scene.system.contents(path) == keptSidecarText())
            throw files::FileError("rename", path, EIO);
    };
    const auto report =
        scene.engine.copy(scene.photos, scene.destination, keeping(scene.photos), unheard, {});
    EXPECT_THAT(report.failures, ElementsAre(HasSubstr("a.jpg.xmp")));
    EXPECT_EQ(report.copied.size(), 1U);
    EXPECT_EQ(scene.storedReport(), report);
    for (const auto& file : scene.system.filesBelow("/usb")) EXPECT_FALSE(file.ends_with(".partial")) << file;
}

} // namespace lumisort::organize
