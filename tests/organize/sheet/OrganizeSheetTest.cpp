#include "SheetWorld.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

void qml_register_types_Lumisort_OrganizeSheet();

namespace lumisort::organize {
namespace {

class ArchiveSheetTest : public SheetWorld {
protected:
    void show(const std::vector<std::string>& names) {
        qml_register_types_Lumisort_OrganizeSheet();
        openFor(names);
        stage_.show(R"(import QtQuick
                       import Lumisort.Ui
                       import Lumisort.OrganizeSheet
                       Window {
                           width: 1250; height: 820
                           property OrganizeState archive
                           color: Theme.window
                           OrganizeSheet { state: archive }
                       })",
                    {{QStringLiteral("archive"), QVariant::fromValue(sheet_.get())}});
        ASSERT_TRUE(test::QuickStage::until([this] { return stage_.has(QStringLiteral("Import Photos")); }));
    }
    bool enabled(const char* name) { return stage_.item(QString::fromUtf8(name))->isEnabled(); }
    bool has(const char* name) { return stage_.has(QString::fromUtf8(name)); }

    test::QuickStage stage_;
};

TEST_F(ArchiveSheetTest, ImportsByKeysAlone) {
    show({"a1.jpg", "a2.jpg", "b.jpg"});
    EXPECT_TRUE(has("Choose a destination"));
    EXPECT_TRUE(has("3 photos · Import and unmarked · Originals unchanged"));
    EXPECT_EQ(stage_.nameless(), QStringList());
    choose("file:///out");
    stage_.key(Qt::Key_Tab); // from Choose… to the toggle
    stage_.key(Qt::Key_Space);
    EXPECT_FALSE(sheet_->skipDuplicates());
    stage_.key(Qt::Key_Space);
    stage_.key(Qt::Key_Tab);
    stage_.key(Qt::Key_Space);
    EXPECT_TRUE(sheet_->busy());
    settle();
    stage_.settle();
    EXPECT_TRUE(has("2 copied · 1 skipped · 0 failed"));
    EXPECT_TRUE(has("Show Results in File Manager"));
    EXPECT_FALSE(has("Details"));
    stage_.key(Qt::Key_Escape);
    EXPECT_TRUE(test::QuickStage::until([this] { return !sheet_->isOpen(); }));
}

TEST_F(ArchiveSheetTest, GoesOnToTheImportOnceAFolderIsChosen) {
    const test::TemporaryFolder folder;
    show({"a.jpg"});
    stage_.key(Qt::Key_Return);
    ASSERT_TRUE(test::QuickStage::until(
        [this] { return has("Folder") && stage_.item(QStringLiteral("Folder"))->hasActiveFocus(); }));
    stage_.type(QString::fromStdString(folder.path().string()));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(test::QuickStage::until([this] {
        const auto* item = stage_.window().activeFocusItem();
        return item && item->property("text") == QStringLiteral("Import Photos");
    }));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(sheet_->busy());
    settle();
}

TEST_F(ArchiveSheetTest, ContinuesAnImportThatStopped) {
    show({"a.jpg", "b.jpg"});
    const OrganizeEngine engine(system_);
    const auto plan =
        engine.plan(std::vector{photo("/p/a.jpg")}, url("/out"), {}, [](double, const std::string&) {}, {});
    std::stop_source stop;
    stop.request_stop();
    engine.execute(plan, [](std::int64_t, std::int64_t) {}, stop.get_token());
    choose("file:///out");
    settle();
    stage_.settle();
    EXPECT_EQ(stage_.nameless(), QStringList());
    stage_.click(QStringLiteral("Continue It"));
    EXPECT_TRUE(sheet_->busy());
    settle();
    stage_.settle();
    EXPECT_TRUE(has("2 copied · 0 skipped · 0 failed"));
    EXPECT_TRUE(has("1 new since"));
    EXPECT_FALSE(has("Continue It"));
    choose("file:///out");
    settle();
    stage_.settle();
    stage_.click(QStringLiteral("Leave out what earlier imports copied there (2 photos)"));
    EXPECT_TRUE(sheet_->leaveOut());
}

TEST_F(ArchiveSheetTest, IsLockedDuringARunButForCancel) {
    show({"a.jpg", "b.jpg"});
    EXPECT_FALSE(has("Cancel"));
    choose("file:///out");
    stage_.settle();
    run();
    stage_.settle();
    for (const auto* name : {"Done", "Choose…", "Skip exact duplicates"}) EXPECT_FALSE(enabled(name)) << name;
    EXPECT_TRUE(has("Checking photos…"));
    stage_.key(Qt::Key_Escape);
    EXPECT_TRUE(sheet_->isOpen());
    stage_.click(QStringLiteral("Cancel"));
    EXPECT_TRUE(sheet_->stopping());
    settle();
    stage_.settle();
    EXPECT_TRUE(has("Cancelled. 0 of 2 photos were copied before."));
    EXPECT_TRUE(enabled("Done"));
    EXPECT_EQ(stage_.nameless(), QStringList());
    stage_.click(QStringLiteral("Done"));
    EXPECT_FALSE(sheet_->isOpen());
}

} // namespace
} // namespace lumisort::organize
