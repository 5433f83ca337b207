#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <gmock/gmock.h>

#include <QAccessible>
#include <QDir>
#include <QUrl>

namespace lumisort::ui {
namespace {

class FolderSheetTest : public testing::Test {
protected:
    FolderSheetTest() {
        QDir(root_).mkpath(QStringLiteral("alps/glacier"));
        QDir(root_).mkdir(QStringLiteral("baltic sea"));
        QDir(root_).mkdir(QStringLiteral(".hidden"));
        stage_.show(R"(import QtQuick
                       import Lumisort.Ui
                       Window {
                           width: 900; height: 700
                           property url start
                           property bool mayMake: true
                           property var files: []
                           property url chosen
                           property int tapsBehind: 0
                           Item {
                               anchors.fill: parent
                               TapHandler { onTapped: ++tapsBehind }
                           }
                           PushButton { id: ask; text: "Ask"; focus: true; onClicked: sheet.open() }
                           FolderSheet {
                               id: sheet
                               title: "Add Folder"
                               mayMake: parent.Window.window.mayMake
                               files: parent.Window.window.files
                               currentFolder: parent.Window.window.start
                               onAccepted: parent.Window.window.chosen = selectedFolder
                           }
                       })",
                    {{QStringLiteral("start"), QUrl::fromLocalFile(root_)}});
    }

    void open() {
        stage_.key(Qt::Key_Return); // presses the button
        ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("alps")); }));
        ASSERT_TRUE(test::QuickStage::until([&] { return focused() == QLatin1String("Folder"); }));
    }
    QString focused() {
        auto* item = stage_.window().activeFocusItem();
        auto* face = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return face ? face->text(QAccessible::Name) : QString();
    }
    void waitForChoose() {
        EXPECT_TRUE(test::QuickStage::until([&] {
            return stage_.has(QStringLiteral("Choose")) && stage_.item(QStringLiteral("Choose"))->isEnabled();
        }));
    }
    bool hasClosed() {
        return test::QuickStage::until([&] { return focused() == QLatin1String("Ask"); });
    }
    /// Below the first folder; "" before anything was chosen.
    QString chosen() {
        const auto path = stage_.window().property("chosen").toUrl().toLocalFile();
        return path.isEmpty() ? path : QDir(root_).relativeFilePath(path);
    }

    test::TemporaryFolder folder_;
    QString root_ = QDir(QString::fromStdString(folder_.url().path())).absolutePath();
    test::QuickStage stage_;
};

TEST_F(FolderSheetTest, ChoosesWhatIsTypedAndGivesTheKeyboardBack) {
    open();
    EXPECT_FALSE(stage_.has(QStringLiteral(".hidden")));
    stage_.type(root_ + QStringLiteral("/alps/"));
    EXPECT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("glacier")); }));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(chosen(), QStringLiteral("alps"));
}

TEST_F(FolderSheetTest, KeepsBlanksInNames) {
    QDir(root_).mkdir(QStringLiteral("Backup"));
    QDir(root_).mkdir(QStringLiteral("Backup "));
    open();
    stage_.type(root_ + QStringLiteral("/Backup "));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(chosen(), QStringLiteral("Backup "));
}

TEST_F(FolderSheetTest, AHeldReturnKeyDoesNotRunOnIntoTheSheet) {
    QTest::keyPress(&stage_.window(), Qt::Key_Return);
    ASSERT_TRUE(test::QuickStage::until([&] { return focused() == QLatin1String("Folder"); }));
    for (int i = 0; i < 5; ++i) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(&stage_.window(), &held);
        QTest::qWait(20);
    }
    EXPECT_EQ(focused(), QStringLiteral("Folder"));
    EXPECT_EQ(chosen(), QString());
}

TEST_F(FolderSheetTest, WalksThroughTheFoldersByKeys) {
    open();
    stage_.key(Qt::Key_Down); // into the list
    stage_.key(Qt::Key_Down);
    stage_.key(Qt::Key_Return); // into alps
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("glacier")); }));
    stage_.key(Qt::Key_Left); // back up
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("baltic sea")); }));
    stage_.key(Qt::Key_Down);
    stage_.key(Qt::Key_Down);
    waitForChoose();
    stage_.click(QStringLiteral("Choose"));
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(chosen(), QStringLiteral("baltic sea"));
}

TEST_F(FolderSheetTest, WalksThroughTheFoldersByClicks) {
    const auto open = [&](const char* name) {
        const auto* row = stage_.item(QString::fromUtf8(name));
        QTest::mouseDClick(&stage_.window(), Qt::LeftButton, {}, row->mapToScene({20, 10}).toPoint());
    };
    const auto tapsBehind = [&] { return stage_.window().property("tapsBehind").toInt(); };
    FolderSheetTest::open();
    for (const auto* name : {"baltic sea", "Folder", "Add Folder"}) {
        stage_.click(QString::fromUtf8(name));
        EXPECT_EQ(tapsBehind(), 0) << name;
    }
    open("alps");
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("glacier")); }));
    open("glacier");
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("No folders in here")); }));
    stage_.click(QStringLiteral("No folders in here"));
    waitForChoose();
    stage_.click(QStringLiteral("Choose"));
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(chosen(), QStringLiteral("alps/glacier"));
    EXPECT_EQ(tapsBehind(), 0);
}

TEST_F(FolderSheetTest, ChoosesAFileWhereFilesAreAskedFor) {
    for (const auto* name : {"alps/dusk.json", "alps/notes.txt"}) folder_.write(name, "{}");
    stage_.window().setProperty("files", QStringList{QStringLiteral("*.json")});
    stage_.key(Qt::Key_Return);
    ASSERT_TRUE(test::QuickStage::until([&] { return focused() == QLatin1String("File"); }));
    EXPECT_FALSE(stage_.item(QStringLiteral("Choose"))->isEnabled()) << "a folder is no file";
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("alps")); }));
    stage_.key(Qt::Key_Down);
    stage_.key(Qt::Key_Down);
    stage_.key(Qt::Key_Return); // into alps
    ASSERT_TRUE(test::QuickStage::until([&] { return stage_.has(QStringLiteral("dusk.json")); }));
    EXPECT_FALSE(stage_.has(QStringLiteral("notes.txt")));
    stage_.click(QStringLiteral("dusk.json"));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(chosen(), QStringLiteral("alps/dusk.json"));
}

TEST_F(FolderSheetTest, MakesAFolderOnlyWhereItMay) {
    struct Case {
        const char* typed;
        bool mayMake;
        const char* chosen;
    };
    for (const auto& [typed, mayMake, expected] : {
             Case{"new", false, ""},
             Case{"new/deeper", true, ""},
             Case{"new", true, "new"},
         }) {
        SCOPED_TRACE(typed);
        stage_.window().setProperty("mayMake", mayMake);
        open();
        stage_.type(root_ + u'/' + QString::fromUtf8(typed));
        stage_.key(Qt::Key_Return);
        if (!*expected) stage_.key(Qt::Key_Escape);
        EXPECT_TRUE(hasClosed());
        EXPECT_EQ(chosen(), QString::fromUtf8(expected));
        EXPECT_EQ(QDir(root_).exists(QString::fromUtf8(typed)), *expected != 0);
    }
}

} // namespace
} // namespace lumisort::ui
