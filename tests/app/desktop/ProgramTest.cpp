// The program with its window, from outside.

#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <csignal>

namespace lumisort::app {

using testing::HasSubstr;

namespace {

class ProgramTest : public testing::Test {
protected:
    ProgramTest() {
        environment_.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), path("run"));
        environment_.insert(QStringLiteral("LUMISORT_TEST_SESSION"), path("library.json"));
        std::filesystem::create_directory(folder_.path() / "run");
        std::filesystem::permissions(folder_.path() / "run", std::filesystem::perms::owner_all);
    }

    QString path(const char* name) const { return QString::fromStdString((folder_.path() / name).string()); }

    std::unique_ptr<QProcess> start(const QStringList& arguments = {}) const {
        auto program = std::make_unique<QProcess>();
        program->setProcessEnvironment(environment_);
        program->setWorkingDirectory(QString::fromStdString(folder_.path().string()));
        program->start(QStringLiteral(LUMISORT_PROGRAM), arguments);
        return program;
    }

    /// Exit status; −1 when it crashed or did not end.
    static int statusOf(QProcess& program) {
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit) return -1;
        return program.exitCode();
    }

    test::TemporaryFolder folder_;
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
};

TEST_F(ProgramTest, RunsOnceWritesDiagnosticsAndEndsCleanlyWhenTold) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const auto records = path("records.json");
        QFile::remove(records);
        environment_.insert(QStringLiteral("LUMISORT_PERF_OUTPUT"),
                            QStringLiteral("records.json")); // a bare name
        const auto first = start();
        // Written by a thread of its own once a second, with delays once the event loop answers.
        const bool running = test::QuickStage::until([&] {
            QFile file(records);
            return file.open(QIODevice::ReadOnly) &&
                   !QJsonDocument::fromJson(file.readAll()).array().isEmpty();
        });
        ASSERT_TRUE(running) << first->readAllStandardError().toStdString();

        environment_.remove(QStringLiteral("LUMISORT_PERF_OUTPUT"));
        EXPECT_EQ(statusOf(*start()), 0) << "the first comes forward";
        const auto command = start({QStringLiteral("library"), QStringLiteral("status")});
        EXPECT_EQ(statusOf(*command), 3);
        EXPECT_THAT(command->readAllStandardError().toStdString(), HasSubstr("library.json"));

        EXPECT_EQ(first->state(), QProcess::Running);
        kill(static_cast<pid_t>(first->processId()), signal);
        EXPECT_EQ(statusOf(*first), 0);
        QFile file(records);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const auto keys = QJsonDocument::fromJson(file.readAll()).array().first().toObject().keys();
        EXPECT_EQ(keys.join(u' ').toStdString(),
                  "elapsed footprintMB maxMainQueueDelayMS p95MainQueueDelayMS peakMB");
    }
}

TEST_F(ProgramTest, AddsTheFoldersThatEitherStartNames) {
    for (const auto* name : {"first", "second"}) std::filesystem::create_directory(folder_.path() / name);
    const auto program = start({path("first")});
    const auto holds = [this](const char* name) {
        QFile document(path("library.json"));
        return document.open(QIODevice::ReadOnly) &&
               document.readAll().contains('/' + QByteArray(name) + "/\"");
    };
    ASSERT_TRUE(test::QuickStage::until([&] { return holds("first"); }));
    EXPECT_EQ(statusOf(*start({path("second")})), 0);
    EXPECT_TRUE(test::QuickStage::until([&] { return holds("first") && holds("second"); }));
    kill(static_cast<pid_t>(program->processId()), SIGTERM);
    EXPECT_EQ(statusOf(*program), 0);
}

TEST_F(ProgramTest, SaysWhyItDoesNotStart) {
    environment_.remove(QStringLiteral("DISPLAY"));
    environment_.remove(QStringLiteral("WAYLAND_DISPLAY"));
    struct Case {
        const char *platform, *arguments;
        int status;
        const char* words;
    };
    for (const auto& [platform, arguments, status, words] : {
             Case{"xcb", "", 3, "DISPLAY"},
             Case{"nonsense", "", 3, "screen"},
             Case{"offscreen", "--theme pink", 2, "pink"},
             Case{"offscreen", "--self-test scan .", 2, "--self-test"},
             Case{"offscreen", "--self-test /proc", 2, "/proc"},
             Case{"offscreen", "scann /proc", 2, "“scann” is neither a command nor a folder"},
             Case{"offscreen", "/proc /proc/version", 2, "“/proc/version” is neither"},
             Case{"offscreen", "library status /proc", 2, "not expected: /proc"},
             Case{"offscreen", "--screenshot /proc/none", 3, "/proc/none"},
         }) {
        environment_.insert(QStringLiteral("QT_QPA_PLATFORM"), QLatin1String(platform));
        const auto program = start(QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(statusOf(*program), status) << arguments;
        EXPECT_THAT(program->readAllStandardError().toStdString(), HasSubstr(words)) << arguments;
    }
}

TEST_F(ProgramTest, ShowsAWindowWhereTheLibraryCannotBeOpened) {
    const auto program = start({QStringLiteral("--library"), QStringLiteral("/proc/none/library.json")});
    program->setReadChannel(QProcess::StandardError);
    while (!program->canReadLine()) ASSERT_TRUE(program->waitForReadyRead()); // it comes in pieces
    EXPECT_THAT(program->readLine().toStdString(), HasSubstr("/proc/none"));
    EXPECT_FALSE(program->waitForFinished(500)) << "nobody could read the line";
    kill(static_cast<pid_t>(program->processId()), SIGTERM);
    EXPECT_EQ(statusOf(*program), 3);
}

} // namespace

} // namespace lumisort::app
