// "lumisort film" from outside.

#include "CommandLine.h"
#include "film/edits/FilmEditFile.h"
#include "support/DngFile.h"

#include <sched.h>

#include <csignal>

namespace lumisort::app {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

class FilmCommandTest : public CommandLineTest {
protected:
    void SetUp() override {
        CommandLineTest::SetUp();
        setenv("LUMISORT_TEST_SESSION", (folder_.path() / "library" / "library.json").c_str(), 1);
        fs::create_directory(folder_.path() / "prints");
        fs::create_directory(folder_.path() / "sub");
    }
    void TearDown() override { unsetenv("LUMISORT_TEST_SESSION"); }

    std::string raw(const std::string& name, int width = 240, int height = 160) const {
        return test::TestCamera{}
            .photograph(folder_, name, width, height,
                        [](int x, int y) { return test::Light{0.002 * (x % 300), 0.2, 0.002 * (y % 300)}; })
            .path();
    }
    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    std::vector<std::string> prints() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.path() / "prints"))
            names.push_back(entry.path().filename());
        return names;
    }
};

} // namespace

TEST_F(FilmCommandTest, PrintsOnePhotoAndItsPreview) {
    const auto photo = raw("a.dng");
    auto finished = run({"film", photo, "--out", path("prints/a.tif"), "--preview", path("prints/a.png"),
                         "--stock", "mono400", "--timings"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_EQ(finished.out, path("prints/a.tif") + '\n' + path("prints/a.png") + '\n');
    EXPECT_THAT(finished.err, HasSubstr("grain"));
    EXPECT_GT(fs::file_size(path("prints/a.tif")), 240u * 160 * 8);
    EXPECT_THAT(contentsOf(path("prints/a.png")), testing::StartsWith("\x89PNG"));

    // A print is never replaced; a preview is.
    const auto before = contentsOf(path("prints/a.tif"));
    finished = run({"film", photo, "--out", path("prints/a.tif")});
    EXPECT_EQ(finished.status, 3);
    EXPECT_THAT(finished.err, HasSubstr("A file already exists at this location. Choose another name."));
    EXPECT_EQ(contentsOf(path("prints/a.tif")), before);
    EXPECT_EQ(run({"film", photo, "--preview", path("prints/a.png")}).status, 0);
    EXPECT_THAT(prints(), UnorderedElementsAre("a.tif", "a.png"));
}

TEST_F(FilmCommandTest, PrintsSeveralPhotosAndGoesOnAfterAFailure) {
    folder_.write("jpeg.nef", "\xff\xd8\xff\xe0 no photo");
    const auto finished = run({"film", raw("a.dng"), path("jpeg.nef"), path("gone.dng"), path("b.jpg"),
                               raw("sub/a.dng"), "--out-dir", path("prints")});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, path("prints/a.tif") + '\n' + path("prints/a-2.tif") + '\n');
    for (const auto* line : {"jpeg.nef: ", "gone.dng", "b.jpg: Film requires a RAW photo."})
        EXPECT_THAT(finished.err, HasSubstr(line));
    EXPECT_THAT(prints(), UnorderedElementsAre("a.tif", "a-2.tif"));
}

TEST_F(FilmCommandTest, TakesTheStoredAdjustmentsAndWhatTheCommandSaysInstead) {
    const auto photo = files::FileUrl::fromPath(raw("a.dng"));
    film::FilmEditFile edits(files::FileSystem::real(),
                             film::filmEditsOf(files::FileUrl::fromPath(path("library/library.json"))));
    const auto stamp = edits.load(photo).stamp;
    edits.save({.stock = film::FilmStock::mono400, .exposure = 1, .grain = 0}, photo, stamp);
    const auto print = [&](const std::vector<std::string>& options) {
        fs::remove(path("prints/a.tif"));
        std::vector<std::string> arguments{"film", photo.path(), "--out", path("prints/a.tif")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(run(arguments).status, 0);
        return contentsOf(path("prints/a.tif"));
    };
    const auto stored = print({"--from-edits"});
    EXPECT_EQ(stored, print({"--stock", "mono400", "--exposure", "1", "--grain", "0"}));
    EXPECT_NE(stored, print({}));
    EXPECT_EQ(print({"--from-edits", "--exposure", "-1"}),
              print({"--stock", "mono400", "--exposure", "-1", "--grain", "0"}));
}

TEST_F(FilmCommandTest, RefusesWhatItCannotDo) {
    const auto photo = raw("a.dng");
    struct Case {
        std::vector<std::string> arguments;
        int status;
        const char* words;
    };
    for (const auto& [arguments, status, words] :
         {Case{{photo}, 2, "--out"}, Case{{"--out", path("prints/a.tif")}, 2, "PHOTO"},
          Case{{photo, "--out", path("prints/a.tif"), "--stock", "instant"}, 2, "instant"},
          Case{{photo, "--out", path("prints/a.tif"), "--grain", "2"}, 2, "--grain"},
          Case{{photo, photo, "--out", path("prints/a.tif")}, 2, "--out-dir"},
          Case{{photo, "--out", path("prints/a.png")}, 3, "Choose TIFF to preserve the 16-bit film output."},
          Case{{photo, "--out", path("gone/a.tif")}, 3, "gone"},
          Case{{photo, "--out-dir", path("gone")}, 3, "gone"},
          Case{{path("a.jpg"), "--out", path("prints/a.tif")}, 3, "Film requires a RAW photo."}}) {
        std::vector<std::string> command{"film"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto finished = run(command);
        EXPECT_EQ(finished.status, status) << finished.err;
        EXPECT_THAT(finished.err, HasSubstr(words));
        EXPECT_THAT(prints(), testing::IsEmpty());
    }
}

TEST_F(FilmCommandTest, LeavesNoPartOfAPrintWhenItIsInterrupted) {
    const auto photo = raw("a.dng", 4000, 3000);
    // As soon as its hidden file is there, and when a good part of it is written.
    for (const std::uintmax_t bytes : {0, 1, 20'000'000}) {
        const pid_t child = start({"film", photo, "--out", path("prints/a.tif")});
        const auto running = [child] {
            siginfo_t info{};
            return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                   info.si_pid == 0;
        };
        const auto written = [&] {
            std::error_code gone;
            for (const auto& entry : fs::directory_iterator(folder_.path() / "prints"))
                if (const auto size = entry.file_size(gone); !gone && size >= bytes) return true;
            return false;
        };
        while (!written() && running()) sched_yield();
        kill(child, SIGINT);
        const auto finished = finish(child);
        if (finished.status == 0) { // It was faster.
            EXPECT_EQ(fs::file_size(path("prints/a.tif")) / 1'000'000, 4000u * 3000 * 8 / 1'000'000);
            fs::remove(path("prints/a.tif"));
        } else {
            EXPECT_EQ(finished.status, 130) << finished.err;
        }
        EXPECT_THAT(prints(), testing::IsEmpty());
    }
}

} // namespace lumisort::app
