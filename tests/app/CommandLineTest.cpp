// The program from outside: what it prints, what it returns, what it leaves behind.

#include "CommandLine.h"

#include "library/LibraryStorage.h"
#include "organize/OrganizeReport.h"
#include "platform/files/FileLock.h"
#include "platform/files/FileSystem.h"

#include <gmock/gmock.h>
#include <rapidjson/document.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <random>

namespace lumisort::app {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// A PNG of one grey pixel.
const std::string
    tinyPng("\211\120\116\107\015\012\032\012\000\000\000\015\111\110\104\122\000\000\000\001\000\000"
            "\000\001\010\000\000\000\000\072\176\233\125\000\000\000\012\111\104\101\124\170\234\143"
            "\150\000\000\000\202\000\201\167\315\162\266\000\000\000\000\111\105\116\104\256\102\140"
            "\202",
            67);

} // namespace

TEST_F(CommandLineTest, SaysWhatItIsAndRefusesWhatItDoesNotKnow) {
    EXPECT_THAT(run({"--version"}).out, StartsWith("lumisort "));
    const auto help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const auto* command : {"scan", "match", "fingerprint", "organize", "film"})
        EXPECT_THAT(help.out, HasSubstr(command));
    const std::vector<std::vector<std::string>> wrong{{"frobnicate"},
                                                      {"scan"},
                                                      {"scan", "--colour", "/tmp"},
                                                      {"match", "--method", "magic", "/tmp"},
                                                      {"match", "--level", "odd", "/tmp"},
                                                      {"organize", "/tmp"},
                                                      {"film", "inspect", "--stock", "x", "--paper", "y"}};
    for (const auto& arguments : wrong) {
        const auto finished = run(arguments);
        EXPECT_EQ(finished.status, 2) << arguments[0];
        EXPECT_THAT(finished.out, IsEmpty());
        EXPECT_THAT(finished.err, testing::Not(IsEmpty()));
    }
}

TEST_F(CommandLineTest, NamesTheFolderThatIsMissing) {
    for (const auto* command : {"scan", "match"}) {
        const auto finished = run({command, photos()});
        EXPECT_EQ(finished.status, 3);
        EXPECT_THAT(finished.err, HasSubstr(photos()));
        EXPECT_THAT(finished.out, IsEmpty());
    }
    fs::create_directory(photos());
    const auto finished = run({"organize", "--to", (folder_.path() / "nowhere").string(), photos()});
    EXPECT_EQ(finished.status, 3);
    EXPECT_THAT(finished.err, HasSubstr("nowhere"));
}

TEST_F(CommandLineTest, ScansNamesOfEveryKind) {
    const std::string odd = "photos/new\nline \xff 'quoted\".png";
    folder_.write(odd, tinyPng);
    folder_.write("photos/" + std::string(251, 'n') + ".png", tinyPng);
    auto text = run({"scan", photos()});
    EXPECT_EQ(text.status, 0) << text.err;
    EXPECT_THAT(text.out, HasSubstr("new\\x0aline \\xff 'quoted\".png  1 × 1  67 bytes"));
    EXPECT_THAT(text.err, IsEmpty());

    folder_.write("photos/broken.jpg", "no picture");
    const auto finished = run({"scan", "--json", photos()});
    EXPECT_EQ(finished.status, 1);
    const auto json = finished.json();
    EXPECT_EQ(json["skipped"].GetInt(), 1);
    ASSERT_EQ(json["photos"].Size(), 2u);
    EXPECT_EQ(files::FileUrl::fromString(json["photos"][0]["url"].GetString())->path(),
              (folder_.path() / odd).string());
    EXPECT_EQ(json["photos"][0]["width"].GetInt(), 1);
    EXPECT_FALSE(json["photos"][0].HasMember("date"));
}

TEST_F(CommandLineTest, SaysThatNoPhotoCanBeOpenedWithoutTheDecodingLibrary) {
    folder_.write("photos/a.png", tinyPng);
    const auto alone = folder_.path() / "lumisort"; // without the library beside it
    fs::copy_file(LUMISORT_PROGRAM, alone);
    const std::vector<std::vector<std::string>> commands{
        {"scan", photos()}, {"fingerprint", photos() + "/a.png"}, {"match", "--method", "near", photos()}};
    for (const auto& arguments : commands) {
        const auto finished = finish(start(arguments, alone.string()));
        EXPECT_EQ(finished.status, 3) << arguments[0];
        EXPECT_THAT(finished.err, HasSubstr("Photos cannot be opened")) << arguments[0];
        EXPECT_THAT(finished.err, HasSubstr("lumisort-decoding.so is missing")) << arguments[0];
    }
}

