#include "ModelWorld.h"
#include "platform/tasks/Cancellation.h"

namespace lumisort::model {

using similarity::SimilarityLevel;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class SimilarityTest : public ModelWorld {
protected:
    SimilarityTest() {
        findMatches_ = [this](const auto& photos, auto, auto, auto& known, const auto& progress,
                              const auto&) {
            cacheSeen_ = known.fingerprints.size();
            progress(0.5, "Analyzing…");
            progress(1, "Grouping matches…");
            if (failure_) std::rethrow_exception(failure_);
            similarity::MatchResult result{.groups = {{photos[0], photos, {}}},
                                           .unreadable = 2,
                                           .lowDetail = 5,
                                           .storageProblem = storageProblem_};
            for (const auto& photo : photos) result.caches.fingerprints[photo.url];
            return result;
        };
    }

    std::exception_ptr failure_;
    std::size_t cacheSeen_ = 0;
    std::string storageProblem_;
};

} // namespace

TEST_F(SimilarityTest, RunsAndShowsWhatWasFound) {
    const auto session = libraryOf({"a.jpg", "b.jpg", "c.jpg"});
    const auto model = this->model(session);
    model->selection().toggle(session.photos[0]);
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    reported();
    model->matches().find();
    EXPECT_TRUE(model->task().busy());
    EXPECT_TRUE(model->matches().running());
    EXPECT_THAT(model->selection().selected(), IsEmpty());
    settle();
    EXPECT_THAT(reported(),
                ElementsAre("analyzing", "Analyzing…", "Grouping matches…", "Near Duplicates 1 2 5 0"));
    EXPECT_THAT(model->matches().groups(), SizeIs(1));
    EXPECT_TRUE(model->matches().complete());
    EXPECT_FALSE(model->task().busy());

    model->matches().find();
    settle();
    EXPECT_EQ(cacheSeen_, 3u);
    model->removeFolder(url("/p/"));
    EXPECT_THAT(model->matches().groups(), IsEmpty());
    EXPECT_FALSE(model->matches().complete());
    settle();
    model->matches().find(); // no photo can be read: nothing happens
    EXPECT_FALSE(model->task().busy());
}

TEST_F(SimilarityTest, ProgressOfAStoppedScanIsNotShown) {
    const auto model = this->model(libraryOf({"a.jpg", "b.jpg"}));
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    failure_ = std::make_exception_ptr(tasks::Cancelled());
    model->matches().find();
    runOneJob(); // the refresh that every scan asks for
    auto job = std::move(jobs_.front());
    jobs_.pop_front();
    job(); // its reports are on their way to the main thread …
    model->matches().stop();
    EXPECT_EQ(reported().back(), "stopping");
    settle(); // … and arrive after the stop
    EXPECT_THAT(reported(), ElementsAre("cancelled"));
    EXPECT_EQ(model->matches().progress(), 0);
    EXPECT_FALSE(model->matches().complete());
    EXPECT_FALSE(model->matches().running());
}

TEST_F(SimilarityTest, ADriveThatGoesStopsTheScan) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    model->matches().find();
    system_.replace("/p", "/gone");
    model->availability().refresh();
    runOneJob(); // the refresh that the scan asked for
    EXPECT_THAT(reported(), Contains("stopping"));
    EXPECT_TRUE(model->task().busy());
    failure_ = std::make_exception_ptr(tasks::Cancelled());
    settle();
    EXPECT_EQ(reported().back(), "cancelled");
    EXPECT_FALSE(model->task().busy());
}

TEST_F(SimilarityTest, AFailedScanSaysWhy) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    failure_ = std::make_exception_ptr(std::runtime_error("no network weights"));
    model->matches().find();
    settle();
    EXPECT_EQ(reported().back(), "failed: no network weights");
    EXPECT_THAT(model->matches().groups(), IsEmpty());
}

TEST_F(SimilarityTest, ExactCopiesReportsNoProgressAndNoEmptyParts) {
    findMatches_ = [](const auto& photos, auto, auto, auto&, const auto&, const auto&) {
        return similarity::MatchResult{.groups = {{photos[1], {photos[1], photos[0]}, {}}}};
    };
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->matches().setMethod(SimilarityMethod::exact);
    model->matches().find();
    settle();
    EXPECT_EQ(reported().back(), "Exact Copies 1 0 0 0");
    EXPECT_EQ(model->matches().groups()[0].anchor, session.photos[1]);
}

TEST_F(SimilarityTest, GroupsOutliveFoldersThatAreAdded) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    system_.write("/q/new.jpg", "x");
    scanned_ = {{photo("/q/new.jpg")}, 0};
    model->matches().find();
    model->folderImport().importFolders({url("/q")}); // waits for the end of the scan
    settle();
    ASSERT_EQ(model->library().availableCount(), 3);
    EXPECT_EQ(model->matches().groupCount(), 1);
    EXPECT_TRUE(model->matches().complete());
}

TEST_F(SimilarityTest, AChangedFileEndsTheGroupsAndNoFingerprint) {
    const auto model = this->model(libraryOf({"a.jpg", "b.jpg"}));
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    model->matches().find();
    settle();
    system_.write("/p/a.jpg", "edited");
    model->availability().refresh();
    settle();
    EXPECT_EQ(model->matches().groupCount(), 0);
    model->matches().find();
    settle();
    EXPECT_EQ(cacheSeen_, 2u);
}

TEST_F(SimilarityTest, AnUnusableDatabaseIsSaidOnce) {
    const auto model = this->model(libraryOf({"a.jpg", "b.jpg"}));
    storageProblem_ = "“x.sqlite” is not used.";
    for (const int times : {1, 0}) {
        model->matches().find();
        settle();
        EXPECT_THAT(reported(), Contains(storageProblem_).Times(times));
    }
}

TEST_F(SimilarityTest, NobodySeesGroupsThatAreGone) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->matches().setMethod(SimilarityMethod::nearDuplicates);
    model->matches().find();
    settle();
    const auto shown = model->matches().sharedGroups();
    QObject::connect(&model->selection(), &Selection::changed, [&] {
        EXPECT_EQ(shown->size(), 1u);
        EXPECT_EQ(shown->front().photos.size(), 2u);
    });
    model->matches().setMethod(SimilarityMethod::exact);
    model->selection().clear();
    ASSERT_EQ(model->matches().groupCount(), 0);
}

} // namespace lumisort::model
