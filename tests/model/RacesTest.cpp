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
    model.setSimilarityMethod(SimilarityMethod::nearDuplicates);
    std::vector<QFuture<void>> flushes;
    const auto any = [this](const auto& list) -> const auto& { return list[random_() % list.size()]; };
    for (int step = 0; step < 3000; ++step) {
        switch (random_() % 12) {
        case 0:
            model.importFolder(any(folders));
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
            flushes.push_back(model.flushSession());
            break;
        case 5:
            model.findSimilar();
            break;
        case 6:
            if (model.similarityRunning()) model.stopSimilarity();
            break;
        case 7:
            model.setQuery(QString::number(random_() % 5));
            break;
        case 8:
            model.refreshAvailability();
            break;
        default:
            model.mark({any(all), any(all)},
                       random_() % 3 ? std::optional(ReviewDecision::keep) : std::nullopt);
        }
        if (random_() % 3 == 0) QCoreApplication::processEvents();
    }
    for (const auto& flush : flushes) finish(flush);
    waitForAll(model);
    model.refreshAvailability();
    waitForAll(model);
    finish(model.flushSession());
    EXPECT_FALSE(model.busy());
    EXPECT_FALSE(model.similarityRunning());
    EXPECT_EQ(asTest([&] { return onDisk(); }),
              (library::LibraryContents{model.photos(), model.folders(), model.reviewMarks()}));
    const auto present = std::ranges::count_if(
        model.photos(), [&](const auto& photo) { return system_.contents(photo.url.path()).has_value(); });
    EXPECT_EQ(model.availableCount(), present);
    model.setQuery({});
    EXPECT_EQ(static_cast<std::ptrdiff_t>(model.visible().size()), present);
}

} // namespace lumisort::model