TEST_F(CommandLineTest, MatchesExactCopies) {
    folder_.write("photos/b.png", tinyPng);
    folder_.write("photos/a.png", tinyPng);
    const auto json = run({"match", "--method", "exact", "--json", photos()}).json();
    ASSERT_EQ(json["groups"].Size(), 1u);
    EXPECT_THAT(json["groups"][0]["anchor"].GetString(), testing::EndsWith("/a.png"));
    EXPECT_EQ(json["groups"][0]["photos"].Size(), 2u);
    EXPECT_EQ(json["failed"].GetInt(), 0);
    EXPECT_FALSE(json.HasMember("lowDetail"));

    const auto near = run({"match", "--method", "near", "--json", photos()}).json();
    EXPECT_EQ(near["groups"].Size(), 0u);
    EXPECT_EQ(near["lowDetail"].GetInt(), 2); // one grey pixel
}

TEST_F(CommandLineTest, RemembersWhatMatchingComputedUnlessAskedNotTo) {
    folder_.write("photos/a.png", tinyPng);
    const auto values = [&] { return run({"cache", "status", "--json"}).json()["values"].GetInt(); };
    const std::vector<std::string> match{"match", "--method", "near", photos()};
    auto without = match;
    without.emplace_back("--no-cache");
    run(without);
    EXPECT_FALSE(fs::exists(folder_.path() / "cache"));
    run(match);
    EXPECT_EQ(values(), 1);
    EXPECT_EQ(run({"cache", "clear"}).out, "Removed: 1 value\n");
    EXPECT_EQ(values(), 0);

    const auto file = folder_.path() / "cache/lumisort/fingerprints.sqlite";
    std::ofstream(file) << "no database, but something of the length of one page or so";
    fs::remove(file.string() + "-wal");
    const auto warned = run(match);
    EXPECT_EQ(warned.status, 0);
    EXPECT_THAT(warned.err, HasSubstr("fingerprints.sqlite” could not be read and is now"));
    EXPECT_EQ(run(match).err, "");
}

TEST_F(CommandLineTest, FingerprintsWhatItCanAndNamesTheRest) {
    const auto good = folder_.write("photos/a.png", tinyPng), bad = folder_.write("photos/b.png", "nothing");
    const auto finished = run({"fingerprint", "--json", good.path(), bad.path()});
    EXPECT_EQ(finished.status, 1);
    const auto json = finished.json();
    EXPECT_EQ(json[0]["hash"].GetStringLength(), 16u);
    EXPECT_LT(json[0]["deviation"].GetDouble(), 1e-9);
    EXPECT_EQ(json[0]["orientationHashes"].Size(), 8u);
    EXPECT_EQ(json[0]["colors"].Size(), 192u);
    EXPECT_EQ(json[1]["url"].GetString(), bad.string());
    EXPECT_TRUE(json[1].HasMember("error"));
}

TEST_F(CommandLineTest, OrganizesWhatIsNotMarkedAndLeavesTheRest) {
    const auto kept = folder_.write("photos/a.png", tinyPng),
               skipped = folder_.write("photos/b.png", tinyPng + "2");
    folder_.write("photos/copy.png", tinyPng);
    const auto document = folder_.path() / "library.json";
    auto& system = files::FileSystem::real();
    library::writeLibrary(system,
                          {.reviewMarks = {{skipped.path(), {.decision = library::ReviewDecision::cleanup}}}},
                          files::FileUrl::fromPath(document.string()));
    const std::vector<std::string> arguments{"organize",        "--to",  destination(), "--library",
                                             document.string(), "--json"};
    auto dry = arguments;
    dry.insert(dry.end(), {"--dry-run", photos()});
    EXPECT_EQ(run(dry).json()["items"].Size(), 1u);
    EXPECT_TRUE(fs::is_empty(destination()));

    auto real = arguments;
    real.push_back(photos());
    const auto finished = run(real);
    EXPECT_EQ(finished.status, 0) << finished.err;
    const auto json = finished.json();
    ASSERT_EQ(json["copied"].Size(), 1u);
    EXPECT_EQ(json["copied"][0]["source"].GetString(), kept.string());
    EXPECT_EQ(json["duplicates"].GetInt(), 1);
    const auto copy = files::FileUrl::fromString(json["copied"][0]["destination"].GetString());
    EXPECT_EQ(contentsOf(copy->path()), tinyPng);
    EXPECT_EQ(
        copy->parent().path(),
        json["logURL"].GetString()
            ? files::FileUrl::fromString(json["logURL"].GetString())->parent().child("Unknown Date").path()
            : "");
    EXPECT_EQ(contentsOf(skipped.path()), tinyPng + "2");

    std::ofstream(document) << "{";
    const auto broken = run(real);
    EXPECT_EQ(broken.status, 3);
    EXPECT_THAT(broken.err, HasSubstr("library.json"));
}

