#include "ThreadedWorld.h"

#include <random>

namespace lumisort::model {

using library::ReviewDecision;

namespace {

class RacesTest : public ThreadedWorld {
protected:
    std::mt19937 random_{17};
};

} // namespace

TEST_F(RacesTest, WhateverMeetsEndsInOneState) {
    constexpr std::size_t photosPerFolder = 30;
    const std::vector<files::FileUrl> folders{url("/p/"), url("/q/"), url("/q/inner/")};
    std::vector<library::Photo> all;
    for (const auto& folder : folders)
        std::ranges::copy(photosIn(folder, photosPerFolder), std::back_inserter(all));
    for (const auto& photo : all) system_.write(photo.url.path(), "x");
    LibraryModel model(document_, library::LibraryContents{}, threaded(photosPerFolder));
    model.matches().setMethod(SimilarityMethod::nearDuplicates);
    std::vector<QFuture<SaveOutcome>> flushes;
    std::vector<QFuture<std::vector<library::Photo>>> prepared;
    std::vector<std::shared_ptr<StoredMarks>> undo;
    const auto any = [this](const auto& list) -> const auto& { return list[random_() % list.size()]; };
    for (int step = 0; step < 3000; ++step) {
        switch (random_() % 13) {
        case 0:
            model.folderImport().importFolder(any(folders));
            break;
        case 1:
            if (random_() % 4 == 0) model.removeFolder(any(folders));
            break;
        case 2:
            system_.write(any(all).url.path(), std::to_string(step));
            break;
        case 3:
            if (const auto& path = any(all).url.path(); system_.contents(path))
                asTest([&] { system_.remove(path); });
            break;
        case 4:
            flushes.push_back(model.flush());
            break;
        case 5:
            model.matches().find();
            break;
        case 6:
            model.matches().stop();
            break;
        case 7:
            prepared.push_back(model.prepareToOrganize());
            break;
        case 8:
            model.availability().refresh();
            break;
        default:
            model.marking().mark({any(all), any(all)},
                                 random_() % 3 ? std::optional(ReviewDecision::keep) : std::nullopt);
        }
        if (random_() % 3 == 0) QCoreApplication::processEvents();
    }
    for (const auto& flush : flushes) finish(flush);
    for (const auto& each : prepared) finish(each);
    waitForAll(model);
    model.availability().refresh();
    waitForAll(model);
    finish(model.flush());
    EXPECT_FALSE(model.task().busy());
    EXPECT_FALSE(model.matches().running());
    EXPECT_EQ(asTest([&] { return onDisk(); }),
              (library::LibraryContents{model.library().photos(), model.library().folders(),
                                        model.library().reviewMarks()}));
    const auto present = std::ranges::count_if(model.library().photos(), [&](const auto& photo) {
        return system_.contents(photo.url.path()).has_value();
    });
    EXPECT_EQ(model.library().availableCount(), present);
}

TEST_F(RacesTest, AnyNumberOfWaitersSeeTheEndOfMarks) {
    constexpr std::size_t photos = 500;
    const auto folder = url("/p/");
    for (const auto& photo : photosIn(folder, photos)) system_.write(photo.url.path(), "x");
    LibraryModel model(document_, library::LibraryContents{photosIn(folder, photos), {folder}, {}},
                       threaded(photos));
    waitForAll(model);
    int ends = 0;
    const auto marked = model.marking().mark(model.library().photos(), ReviewDecision::keep);
    for (int waiter = 0; waiter < 3; ++waiter) whenFinished(marked, &model, [&ends] { ++ends; });
    const auto prepared = model.prepareToOrganize();
    const auto first = model.flush();
    const auto more = model.marking().mark({model.library().photos().front()}, ReviewDecision::cleanup);
    whenFinished(more, &model, [&ends] { ++ends; });
    const auto second = model.flush();
    finish(prepared);
    finish(first);
    finish(second);
    finish(more);
    turnLoop();
    EXPECT_EQ(ends, 4);
    EXPECT_FALSE(model.task().busy());
    EXPECT_EQ(prepared.result().size(), photos - 1);
    EXPECT_EQ(asTest([&] { return onDisk(); }).reviewMarks.size(), photos);
}

TEST_F(RacesTest, TheEndOfTheModelEndsWhoeverWaits) {
    system_.write("/p/0.jpg", "x");
    auto model = std::make_unique<LibraryModel>(
        document_, library::LibraryContents{photosIn(url("/p/"), 1), {url("/p/")}, {}}, threaded(1));
    waitForAll(*model);
    const auto marked = model->marking().mark(model->library().photos(), ReviewDecision::keep);
    const auto prepared = model->prepareToOrganize();
    const auto flushed = model->flush();
    model.reset();
    finish(marked);
    finish(prepared);
    finish(flushed);
    EXPECT_TRUE(prepared.isCanceled());
    EXPECT_TRUE(flushed.isCanceled());
}

} // namespace lumisort::model
