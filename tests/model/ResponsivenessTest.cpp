#include "ThreadedWorld.h"

#include <QThreadPool>

namespace lumisort::model {

using library::ReviewDecision;

namespace {

/// Every job, and every flush of a file, lasts until the event loop has turned a few times.
class ResponsivenessTest : public ThreadedWorld {
protected:
    static constexpr std::size_t photosPerFolder = 500;

    ModelDependencies slow() {
        auto deps = threaded(photosPerFolder);
        deps.background = [this](std::function<void()> job) {
            pool_.start([this, job = std::move(job)] {
                watch_.holdUpJob();
                job();
            });
        };
        system_.before = [this, noteMainThread = system_.before](std::string_view operation,
                                                                 const std::string& path) {
            noteMainThread(operation, path);
            if (operation == "flush") watch_.holdUpJob();
        };
        return deps;
    }

    QThreadPool pool_;
};

} // namespace

TEST_F(ResponsivenessTest, TheEventLoopTurnsWhateverGoesOn) {
    const auto folder = url("/p/"), other = url("/q/");
    for (const auto& each : {folder, other})
        for (const auto& photo : photosIn(each, photosPerFolder)) system_.write(photo.url.path(), "x");
    asTest([&] {
        library::writeLibrary(system_, {.photos = photosIn(folder, photosPerFolder), .folders = {folder}},
                              document_);
    });
    const auto deps = slow();
    LibraryModel model(document_, std::nullopt, deps);
    finish(model.loading());
    waitForAll(model);
    ASSERT_EQ(model.library().availableCount(), static_cast<int>(photosPerFolder));
    model.matches().setMethod(SimilarityMethod::nearDuplicates);

    struct Operation {
        const char* name;
        std::function<QFuture<void>()> begin;
        std::function<bool()> isDone;
    };
    QFuture<std::vector<library::Photo>> prepared;
    const Operation operations[] = {
        {"import", [&] { return QFuture<void>(model.folderImport().importFolder(other)); },
         [&] { return model.library().photos().size() == 2 * photosPerFolder; }},
        {"availability",
         [&] {
             asTest([&] { system_.replace("/q", "/unplugged"); });
             return model.availability().refresh();
         },
         [&] { return model.library().unavailableCount() == static_cast<int>(photosPerFolder); }},
        {"marks",
         [&] { return QFuture<void>(model.marking().mark(model.library().photos(), ReviewDecision::keep)); },
         [&] { return model.library().keptCount() == static_cast<int>(photosPerFolder); }},
        {"similarity", [&] { return QFuture<void>(model.matches().find()); },
         [&] { return model.matches().complete(); }},
        {"organize",
         [&] {
             prepared = model.prepareToOrganize();
             return QFuture<void>(prepared);
         },
         [&] { return prepared.result().size() == photosPerFolder; }},
        {"flush",
         [&] {
             model.removeFolder(other);
             return QFuture<void>(model.flush());
         },
         [&] { return asTest([&] { return onDisk(); }).folders.size() == 1; }},
    };
    for (const auto& [name, begin, isDone] : operations) {
        LoopWatch watch;
        const auto task = begin();
        EXPECT_FALSE(task.isFinished()) << name << " was waited for";
        finish(task);
        EXPECT_LT(watch.longest(), LoopWatch::bearable) << name;
        waitForAll(model);
        EXPECT_TRUE(isDone()) << name;
    }
}

} // namespace lumisort::model
