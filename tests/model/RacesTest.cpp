#include "ModelWorld.h"
#include "platform/tasks/Cancellation.h"

#include <QTimer>
#include <random>

namespace lumisort::model {

using library::ReviewDecision;

namespace {

/// The model on real threads, over files in memory that come and go.
class RacesTest : public ModelWorld {
protected:
    static constexpr std::size_t photosPerFolder = 30;

    static std::vector<library::Photo> photosIn(const files::FileUrl& folder) {
        std::vector<library::Photo> photos;
        for (std::size_t i = 0; i < photosPerFolder; ++i)
            photos.push_back({.url = folder.child(std::to_string(i) + ".jpg")});
        return photos;
    }

    ModelSurroundings threaded() {
        auto with = surroundings();
        with.background = {};
        with.after = [](std::chrono::milliseconds, QObject* context, std::function<void()> function) {
            QTimer::singleShot(0, context, std::move(function));
        };
        with.scan = [](const files::FileUrl& folder, const library::LibraryScanner::Progress& progress,
                       const std::stop_token&) {
            for (std::size_t found = 100; found < 1000; found += 100) progress(found);
            return library::LibraryScanner::Result{photosIn(folder), 1};
        };
        with.engines.near = [](const auto& photos, auto, const auto& cache, int, const auto& progress,
                               const auto& stop) {
            similarity::SimilarityResult result{.groups = {{photos[0], photos, {}}}, .cache = cache};
            for (std::size_t i = 1; i <= photos.size(); ++i) {
                tasks::checkCancelled(stop);
                result.cache[photos[i - 1].url];
                progress(i, photos.size());
            }
            return result;
        };
        return with;
    }

    void waitForAll(LibraryModel& model) {
        for (const auto& task : {model.working(), model.marking(), model.refreshing()}) finish(task);
    }

    std::mt19937 random_{17};
};

} // namespace

TEST_F(RacesTest, WhateverMeetsEndsInOneState) {
    const std::vector<files::FileUrl> folders{url("/p/"), url("/q/"), url("/q/inner/")};
    std::vector<library::Photo> all;
    for (const auto& folder : folders) std::ranges::copy(photosIn(folder), std::back_inserter(all));
    for (const auto& photo : all) system_.write(photo.url.path(), "x");
    LibraryModel model(document_, library::LibrarySession{}, threaded());
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
            if (const auto& path = any(all).url.path(); system_.contents(path)) system_.remove(path);
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
    EXPECT_EQ(onDisk(), (library::LibrarySession{model.photos(), model.folders(), model.reviewMarks()}));
    const auto present = std::ranges::count_if(
        model.photos(), [&](const auto& photo) { return system_.contents(photo.url.path()).has_value(); });
    EXPECT_EQ(model.availableCount(), present);
    model.setQuery({});
    EXPECT_EQ(static_cast<std::ptrdiff_t>(model.visible().size()), present);
}

} // namespace lumisort::model
