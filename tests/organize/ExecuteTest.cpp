#include "organize/ChecksumList.h"
#include "organize/OrganizeScene.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace lumisort::organize {

namespace {

using files::FileError;
using test::OrganizeScene;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::Pair;

TEST(Execute, RecordsEachCopyBeforeTheNextBegins) {
    OrganizeScene scene;
    scene.add("a.jpg", "abc").add("b.jpg", "bcd", std::nullopt).add("again.jpg", "abc");
    scene.add("gone.jpg", "").system.remove("/photos/gone.jpg");
    std::vector<std::pair<double, std::string>> steps;
    std::vector<std::size_t> recorded;
    const auto progress = [&](double fraction, const std::string& text) {
        steps.emplace_back(fraction, text);
        if (text.starts_with("Copying")) recorded.push_back(scene.storedReport().copied.size());
    };
    const auto report =
        scene.engine.copy(scene.photos, scene.destination, {.skipDuplicates = true}, progress, {});

    EXPECT_EQ(scene.system.contents(scene.root + "/Unknown Date/b.jpg"), "bcd");
    EXPECT_THAT(scene.system.filesBelow("/usb"),
                ElementsAre(scene.root + "/2024/05/a.jpg", scene.root + "/Lumisort-report.json",
                            scene.root + "/SHA256SUMS", scene.root + "/Unknown Date/b.jpg"));
    EXPECT_EQ(report.copied.size(), 2U);
    EXPECT_EQ(report.duplicates, 1);
    EXPECT_EQ(report.failures.size(), 1U);
    EXPECT_EQ(scene.storedReport(), report);
    EXPECT_EQ(scene.system.contents(report.logURL.value().path()), toJson(report));
    EXPECT_THAT(recorded, ElementsAre(0U, 1U));
    EXPECT_THAT(steps,
                ElementsAre(Pair(DoubleEq(0.1), "Checking 1 of 4…"), Pair(DoubleEq(0.2), "Checking 2 of 4…"),
                            Pair(DoubleEq(0.3), "Checking 3 of 4…"), Pair(DoubleEq(0.4), "Checking 4 of 4…"),
                            Pair(DoubleEq(0.7), "Copying 1 of 2…"), Pair(DoubleEq(1), "Copying 2 of 2…")));
}

TEST(Execute, CreatesNothingWhenTheRunCannotBegin) {
    OrganizeScene scene;
    scene.add("gone.jpg", "").system.remove("/photos/gone.jpg");
    EXPECT_FALSE(
        scene.engine.copy(scene.photos, scene.destination, {.skipDuplicates = true}, test::unheard, {})
            .logURL);

    auto plan = scene.add("a.jpg", "abc").plan();
    const auto message = [&] {
        try {
            scene.execute(plan);
            return std::string("no failure");
        } catch (const FileError& error) {
            return std::string(error.what());
        }
    };
    plan.items[0].bytes = 12'345'678'901;
    scene.system.setFreeBytes(3'100'000'000);
    EXPECT_EQ(message(), "Could not copy the photos to “/usb”: 12.3 GB are needed, 3.1 GB are free");
    scene.system.setFreeBytes(12'345'678'900);
    EXPECT_EQ(message(), "Could not copy the photos to “/usb”: 12345678901 bytes are needed, "
                         "12345678900 bytes are free");
    EXPECT_TRUE(scene.isEmpty());

    scene.system.setFreeBytes(12'345'678'901);
    scene.system.remove("/usb");
    EXPECT_THAT(message(), testing::EndsWith("“/usb”: No such file or directory"));
    plan.items[0].destination = files::FileUrl::fromPath("/elsewhere/a.jpg");
    EXPECT_THROW(scene.execute(plan), std::invalid_argument);
}

TEST(Execute, ChecksTheSpaceBeforeItReadsAnyPhoto) {
    const struct {
        const char* name;
        std::int64_t freeBytes;
        bool countsSpace, sharesBlocks, skipDuplicates;
        bool begins;
    } rows[] = {
        {"enough", 9, true, false, false, true},
        {"too little", 8, true, false, false, false},
        {"enough if the two of one size are duplicates", 6, true, false, true, true},
        {"too little even then", 5, true, false, true, false},
        {"unknown", 0, false, false, false, true},
        {"copies take no space", 0, true, true, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OrganizeScene scene;
        scene.add("a.jpg", "abc").add("b.jpg", "abc").add("c.jpg", "c").add("d.jpg", "dd");
        scene.system.setVolume(row.countsSpace, row.sharesBlocks);
        scene.system.setFreeBytes(row.freeBytes);
        bool read = false;
        scene.system.before = [&](std::string_view operation, const std::string&) {
            if (operation == "read" && !std::exchange(read, true)) scene.system.setFreeBytes(1'000'000);
        };
        if (row.begins)
            EXPECT_TRUE(scene.engine
                            .copy(scene.photos, scene.destination, {.skipDuplicates = row.skipDuplicates},
                                  test::unheard, {})
                            .failures.empty());
        else
            EXPECT_THROW(scene.engine.copy(scene.photos, scene.destination,
                                           {.skipDuplicates = row.skipDuplicates}, test::unheard, {}),
                         FileError);
        EXPECT_EQ(read, row.begins);
        EXPECT_EQ(scene.isEmpty(), !row.begins);
    }
}

TEST(Execute, AChecksumThatCannotBeWrittenIsThatPhotosFailureAndComesWithTheNext) {
    OrganizeScene scene;
    const auto plan = scene.add("a.jpg", "abc").add("b.jpg", "bcd").add("c.jpg", "cde").plan();
    const auto list = scene.root + "/SHA256SUMS";
    int writes = 0;
    scene.system.before = [&](std::string_view operation, const std::string& path) {
        if (operation == "write" && path == list && ++writes == 2) {
            scene.system.setFreeBytes(7); // a part of the line is written
        } else if (operation == "create" || operation == "seek") {
            scene.system.setFreeBytes(1'000'000);
        }
    };
    const auto report = scene.execute(plan);
    EXPECT_EQ(report.copied, plan.items) << "copied and verified they are";
    EXPECT_THAT(report.failures,
                ElementsAre("/photos/b.jpg: Could not write “" + list + "”: No space left on device"));
    EXPECT_EQ(scene.storedReport(), report);
    std::string lines;
    for (const auto& item : plan.items)
        lines += checksumLine(item.digest, item.destination.path().substr(scene.root.size() + 1));
    EXPECT_EQ(scene.system.contents(list), lines);
}

TEST(Execute, RemovesWhatKilledRunsLeftAndNothingElse) {
    OrganizeScene scene;
    const auto plan = scene.add("a.jpg", "abc").plan();
    const std::string uuid = ".ABCD0001-0000-4000-8000-000000000000.partial",
                      report = ".Lumisort-report.json.partial";
    const std::string dead = "/usb/Lumisort-dead/", live = "/usb/Lumisort-live/", foreign = "/usb/Photos/";
    for (const auto& folder : {dead, live, foreign})
        for (const auto& name :
             {uuid, report, std::string(".mine.partial"), std::string("2024/05/.x.partial")})
            scene.system.write(folder + name, "left");
    const auto lock = scene.system.tryLockFolder("/usb/Lumisort-live");
    scene.execute(plan);
    for (const auto& folder : {dead, live, foreign})
        for (const auto& name : {uuid, report}) {
            EXPECT_EQ(scene.system.contents(folder + name).has_value(), folder != dead) << folder + name;
            EXPECT_TRUE(scene.system.contents(folder + ".mine.partial"));
            EXPECT_TRUE(scene.system.contents(folder + "2024/05/.x.partial"));
        }
}

TEST(Execute, ListsWhatGoesWrongWithOnePhotoAndGoesOn) {
    const std::string photo = "/photos/b.jpg";
    const std::string target = OrganizeScene().root + "/2024/05/b.jpg";
    const std::string partial = OrganizeScene().root + "/.ABCD1003-0000-4000-8000-000000000000.partial";
    using Act = std::function<void(test::MemoryFileSystem&)>;
    const struct {
        std::string_view operation;
        std::string path;
        Act act; // happens once, before the operation on the path
        std::string line;
    } rows[] = {
        {"open", photo, [&](auto& system) { system.write(photo, "edited"); },
         "Could not copy the file: It has changed since it was checked"},
        {"copy", photo, [&](auto& system) { system.write(photo, "grown since"); },
         "Could not verify the copy “" + target + "”: It differs from the original"},
        {"copy", photo, [&](auto& system) { system.failReads(photo, EIO); },
         "Could not read the file: Input/output error"},
        {"copy", photo, [&](auto& system) { system.setFreeBytes(1); },
         "Could not write “" + partial + "”: No space left on device"},
        {"dropCache", partial, [&](auto& system) { system.write(partial, "rot"); },
         "Could not verify the copy “" + target + "”: It differs from the original"},
        {"moveWithoutOverwrite", partial, [&](auto& system) { system.write(target, "other"); },
         "Could not create “" + target + "”: File exists"},
        {"moveWithoutOverwrite", partial, [&](auto&) { throw FileError("move", partial, EINVAL); },
         "Could not create “" + target + "”: The file system there does not allow this name"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        OrganizeScene scene;
        const auto plan = scene.add("a.jpg", "abc").add("b.jpg", "bcd").add("c.jpg", "cde").plan();
        Act act = row.act;
        scene.system.before = [&](std::string_view operation, const std::string& path) {
            // Removing what was written makes room again.
            if (operation == "remove") scene.system.setFreeBytes(1'000'000);
            if (act && operation == row.operation && path == row.path) std::exchange(act, {})(scene.system);
        };
        const auto report = scene.execute(plan);
        EXPECT_THAT(report.failures, ElementsAre(photo + ": " + row.line));
        EXPECT_THAT(report.copied, ElementsAre(plan.items[0], plan.items[2]));
        EXPECT_EQ(scene.storedReport(), report);
        EXPECT_EQ(scene.system.contents(partial), std::nullopt);
        EXPECT_EQ(scene.system.contents(target).has_value(), row.line.ends_with("File exists"));
    }
}

TEST(Execute, StopsAtOnceWhereverItIsCancelled) {
    constexpr std::size_t count = 8;
    constexpr std::size_t quick = 40; // operations: what is left of the photo at hand, saving plan and report
    bool stopped = true;
    for (std::size_t n = 0; stopped; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        OrganizeScene scene;
        for (const char name : std::string_view("abcdefgh")) scene.add({name}, {name});
        std::stop_source stop;
        std::size_t operations = 0;
        scene.system.before = [&](std::string_view, const std::string&) {
            if (operations++ == n) stop.request_stop();
        };
        const auto report = scene.engine.copy(scene.photos, scene.destination, {.skipDuplicates = true},
                                              test::unheard, stop.get_token());
        stopped = stop.stop_requested();

        EXPECT_TRUE(report.failures.empty() || operations <= n + quick) << operations;
        EXPECT_EQ(report.copied.size() + report.failures.size(), count);
        for (const auto& line : report.failures)
            EXPECT_TRUE(line.ends_with(": The operation was cancelled.")) << line;
        // The report, the copies and, once there is one, the checksums.
        const std::size_t extra = !report.logURL ? 0 : report.copied.empty() ? 1 : 2;
        // The plan stays where something is left to do.
        const bool resumable = scene.system.contents(scene.root + "/.Lumisort-plan.json").has_value();
        EXPECT_TRUE(resumable || report.failures.empty() || !report.logURL);
        EXPECT_EQ(scene.system.filesBelow("/usb").size(), report.copied.size() + extra + (resumable ? 1 : 0));
        if (report.logURL) {
            EXPECT_EQ(scene.storedReport(), report);
        }
    }
}

} // namespace

} // namespace lumisort::organize
