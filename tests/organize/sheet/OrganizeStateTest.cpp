#include "SheetWorld.h"

#include <cerrno>

namespace lumisort::organize {
namespace {

using ArchiveStateTest = SheetWorld;

TEST_F(ArchiveStateTest, RunsOnceADestinationIsChosenAndAgainOnceSomethingChanged) {
    openFor({"a1.jpg", "a2.jpg", "b.jpg"});
    EXPECT_EQ(sheet_->photoCount(), 3);
    EXPECT_EQ(sheet_->reason(), QStringLiteral("Choose a destination first."));
    sheet_->run();
    EXPECT_FALSE(sheet_->busy());
    choose("sftp://nas/out");
    EXPECT_FALSE(sheet_->canRun());
    EXPECT_EQ(sheet_->error(),
              QStringLiteral("“sftp://nas/out” is not on a drive of this system. Choose a folder that is."));
    choose("file:///out");
    EXPECT_EQ(sheet_->error(), QString());
    EXPECT_EQ(sheet_->destination(), QStringLiteral("/out"));

    run();
    EXPECT_TRUE(sheet_->busy());
    EXPECT_EQ(sheet_->status(), QStringLiteral("Checking photos…"));
    EXPECT_FALSE(sheet_->canRun());
    settle();
    EXPECT_FALSE(sheet_->busy());
    EXPECT_EQ(sheet_->headline(), QStringLiteral("2 copied · 1 skipped · 0 failed"));
    EXPECT_TRUE(sheet_->log().endsWith(QStringLiteral("/Lumisort-report.json")));
    EXPECT_FALSE(sheet_->canRun());

    sheet_->setSkipDuplicates(false);
    EXPECT_EQ(sheet_->headline(), QString());
    run();
    settle();
    EXPECT_EQ(sheet_->headline(), QStringLiteral("3 copied · 0 skipped · 0 failed"));
    choose("file:///out");
    EXPECT_TRUE(sheet_->canRun());
}

TEST_F(ArchiveStateTest, OffersToGoOnWithAnImportThatStopped) {
    openFor({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    const auto engine = OrganizeEngine(system_);
    const auto plan = engine.plan(std::vector{photo("/p/a.jpg"), photo("/p/b.jpg")}, url("/out"), {},
                                  [](double, const std::string&) {}, {});
    std::stop_source stop;
    engine.execute(
        plan,
        [&](std::int64_t done, std::int64_t) {
            if (done == 2) stop.request_stop();
        },
        stop.get_token());
    choose("file:///out");
    EXPECT_EQ(sheet_->unfinished(), QString()); // not looked at yet
    settle();
    EXPECT_EQ(sheet_->unfinished(), QStringLiteral("An import there stopped after 1 of 2 photos: ") +
                                        QString::fromUtf8(plan.root.name()));
    sheet_->resume();
    EXPECT_TRUE(sheet_->busy());
    settle();
    EXPECT_EQ(sheet_->headline(), QStringLiteral("4 copied · 0 skipped · 0 failed"));
    EXPECT_EQ(sheet_->resumedNote(), QStringLiteral("1 were there already · 2 new since"));
    EXPECT_EQ(sheet_->unfinished(), QString());

    choose("file:///out");
    settle();
    EXPECT_EQ(sheet_->unfinished(), QString());
    EXPECT_EQ(sheet_->alreadyThere(), 4);
    sheet_->setLeaveOut(true);
    run();
    settle();
    EXPECT_EQ(sheet_->headline(), QStringLiteral("0 copied · 0 skipped · 0 failed"));
    EXPECT_EQ(sheet_->resumedNote(), QStringLiteral("4 left out, there already"));
}

TEST_F(ArchiveStateTest, CannotBeClosedDuringARun) {
    openFor({"a.jpg"});
    choose("file:///out");
    run();
    sheet_->done();
    EXPECT_TRUE(sheet_->isOpen());
    settle();
    sheet_->done();
    EXPECT_FALSE(sheet_->isOpen());
    sheet_->open({photo("/p/a.jpg")});
    EXPECT_EQ(sheet_->destination(), QString()) << "closing forgets everything";
    EXPECT_EQ(sheet_->headline(), QString());
}

TEST_F(ArchiveStateTest, TellsWhyARunFailedAndCanStartAgain) {
    openFor({"a.jpg"});
    choose("file:///gone");
    run();
    settle();
    EXPECT_TRUE(sheet_->error().contains(QStringLiteral("/gone"))) << sheet_->error().toStdString();
    EXPECT_EQ(sheet_->headline(), QString());
    EXPECT_TRUE(sheet_->canRun());
    choose("file:///out");
    EXPECT_EQ(sheet_->error(), QString());
    run();
    settle();
    EXPECT_EQ(sheet_->headline(), QStringLiteral("1 copied · 0 skipped · 0 failed"));
}

TEST_F(ArchiveStateTest, ListsSoManyPhotosThatFailedAndCountsTheRest) {
    std::vector<std::string> names{"whole.jpg"};
    for (int i = 0; i < 1003; ++i) names.push_back(std::to_string(i) + ".jpg");
    openFor(names);
    for (const auto& name : names)
        if (name != "whole.jpg") system_.failReads("/p/" + name, EIO);
    choose("file:///out");
    run();
    settle();
    EXPECT_EQ(sheet_->headline(), QStringLiteral("1 copied · 0 skipped · 1003 failed"));
    EXPECT_TRUE(sheet_->failures().startsWith(QStringLiteral("/p/0.jpg: ")));
    EXPECT_EQ(sheet_->failures().count(u'\n'), 1000);
    EXPECT_TRUE(sheet_->failures().endsWith(QStringLiteral("\n… and 3 more")));

    system_.failReads("/p/whole.jpg", EIO);
    choose("file:///out");
    run();
    settle();
    EXPECT_EQ(sheet_->log(), QString()) << "nothing was written";
}

TEST_F(ArchiveStateTest, FollowsTheRunAndStopsIt) {
    openFor({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    choose("file:///out");
    std::vector<std::pair<double, QString>> seen;
    QObject::connect(sheet_.get(), &OrganizeState::progressChanged,
                     [&] { seen.emplace_back(sheet_->progress(), sheet_->status()); });
    run();
    int copies = 0;
    system_.before = [&](std::string_view operation, const std::string&) {
        if (operation != "copy" || ++copies != 5) return; // two operations a photo
        for (auto& timer : std::exchange(timers_, {})) timer();
        sheet_->cancel();
        EXPECT_TRUE(sheet_->stopping());
    };
    settle();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].second, QStringLiteral("Checking photos…"));
    EXPECT_DOUBLE_EQ(seen[1].first, 0.4 + 0.6 * 3 / 4);
    EXPECT_EQ(seen[1].second, QStringLiteral("Copying 3 of 4…"));
    EXPECT_EQ(sheet_->cancelledNote(), QStringLiteral("Cancelled. 2 of 4 photos were copied before."));
    EXPECT_FALSE(sheet_->stopping());
    for (const auto& path : system_.filesBelow("/out"))
        EXPECT_EQ(path.find(".partial"), std::string::npos) << path;

    system_.before = {};
    letTimersFire();
    EXPECT_TRUE(timers_.empty()) << "nobody follows a run that is over";
    EXPECT_EQ(seen.size(), 2u);
}

} // namespace
} // namespace lumisort::organize
