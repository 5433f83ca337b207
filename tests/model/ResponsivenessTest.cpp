#include "ThreadedWorld.h"

#include <QThreadPool>

namespace lumisort::model {

using library::ReviewDecision;

namespace {

/// Every job, and every flush of a file, lasts until the event loop has turned a few times.
class ResponsivenessTest : public ThreadedWorld {
protected:
    static constexpr std::size_t photosPerFolder = 500;

    ModelSurroundings slow() {
        auto with = threaded(photosPerFolder);
        with.background = [this](std::function<void()> job) {
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
        return with;
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
    const auto with = slow();
    LibraryModel model(document_, std::nullopt, with);
    finish(model.loading());
    waitForAll(model);
    ASSERT_EQ(model.availableCount(), static_cast<int>(photosPerFolder));
    model.setSimilarityMethod(SimilarityMethod::nearDuplicates);

    struct Operation {
        const char* name;
        std::function<QFuture<void>()> begin;
        std::function<bool()> isDone;
    };
    const Operation operations[] = {
        {"import",
         [&] {
             model.importFolder(other);
             return model.working();
         },
         [&] { return model.photos().size() == 2 * photosPerFolder; }},
        {"availability",
         [&] {
             asTest([&] { system_.replace("/q", "/unplugged"); });
             model.refreshAvailability();
             return model.refreshing();
         },
         [&] { return model.unavailableCount() == static_cast<int>(photosPerFolder); }},
        {"marks",
         [&] {
             model.mark(model.photos(), ReviewDecision::keep);
             return model.marking();
         },
         [&] { return model.importCount() == static_cast<int>(photosPerFolder); }},
        {"similarity",
         [&] {
             model.findSimilar();
             return model.working();
         },
         [&] { return model.similarityComplete(); }},
        {"organize",
         [&] {
             model.beginOrganize();
             return model.working();
         },
         [&] { return model.importPhotos().size() == photosPerFolder; }},
        {"flush",
         [&] {
             model.removeFolder(other);
             return model.flushSession();
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
