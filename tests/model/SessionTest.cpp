#include "ModelWorld.h"

#include <cerrno>
#include <thread>

namespace lumisort::model {

using library::ReviewDecision;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

class SessionTest : public ModelWorld {
protected:
    std::unique_ptr<LibraryModel> started() {
        auto made = std::make_unique<LibraryModel>(document_, std::nullopt, dependencies());
        hear(*made);
        EXPECT_TRUE(made->task().busy());
        settle();
        EXPECT_FALSE(made->task().busy());
        return made;
    }
};

} // namespace

TEST_F(SessionTest, StartsWithWhatTheDocumentHolds) {
    EXPECT_EQ(started()->loading().result(), Loaded::nothing); // no document yet
    EXPECT_THAT(reported(), ElementsAre("nothing to restore"));

    const auto session = libraryOf({"a.jpg", "b.jpg"});
    library::writeLibrary(system_, session, document_);
    const auto model = started();
    EXPECT_EQ(model->library().photos(), session.photos);
    EXPECT_EQ(model->library().folders(), session.folders);
    EXPECT_EQ(model->library().availableCount(), 2);

    system_.write(document_.path(), R"({"by":"another","folders":["file:///p/"],"photos":[
        {"url":"file:///p/a.jpg","bytes":1,"width":1,"height":1,"stars":5},
        {"url":"file:///p/a.jpg","bytes":2,"width":2,"height":2}]})");
    EXPECT_THAT(started()->library().photos(), SizeIs(1));
}

TEST_F(SessionTest, KeepsADocumentThatAnotherProgramWroteMeanwhileAndSaysSoOnce) {
    const auto session = libraryOf({"a.jpg"});
    library::writeLibrary(system_, session, document_);
    const auto model = started();
    const std::string theirs = R"({"photos":[],"folders":["file:///theirs/"]})";
    system_.write(document_.path(), theirs);
    reported();
    for (int change = 0; change < 2; ++change) {
        model->marking().mark(session.photos, ReviewDecision::keep);
        finish(model->flush());
    }
    const std::string kept = "library.json.changed-20010101T000000Z";
    EXPECT_THAT(reported(), ElementsAre("marked 1 0", "kept " + kept, "marked 1 0"));
    EXPECT_EQ(system_.contents("/data/Lumisort/" + kept), theirs);
    EXPECT_THAT(onDisk().reviewMarks, SizeIs(1));
}

TEST_F(SessionTest, SetsAnUnreadableDocumentAsideBeforeItWrites) {
    for (const std::string_view text :
         {"", "{", "[]", R"({"photos":[]})", R"({"photos":[{}],"folders":[]})",
          R"({"photos":[],"folders":[],"reviewMarks":{"/a":{"decision":"Maybe"}}})"}) {
        system_.write(document_.path(), text);
        const auto model = started();
        EXPECT_FALSE(model->loading().result().has_value());
        EXPECT_THAT(reported(), ElementsAre(StartsWith("restore failed: ")));
        EXPECT_THAT(model->library().photos(), IsEmpty());
        EXPECT_EQ(system_.contents(document_.path()), text);

        model->removeFolder(url("/none")); // asks for a save
        finish(model->flush());
        EXPECT_THAT(onDisk().photos, IsEmpty());
        const auto kept = system_.filesBelow("/data/Lumisort");
        ASSERT_THAT(kept, SizeIs(2));
        EXPECT_THAT(kept[1], StartsWith(document_.path() + ".unreadable-"));
        EXPECT_EQ(system_.contents(kept[1]), text);
        system_.remove(kept[1]);
    }
}

TEST_F(SessionTest, ABurstOfChangesCostsOneWriteOfTheLastState) {
    const auto session = libraryOf({"a.jpg", "b.jpg", "c.jpg"});
    const auto model = this->model(session);
    int writes = 0;
    bool byThisThread = false;
    system_.before = [&, self = std::this_thread::get_id()](std::string_view operation, const std::string&) {
        if (operation == "write" || operation == "replace")
            byThisThread |= self == std::this_thread::get_id();
        writes += operation == "replace";
    };
    for (const auto& each : session.photos) model->marking().mark({each}, ReviewDecision::keep);
    settle();
    EXPECT_EQ(writes, 0);
    letTimersFire();
    finish(model->flush()); // behind the debounced write on the same thread
    EXPECT_LE(writes, 2);
    EXPECT_FALSE(byThisThread);
    EXPECT_THAT(onDisk().reviewMarks, SizeIs(3));
}

TEST_F(SessionTest, AFlushWaitsForMarksAndWritesOnlyWhatChanged) {
    const auto session = libraryOf({"a.jpg"});
    {
        const auto model = this->model(session);
        finish(model->flush());
        EXPECT_FALSE(system_.contents(document_.path())); // nothing was changed
    }
    const auto model = this->model(session);
    model->marking().mark(session.photos, ReviewDecision::cleanup);
    const auto flushed = model->flush(); // before the mark's stamp was read, before the timer
    EXPECT_FALSE(flushed.isFinished());
    finish(flushed);
    EXPECT_EQ(onDisk().reviewMarks.at("/p/a.jpg").decision, ReviewDecision::cleanup);
}

TEST_F(SessionTest, AFailedSaveIsSaidAndTheNextOneTriesAgain) {
    const auto session = libraryOf({"a.jpg"});
    const auto model = this->model(session);
    system_.write("/data", "a file where the folder should be");
    model->marking().mark(session.photos, ReviewDecision::keep);
    settle();
    letTimersFire();
    const auto flushed = model->flush();
    finish(flushed);
    EXPECT_FALSE(flushed.result().has_value());
    EXPECT_THAT(reported().back(), StartsWith("save failed: "));
    EXPECT_EQ(model->library().keptCount(), 1);

    system_.remove("/data");
    finish(model->flush());
    EXPECT_THAT(onDisk().reviewMarks, SizeIs(1));
}

TEST_F(SessionTest, AnswersThatComeAfterTheModelAreDropped) {
    const auto session = libraryOf({"a.jpg"});
    auto model = this->model(session);
    model->marking().mark(session.photos, ReviewDecision::keep);
    model->availability().refresh();
    model->matches().find();
    model.reset();
    settle(); // the sanitizers watch
}

} // namespace lumisort::model
