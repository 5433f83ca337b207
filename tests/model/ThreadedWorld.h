#pragma once

#include "LoopWatch.h"
#include "ModelWorld.h"
#include "platform/tasks/Cancellation.h"

#include <QScopeGuard>
#include <QThreadPool>
#include <thread>

namespace lumisort::model {

/// The model on real threads, over files in memory. At the end of every test the event loop must have turned
/// all the time, and the main thread must have left the files alone.
class ThreadedWorld : public ModelWorld {
protected:
    ThreadedWorld() {
        pool_.setMaxThreadCount(8);
        system_.before = [this, main = std::this_thread::get_id()](std::string_view,
                                                                   const std::string& path) {
            if (std::this_thread::get_id() == main && !testActs_) touchedByMainThread_ = path;
        };
    }

    /// Jobs may outlive the model, but not the files.
    ~ThreadedWorld() override { pool_.waitForDone(); }

    void TearDown() override {
        EXPECT_LT(watch_.longest(), LoopWatch::bearable);
        EXPECT_EQ(touchedByMainThread_, "");
    }

    static std::vector<library::Photo> photosIn(const files::FileUrl& folder, std::size_t count) {
        std::vector<library::Photo> photos;
        for (std::size_t i = 0; i < count; ++i)
            photos.push_back({.url = folder.child(std::to_string(i) + ".jpg")});
        return photos;
    }

    /// Folders hold so many photos each.
    ModelDependencies threaded(std::size_t photosPerFolder) {
        auto deps = dependencies();
        deps.background = [this](std::function<void()> job) { pool_.start(std::move(job)); };
        deps.after = [](std::chrono::milliseconds, QObject* context, std::function<void()> function) {
            QTimer::singleShot(0, context, std::move(function));
        };
        deps.scan = [photosPerFolder](const files::FileUrl& folder, const library::ScanProgress& progress,
                                      const std::stop_token&) {
            for (std::size_t found = 100; found < 1000; found += 100) progress(found);
            return library::FolderScan{photosIn(folder, photosPerFolder), 1};
        };
        deps.findMatches = [](const auto& photos, auto, auto, auto& known, const auto& progress,
                              const auto& stop) {
            similarity::MatchResult result{.groups = {{photos[0], photos, {}}}, .caches = known};
            for (std::size_t i = 1; i <= photos.size(); ++i) {
                tasks::checkCancelled(stop);
                result.caches.fingerprints[photos[i - 1].url];
                progress(static_cast<double>(i) / static_cast<double>(photos.size()), "Analyzing…");
            }
            return result;
        };
        return deps;
    }

    /// For what the test itself does to files.
    template <class Act>
    auto asTest(Act&& act) {
        testActs_ = true;
        const auto end = qScopeGuard([this] { testActs_ = false; });
        return act();
    }

    void waitForAll(LibraryModel& model) {
        const QDeadlineTimer deadline(60'000);
        while (model.task().busy() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        ASSERT_FALSE(model.task().busy());
        finish(model.marking().pending());
        finish(model.availability().refreshing());
    }

    LoopWatch watch_;

private:
    QThreadPool pool_;
    // The main thread's own.
    std::string touchedByMainThread_;
    bool testActs_ = false;
};

} // namespace lumisort::model