TEST_F(CommandLineTest, KeepsALibraryFromRunToRun) {
    const auto a = folder_.write("photos/a.png", tinyPng), b = folder_.write("photos/b.png", tinyPng + "2");
    const auto document = (folder_.path() / "data/library.json").string();
    const auto library = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "library");
        words.insert(words.end(), {"--library", document});
        return run(words);
    };
    EXPECT_EQ(library({"add", photos()}).out, "2 photos scanned\n");
    EXPECT_EQ(run({"library", "--library", document, "mark", "--keep", a.path()}).out, "1 marked\n");
    EXPECT_EQ(library({"mark", "--cleanup", b.path(), "/nowhere.png"}).status, 1);
    EXPECT_EQ(library({"rename", a.path(), "holiday"}).out, "Renamed to holiday.png\n");
    EXPECT_EQ(library({"rename", b.path(), "holiday"}).status, 3);
    EXPECT_THAT(library({"list", "--section", "keep", "--search", "HOLI"}).out,
                HasSubstr("/holiday.png  Keep"));

    const auto json = library({"status", "--json"}).json();
    EXPECT_EQ(json["available"].GetInt(), 2);
    EXPECT_EQ(json["import"].GetInt(), 1);
    EXPECT_EQ(json["skip"].GetInt(), 1);
    EXPECT_STREQ(json["folders"][0]["state"].GetString(), "Online");
    EXPECT_EQ(
        run({"organize", "--to", destination(), "--json", "--library", document}).json()["copied"].Size(),
        1u);
    const auto organized =
        run({"organize", "--to", destination(), "--json", "--sidecars", "--library", document}).json();
    const auto copy = files::FileUrl::fromString(organized["copied"][0]["destination"].GetString());
    EXPECT_THAT(contentsOf(copy->path() + ".xmp"), HasSubstr("xmp:Rating=\"5\""));
    EXPECT_FALSE(fs::exists(photos() + "/holiday.png.xmp"));
    EXPECT_EQ(run({"match", "--method", "exact", "--json", "--library", document}).json()["groups"].Size(),
              0u);

    EXPECT_EQ(library({"mark", "--clear", b.path()}).status, 0);
    EXPECT_EQ(library({"protect", "/elsewhere"}).status, 3);
    EXPECT_EQ(library({"protect", photos()}).out, photos() + ": protected\n");
    const auto asked = library({"mark", "--cleanup", b.path()});
    EXPECT_EQ(asked.status, 1);
    EXPECT_THAT(asked.err, HasSubstr("“" + photos() + "” is protected"));
    EXPECT_EQ(asked.out, "0 marked\n");
    EXPECT_TRUE(library({"status", "--json"}).json()["folders"][0]["protected"].GetBool());
    EXPECT_EQ(library({"mark", "--cleanup", "--even-protected", b.path()}).out, "1 marked\n");
    EXPECT_EQ(library({"unprotect", photos()}).out, photos() + ": not protected any more\n");

    fs::rename(photos(), photos() + "-unplugged");
    EXPECT_STREQ(library({"status", "--json"}).json()["folders"][0]["state"].GetString(), "Offline");
    EXPECT_THAT(library({"list", "--section", "offline"}).out, HasSubstr("2 photos"));
    EXPECT_EQ(library({"remove", "/elsewhere"}).status, 3);
    {
        const auto open = files::FileLock::tryLock(document + ".lock");
        const auto refused = library({"remove", photos()});
        EXPECT_EQ(refused.status, 3);
        EXPECT_THAT(refused.err, HasSubstr("open in another program (process " + std::to_string(getpid())));
    }
    EXPECT_EQ(library({"remove", photos()}).status, 0);
    EXPECT_EQ(library({"status", "--json"}).json()["photos"].GetInt(), 0);

    std::ofstream(document) << "{";
    EXPECT_EQ(library({"add", destination()}).status, 3);
    EXPECT_EQ(contentsOf(document), "{");
}

