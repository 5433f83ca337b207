#include "ModelWorld.h"
#include "platform/tasks/Cancellation.h"

namespace lumisort::model {

using similarity::SimilarityLevel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class SimilarityTest : public ModelWorld {
protected:
    SimilarityTest() {
        engines_.near = [this](const auto& photos, auto, const auto& cache, int, const auto& progress,
                               const auto&) {
            cacheSeen_ = cache.size();
            for (std::size_t i = 1; i <= photos.size(); ++i) progress(i, photos.size());
            if (failure_) std::rethrow_exception(failure_);
            similarity::SimilarityResult result{
                .groups = {{photos[0], photos, {}}}, .unreadable = 2, .lowDetail = 5};
            for (const auto& photo : photos) result.cache[photo.url];
            return result;
        };
    }

    std::exception_ptr failure_;
    std::size_t cacheSeen_ = 0;
};

} // namespace

TEST_F(SimilarityTest, RunsAndShowsWhatWasFound) {
    const auto session = libraryOf({"a.jpg", "b.jpg", "c.jpg"});
    const auto model = this->model(session);
    model->select(session.photos[0]);
    model->setSimilarityMethod(SimilarityMethod::nearDuplicates);
    std::vector<QString> said;
    QObject::connect(model.get(), &LibraryModel::statusChanged, [&] { said.push_back(model->status()); });
    model->findSimilar();
    EXPECT_TRUE(model->busy());
    EXPECT_TRUE(model->similarityRunning());
    EXPECT_EQ(model->section(), "similar");
    EXPECT_THAT(model->selected(), IsEmpty());
    settle();
    EXPECT_THAT(said, ElementsAre("Analyzing photos…", "Analyzing 1 of 3…", "Analyzing 2 of 3…",
                                  "Grouping matches…",
                                  "1 near-duplicate groups · 2 unreadable · 5 low-detail skipped"));
    EXPECT_THAT(model->similarGroups(), SizeIs(1));
    EXPECT_TRUE(model->similarityComplete());
    EXPECT_FALSE(model->busy());

    model->findSimilar();
    settle();
    EXPECT_EQ(cacheSeen_, 3u);
    model->removeFolder(url("/p/"));
    EXPECT_THAT(model->similarGroups(), IsEmpty());
    EXPECT_FALSE(model->similarityComplete());
    settle();
    model->findSimilar(); // no photo can be read: nothing happens
    EXPECT_FALSE(model->busy());
}

TEST_F(SimilarityTest, ProgressOfAStoppedScanIsNotShown) {
    const auto model = this->model(libraryOf({"a.jpg", "b.jpg"}));
    model->setSimilarityMethod(SimilarityMethod::nearDuplicates);
    failure_ = std::make_exception_ptr(tasks::Cancelled());
    model->findSimilar();
    runOneJob(); // the refresh that every scan asks for
    auto job = std::move(jobs_.front());
    jobs_.pop_front();
    job(); // its reports are on their way to the main thread …
    model->stopSimilarity();
    EXPECT_EQ(model->status(), "Stopping…");
    std::vector<QString> said;
    QObject::connect(model.get(), &LibraryModel::statusChanged, [&] { said.push_back(model->status()); });
    settle(); // … and arrive after the stop
    EXPECT_THAT(said, ElementsAre("Scan cancelled"));
    EXPECT_EQ(model->similarityProgress(), 0);
    EXPECT_FALSE(model->similarityComplete());
    EXPECT_FALSE(model->similarityRunning());
}

TEST_F(SimilarityTest, ADriveThatGoesStopsTheScan) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->setSimilarityMethod(SimilarityMethod::nearDuplicates);
    model->findSimilar();
    system_.replace("/p", "/gone");
    model->refreshAvailability();
    runOneJob(); // the refresh that the scan asked for
    EXPECT_EQ(model->status(), "Stopping…");
    EXPECT_TRUE(model->busy());
    failure_ = std::make_exception_ptr(tasks::Cancelled());
    settle();
    EXPECT_EQ(model->status(), "Scan cancelled");
    EXPECT_FALSE(model->busy());
}

TEST_F(SimilarityTest, AFailedScanSaysWhy) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->setSimilarityMethod(SimilarityMethod::nearDuplicates);
    failure_ = std::make_exception_ptr(std::runtime_error("no network weights"));
    model->findSimilar();
    settle();
    EXPECT_EQ(model->status(), "Similarity scan failed: no network weights");
    EXPECT_THAT(model->similarGroups(), IsEmpty());
}

TEST_F(SimilarityTest, ExactCopiesReportsNoProgressAndNoEmptyParts) {
    engines_.exact = [](const auto& photos, const auto&) {
        return similarity::ExactCopies{.groups = {{photos[1], photos[0]}}, .failed = 0};
    };
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->setSimilarityMethod(SimilarityMethod::exact);
    model->findSimilar();
    settle();
    EXPECT_EQ(model->status(), "1 exact-copy groups");
    EXPECT_EQ(model->similarGroups()[0].anchor, session.photos[1]);
}

} // namespace lumisort::model
