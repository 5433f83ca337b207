#include "organize/ChecksumList.h"
#include "organize/OrganizeScene.h"
#include "organize/SavedPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

namespace lumisort::organize {

namespace {

using test::Crashed;
using test::OrganizeScene;
using test::unheard;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Entries = test::MemoryFileSystem::UnflushedEntries;

/// Four photos of which the run copied two before the machine stopped.
struct StoppedRun : OrganizeScene {
    explicit StoppedRun(std::size_t copies = 2) {
        add("a.jpg", "abc").add("b.jpg", "bcd", test::midMonth(2025, 1)).add("c.jpg", "cde", std::nullopt);
        add("d.jpg", "def");
        stop(copies);
    }
    void stop(std::size_t copies) {
        const auto planned = plan();
        system.before = [&, made = std::size_t{0}](std::string_view operation,
                                                   const std::string& path) mutable {
            if (operation == "copy" && path.starts_with("/photos/") && made++ == 2 * copies) throw Crashed();
        };
        EXPECT_THROW(execute(planned), Crashed);
        system.before = {};
        system.restart(Entries::kept);
    }
    files::FileUrl run() const { return files::FileUrl::fromPath(root); }
    ResumedRun resume() { return engine.resume(photos, run(), {}, unheard, {}); }
    std::string report() const { return root + "/Lumisort-report.json"; }
    std::string sums() const { return root + "/SHA256SUMS"; }
};

/// The run is complete: every photo has its copy, report and sums say so, and nothing else is there.
void expectComplete(OrganizeScene& scene, const OrganizeReport& report) {
    EXPECT_EQ(report.copied.size(), scene.photos.size());
    EXPECT_THAT(report.failures, IsEmpty());
    EXPECT_EQ(scene.storedReport(), report);
    std::string lines;
    for (const auto& item : report.copied) {
        EXPECT_EQ(scene.system.contents(item.destination.path()), scene.system.contents(item.source.path()));
        lines += checksumLine(item.digest, item.destination.path().substr(scene.root.size() + 1));
    }
    EXPECT_EQ(scene.system.contents(scene.root + "/SHA256SUMS"), lines);
    EXPECT_THAT(scene.system.filesBelow("/usb"), SizeIs(scene.photos.size() + 2));
}

} // namespace

TEST(Resume, AfterACrashAtAnyInstantNothingIsCopiedTwiceAndNothingIsMissing) {
    for (const auto entries : {Entries::lost, Entries::kept}) {
        bool crashed = true;
        for (std::size_t n = 0; crashed; ++n) {
            SCOPED_TRACE("operation " + std::to_string(n));
            OrganizeScene scene;
            scene.add("a.jpg", "abc")
                .add("b.jpg", "bcd", test::midMonth(2025, 1))
                .add("c.jpg", "cde", std::nullopt);
            const auto plan = scene.plan();
            scene.system.crashAt(n);
            try {
                scene.execute(plan);
                crashed = false;
            } catch (const Crashed&) {
            }
            scene.system.restart(entries);
            const auto runs = unfinishedRuns(scene.system, scene.destination);
            if (runs.empty()) { // before the first report, or after the end
                if (scene.system.contents(scene.root + "/Lumisort-report.json")) {
                    EXPECT_EQ(scene.storedReport().copied.size(), 3U);
                }
                continue;
            }
            ASSERT_THAT(runs, SizeIs(1));
            EXPECT_EQ(runs[0].planned, 3);
            std::int64_t copies = 0;
            scene.system.before = [&](std::string_view operation, const std::string&) {
                copies += operation == "copy";
            };
            const auto resumed = scene.engine.resume(scene.photos, runs[0].folder, {}, unheard, {});
            EXPECT_EQ(copies, 2 * (3 - resumed.present)); // each is two operations
            EXPECT_GE(resumed.present, runs[0].copied);
            EXPECT_THAT(resumed.remarks, IsEmpty());
            expectComplete(scene, resumed.report);
            EXPECT_THAT(unfinishedRuns(scene.system, scene.destination), IsEmpty());
        }
    }
}

TEST(Resume, ACrashOfTheResumedRunCanBeResumed) {
    bool crashed = true;
    for (std::size_t n = 0; crashed; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        StoppedRun scene;
        scene.system.crashAt(n);
        try {
            scene.resume();
            crashed = false;
        } catch (const Crashed&) {
        }
        scene.system.restart(Entries::lost);
        if (unfinishedRuns(scene.system, scene.destination).empty()) {
            expectComplete(scene, scene.storedReport());
            continue;
        }
        const auto resumed = scene.resume();
        EXPECT_GE(resumed.present, 2);
        expectComplete(scene, resumed.report);
    }
}

TEST(Resume, PlansAnewAndSaysWhatIsDifferent) {
    StoppedRun scene;
    scene.system.write("/photos/c.jpg", "edited");
    scene.photos.erase(scene.photos.begin()); // its copy stays
    scene.add("e.jpg", "efg");
    const auto resumed = scene.resume();
    EXPECT_EQ(resumed.present, 2);
    EXPECT_EQ(resumed.added, 1);
    EXPECT_EQ(resumed.changed, 1);
    EXPECT_EQ(resumed.gone, 1);
    EXPECT_THAT(resumed.remarks, IsEmpty());
    EXPECT_THAT(resumed.report.copied, SizeIs(5));
    EXPECT_EQ(scene.system.contents(scene.root + "/2024/05/a.jpg"), "abc");
    EXPECT_EQ(scene.system.contents(scene.root + "/Unknown Date/c.jpg"), "edited");
    EXPECT_EQ(scene.storedReport(), resumed.report);
}

TEST(Resume, StoppedByTheUserItCanGoOn) {
    OrganizeScene scene;
    scene.add("a.jpg", "abc").add("b.jpg", "bcd");
    const auto plan = scene.plan();
    std::stop_source source;
    scene.engine.execute(
        plan,
        [&](std::int64_t done, std::int64_t) {
            if (done == 2) source.request_stop();
        },
        source.get_token());
    ASSERT_THAT(unfinishedRuns(scene.system, scene.destination),
                ElementsAre(UnfinishedRun{files::FileUrl::fromPath(scene.root), 2, 1}));
    expectComplete(scene, scene.engine.resume(scene.photos, plan.root, {}, unheard, {}).report);
}

TEST(Resume, GoesOnWhereTheDriveIsAtAnotherPath) {
    StoppedRun scene;
    const std::string elsewhere = "/mnt/card" + scene.root.substr(4);
    for (const auto& file : scene.system.filesBelow(scene.root))
        scene.system.write(elsewhere + file.substr(scene.root.size()), scene.system.contents(file).value());
    const auto resumed =
        scene.engine.resume(scene.photos, files::FileUrl::fromPath(elsewhere + "/"), {}, unheard, {});
    EXPECT_EQ(resumed.present, 2);
    EXPECT_THAT(resumed.remarks, IsEmpty());
    for (const auto& item : resumed.report.copied) {
        EXPECT_TRUE(item.destination.path().starts_with(elsewhere));
        EXPECT_TRUE(scene.system.contents(item.destination.path()));
    }
}

TEST(Resume, TrustsNothingInTheFolderAndLosesNothing) {
    const auto replaced = [](std::string text, std::string_view from, std::string_view to) {
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    const struct {
        std::string what;
        std::function<void(StoppedRun&)> meddle;
        std::string remark; ///< "" for none
        std::size_t present;
    } cases[] = {
        {"a copy was edited", [](StoppedRun& s) { s.system.write(s.root + "/2024/05/a.jpg", "xyz"); },
         "/2024/05/a.jpg: It is not the copy that the report names", 1},
        {"a copy is gone", [](StoppedRun& s) { s.system.remove(s.root + "/2025/01/b.jpg"); },
         "/2025/01/b.jpg: The report names it, and it is not there", 1},
        {"a copy is a link",
         [](StoppedRun& s) {
             s.system.remove(s.root + "/2024/05/a.jpg");
             s.system.makeLink(s.root + "/2024/05/a.jpg", "/photos/a.jpg");
         },
         "/2024/05/a.jpg: Could not read the file: It is a symbolic link", 1},
        {"the report names another's file",
         [&](StoppedRun& s) {
             s.system.write(s.report(),
                            replaced(s.system.contents(s.report()).value(),
                                     "file://" + s.root + "/2024/05/a.jpg", "file:///photos/d.jpg"));
         },
         "/photos/d.jpg: The report names it, and it lies outside the run's folder", 2},
        {"the report climbs out",
         [&](StoppedRun& s) {
             s.system.write(s.report(), replaced(s.system.contents(s.report()).value(), "/2024/05/a.jpg",
                                                 "/../../photos/a.jpg"));
         },
         "lies outside the run's folder", 2},
        {"the sums were edited", [](StoppedRun& s) { s.system.write(s.sums(), "mine\n"); }, "", 2},
        {"the sums are a link",
         [](StoppedRun& s) {
             s.system.remove(s.sums());
             s.system.makeLink(s.sums(), "/photos/a.jpg");
         },
         "", 2},
        {"the sums end early", [](StoppedRun& s) { s.system.write(s.sums(), "ba78"); }, "", 2},
        {"others put files there",
         [](StoppedRun& s) {
             s.system.write(s.root + "/Unknown Date/c.jpg", "not c");
             s.system.write(s.root + "/notes.txt", "mine");
             s.system.write(s.root + "/.hidden.partial", "mine");
         },
         "", 2},
    };
    for (const auto& [what, meddle, remark, present] : cases) {
        SCOPED_TRACE(what);
        StoppedRun scene;
        meddle(scene);
        std::map<std::string, std::optional<std::string>> before;
        for (const auto& file : scene.system.filesBelow("/")) {
            const auto name = file.substr(file.rfind('/') + 1);
            const bool own = name == "Lumisort-report.json" || name == savedPlanName || name == "SHA256SUMS";
            const bool partial = name.size() > 40 && name.ends_with(".partial");
            if (!own && !partial) before[file] = scene.system.contents(file);
        }
        const auto sums = scene.system.contents(scene.sums());
        const auto resumed = scene.resume();
        for (const auto& [file, contents] : before) EXPECT_EQ(scene.system.contents(file), contents) << file;
        EXPECT_EQ(resumed.remarks.size(), remark.empty() ? 0U : 1U);
        if (!remark.empty()) {
            EXPECT_THAT(resumed.remarks, testing::Contains(HasSubstr(remark)));
            EXPECT_TRUE(scene.system.contents(scene.report() + ".before-resume"));
        }
        EXPECT_EQ(resumed.present, static_cast<std::int64_t>(present));
        EXPECT_THAT(resumed.report.failures, IsEmpty());
        EXPECT_EQ(scene.storedReport(), resumed.report);
        std::string lines;
        for (const auto& item : resumed.report.copied) {
            EXPECT_EQ(scene.system.contents(item.destination.path()),
                      scene.system.contents(item.source.path()));
            lines += checksumLine(item.digest, item.destination.path().substr(scene.root.size() + 1));
        }
        EXPECT_EQ(scene.system.contents(scene.sums()), lines);
        if (what == "the sums were edited") {
            EXPECT_EQ(scene.system.contents(scene.sums() + ".before-resume"), sums);
        }
    }
}

TEST(Resume, WritesThroughNoLinkAndRefusesWhatIsNoRun) {
    StoppedRun scene(1); // the folder of c.jpg is not there yet
    scene.system.makeFolder("/elsewhere");
    scene.system.makeLink(scene.root + "/Unknown Date", "/elsewhere");
    const auto resumed = scene.resume();
    EXPECT_THAT(resumed.report.failures, ElementsAre(HasSubstr("A symbolic link or a file is in the place")));
    EXPECT_THAT(scene.system.filesBelow("/elsewhere"), IsEmpty());

    const auto refused = [](OrganizeScene& tried, const std::string& folder) -> std::string {
        const auto before = tried.system.filesBelow("/");
        try {
            tried.engine.resume(tried.photos, files::FileUrl::fromPath(folder), {}, unheard, {});
        } catch (const files::FileError& error) {
            EXPECT_EQ(tried.system.filesBelow("/"), before);
            return error.what();
        }
        return "";
    };
    EXPECT_THAT(refused(scene, scene.root), HasSubstr("Lumisort-plan.json")); // it is finished now
    EXPECT_THAT(refused(scene, "/usb/none"), HasSubstr("/usb/none"));
    {
        StoppedRun linked;
        linked.system.makeLink("/usb/Lumisort-link", linked.root);
        EXPECT_THAT(refused(linked, "/usb/Lumisort-link"), HasSubstr("no folder of its own"));
        EXPECT_THAT(unfinishedRuns(linked.system, linked.destination), SizeIs(1));
        const auto other = linked.system.tryLockFolder(linked.root);
        EXPECT_THAT(refused(linked, linked.root), HasSubstr("Another program is copying into it"));
        EXPECT_THAT(unfinishedRuns(linked.system, linked.destination), IsEmpty());
    }
    for (const auto* name : {"Lumisort-report.json", ".Lumisort-plan.json"})
        for (const auto* text : {"", "{", R"({"version":2,"root":"file:///usb/x","items":[]})"}) {
            StoppedRun broken;
            broken.system.write(broken.root + '/' + name, text);
            EXPECT_THAT(refused(broken, broken.root), HasSubstr(name));
        }
}

TEST(EarlierCopies, AreLeftOutWhereThatIsAskedFor) {
    OrganizeScene scene;
    scene.add("a.jpg", "abc").add("b.jpg", "bcd").add("c.jpg", "cde");
    for (auto& photo : scene.photos) photo.bytes = 3;
    const auto first = scene.engine.copy(scene.photos, scene.destination, {}, unheard, {});
    scene.system.remove(first.copied[1].destination.path());
    scene.system.write("/usb/Lumisort-broken/Lumisort-report.json", "{");
    scene.system.makeLink("/usb/Lumisort-link", "/photos");
    scene.add("d.jpg", "new").add("moved.jpg", "abc");

    const auto earlier =
        std::make_shared<const EarlierCopies>(EarlierCopies::at(scene.system, scene.destination, {}));
    EXPECT_EQ(earlier->likely(scene.photos), 2); // by path and size
    const auto second =
        scene.engine.copy(scene.photos, scene.destination, {.leaveOut = earlier}, unheard, {});
    EXPECT_EQ(second.alreadyThere, 3); // by contents
    EXPECT_THAT(second.copied, SizeIs(2));
    EXPECT_EQ(readReport(scene.system, *second.logURL), second);
    const auto all = scene.engine.copy(scene.photos, scene.destination, {}, unheard, {});
    EXPECT_EQ(all.alreadyThere, 0);
    EXPECT_THAT(toJson(all), testing::Not(HasSubstr("alreadyThere")));
    EXPECT_EQ(EarlierCopies::at(scene.system, files::FileUrl::fromPath("/none"), {}).likely(scene.photos), 0);
}

} // namespace lumisort::organize