TEST_F(CommandLineTest, GoesOnWithARunThatWasKilled) {
    std::mt19937 random(2);
    std::string noise(8'000'000, '\0');
    for (auto& byte : noise) byte = static_cast<char>(random());
    constexpr std::ptrdiff_t count = 12;
    for (int i = 0; i < count; ++i)
        folder_.write("photos/" + std::to_string(i) + ".png", tinyPng + noise + std::to_string(i));
    const auto made = [&] {
        std::vector<fs::path> copies;
        for (const auto& entry : fs::recursive_directory_iterator(destination()))
            if (entry.path().extension() == ".png") copies.push_back(entry.path());
        return copies;
    };
    const pid_t child = start({"organize", "--to", destination(), photos()});
    while (made().size() < 3 && waitpid(child, nullptr, WNOHANG) == 0) sched_yield();
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const auto copies = made();
    ASSERT_LT(std::ssize(copies), count) << "the run ended before it was killed";
    const auto run1 = fs::directory_iterator(destination())->path();
    const auto written = fs::last_write_time(run1 / "Lumisort-report.json");
    EXPECT_EQ(run({"organize", "--resume", run1.string(), "--to", destination(), photos()}).status, 2);

    std::vector<ino_t> inodes;
    const auto inode = [](const fs::path& path) {
        struct stat status{};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_ino;
    };
    for (const auto& copy : copies) inodes.push_back(inode(copy));
    EXPECT_EQ(fs::last_write_time(run1 / "Lumisort-report.json"), written); // nothing happened yet
    const auto resumed = run({"organize", "--resume", run1.string(), photos()});
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_THAT(resumed.out, HasSubstr("12 photos copied and verified"));
    EXPECT_THAT(resumed.out, HasSubstr(std::to_string(copies.size()) + " copies there already\n"));
    EXPECT_EQ(std::ssize(made()), count);
    for (std::size_t i = 0; i < copies.size(); ++i) EXPECT_EQ(inode(copies[i]), inodes[i]) << copies[i];
    const auto report = organize::readReport(
        files::FileSystem::real(), files::FileUrl::fromPath((run1 / "Lumisort-report.json").string()));
    EXPECT_EQ(std::ssize(report.copied), count);
    for (const auto& entry : fs::directory_iterator(run1))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
    EXPECT_EQ(run({"organize", "--resume", run1.string(), photos()}).status, 3); // it is finished
    EXPECT_THAT(run({"organize", "--to", destination(), "--new-only", photos()}).out,
                HasSubstr("0 photos copied and verified · 12 photos already there"));
}

TEST_F(CommandLineTest, AnInterruptLeavesNothingHalfDone) {
    std::mt19937 random(1);
    std::string noise(8'000'000, '\0');
    for (auto& byte : noise) byte = static_cast<char>(random());
    for (int i = 0; i < 12; ++i)
        folder_.write("photos/" + std::to_string(i) + ".png", tinyPng + noise + std::to_string(i));
    for (const std::size_t copies : {1, 2, 5}) {
        const pid_t child = start({"organize", "--to", destination(), photos()});
        const auto made = [&] {
            std::size_t count = 0;
            for (const auto& entry : fs::recursive_directory_iterator(destination()))
                count += entry.path().extension() == ".png";
            return count;
        };
        const auto before = made();
        const auto running = [child] {
            siginfo_t info{};
            return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                   info.si_pid == 0;
        };
        while (made() < before + copies && running()) sched_yield();
        kill(child, SIGINT);
        const auto finished = finish(child);
        EXPECT_THAT(finished.status, testing::AnyOf(0, 130));
        EXPECT_EQ(finished.err, ""); // not a line for every photo that was left
        if (made() < before + 12) {
            EXPECT_THAT(finished.out, testing::HasSubstr(" not reached"));
        }
        for (const auto& entry : fs::recursive_directory_iterator(destination())) {
            EXPECT_NE(entry.path().extension(), ".partial");
            if (entry.path().extension() == ".png") {
                EXPECT_EQ(entry.file_size(),
                          fs::file_size(photos() + '/' + entry.path().filename().string()));
            }
            if (entry.path().filename() == "Lumisort-report.json") {
                EXPECT_NO_THROW(organize::readReport(files::FileSystem::real(),
                                                     files::FileUrl::fromPath(entry.path().string())));
            }
        }
    }
}

} // namespace lumisort::app
