#pragma once

#include "library/LibraryStorage.h"
#include "model/LibraryModel.h"
#include "model/ReportWords.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace lumisort::model {

/// A machine around a model: files in memory, drives, timers and background jobs that move when the test says
/// so.
class ModelWorld : public testing::Test {
protected:
    static files::FileUrl url(std::string_view path) { return files::FileUrl::fromPath(path); }
    static library::Photo photo(std::string_view path) { return {.url = url(path), .bytes = 1}; }

    ModelDependencies dependencies() {
        ModelDependencies deps{
            .system = system_,
            .clock = {.now = [] { return time::Timestamp(0); }, .uptimeSeconds = [] { return 0.0; }}};
        deps.volumes = [this] { return volumes_; };
        deps.background = [this](std::function<void()> job) { jobs_.push_back(std::move(job)); };
        deps.after = [this](std::chrono::milliseconds, QObject*, std::function<void()> function) {
            timers_.push_back(std::move(function));
        };
        deps.scan = [this](const files::FileUrl&, const library::ScanProgress& progress,
                           const std::stop_token&) {
            if (scanned_.photos.size() >= 100) progress(100);
            return scanned_;
        };
        deps.findMatches = findMatches_;
        return deps;
    }

    /// A model with the document in place, read and looked at.
    std::unique_ptr<LibraryModel> model(const library::LibraryContents& session = {}) {
        auto made = std::make_unique<LibraryModel>(document_, session, dependencies());
        hear(*made);
        settle();
        return made;
    }

    /// A library of /p with these names, each a file.
    library::LibraryContents libraryOf(const std::vector<std::string>& names) {
        library::LibraryContents session{.folders = {url("/p/")}};
        for (const auto& name : names) {
            system_.write("/p/" + name, name);
            session.photos.push_back(photo("/p/" + name));
        }
        return session;
    }

    /// Delivers answers and what follows from them: the event loop delivers in one turn only what was posted
    /// before it.
    static void turnLoop() {
        for (int turn = 0; turn < 8; ++turn) QCoreApplication::processEvents();
    }

    void runOneJob() {
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        job();
        turnLoop();
    }

    /// Runs background jobs and their answers until nothing is under way. Timers keep waiting.
    void settle() {
        turnLoop();
        while (!jobs_.empty()) runOneJob();
    }

    /// The time of every timer is up; the writer has written.
    void letTimersFire() {
        for (auto& timer : std::exchange(timers_, {})) timer();
        settle();
    }

    template <class Result>
    void finish(const QFuture<Result>& task) {
        const QDeadlineTimer deadline(60'000);
        while (!task.isFinished() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            while (!jobs_.empty()) runOneJob();
        }
        ASSERT_TRUE(task.isFinished());
    }

    /// Notes what the model reports.
    void hear(LibraryModel& model) {
        reports_.clear();
        QObject::connect(&model.reports(), &Reports::added,
                         [this](const Report& report) { reports_.push_back(words(report)); });
    }
    /// What the model has reported since the last call, as the test words it.
    std::vector<std::string> reported() { return std::exchange(reports_, {}); }

    library::LibraryContents onDisk() { return library::readLibrary(system_, document_); }

    test::MemoryFileSystem system_;
    files::FileUrl document_ = url("/data/Lumisort/library.json");
    std::vector<volumes::Volume> volumes_;
    std::deque<std::function<void()>> jobs_;
    std::vector<std::function<void()>> timers_;
    library::FolderScan scanned_;
    MatchEngine findMatches_ = similarity::findMatches;

private:
    std::vector<std::string> reports_;
};

} // namespace lumisort::model
