#include "review/viewer/CompareState.h"
#include "review/viewer/FullscreenPhotoController.h"
#include "review/viewer/OriginalPane.h"
#include "review/viewer/ViewerWorld.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"
#include "ui/ColourScheme.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QtTest/qtestsystem.h>

#include <QAccessible>
#include <QImage>
#include <algorithm>
#include <iterator>
#include <vector>

void qml_register_types_Lumisort_Actions();
void qml_register_types_Lumisort_Marks();
void qml_register_types_Lumisort_Viewer();

namespace lumisort::review {
namespace {

/// Real pictures that the library of the test believes in.
class ViewerWindows : public ViewerWorld {
protected:
    ViewerWindows() {
        qml_register_types_Lumisort_Actions();
        qml_register_types_Lumisort_Marks();
        qml_register_types_Lumisort_Viewer();
        ui::ColourScheme::shared().choose(ui::ColourScheme::Dark);
        session_.folders = {folder_.url()};
        for (const int hue : {10, 130, 250}) {
            QImage image(90, 60, QImage::Format_RGB32);
            image.fill(QColor::fromHsv(hue, 200, 180));
            add(image, QStringLiteral("hue %1.png").arg(hue));
        }
        model_ = model(session_);
        history_ = std::make_unique<MarkHistory>(*model_);
    }

    void add(const QImage& image, const QString& name) {
        const auto url = folder_.url().child(name.toStdString());
        ASSERT_TRUE(image.save(QString::fromStdString(url.path())));
        system_.write(url.path(), "the library's look at it");
        session_.photos.push_back(
            {.url = url, .bytes = 12'300'000, .width = image.width(), .height = image.height()});
    }

    /// From left to right.
    static std::vector<OriginalPane*> panesIn(QQuickItem* item) {
        if (auto* pane = qobject_cast<OriginalPane*>(item)) return {pane};
        std::vector<OriginalPane*> panes;
        for (auto* child : item->childItems()) std::ranges::copy(panesIn(child), std::back_inserter(panes));
        return panes;
    }

    static bool allReady(QQuickWindow& window, std::ptrdiff_t count) {
        return test::QuickStage::until([&] {
            const auto panes = panesIn(window.contentItem());
            return std::ssize(panes) == count && std::ranges::all_of(panes, [](auto* pane) {
                       return pane->status() == OriginalPane::Ready;
                   });
        });
    }

    test::TemporaryFolder folder_;
    test::QuickStage stage_;
};

class CompareSheetTest : public ViewerWindows {
protected:
    CompareSheetTest() : state_(*model_, *history_) {
        stage_.show(R"(import QtQuick
                       import Lumisort.Ui
                       import Lumisort.Viewer
                       Window {
                           width: 1250; height: 820
                           property CompareState compareState
                           property int keysOfTheWindow: 0
                           color: Theme.window
                           property int reachedBehind: 0
                           Item { focus: true; Keys.onPressed: ++keysOfTheWindow }
                           ListView {
                               id: behind
                               anchors.fill: parent
                               model: 99
                               delegate: Item {
                                   width: behind.width
                                   height: 80
                                   TapHandler { onTapped: ++reachedBehind }
                               }
                               onContentYChanged: ++reachedBehind
                           }
                           CompareSheet { state: compareState }
                       })",
                    {{QStringLiteral("compareState"), QVariant::fromValue(&state_)}});
    }

    ~CompareSheetTest() override { stage_.close(); }

    void open(const std::vector<std::size_t>& indices, const std::vector<std::size_t>& group = {}) {
        state_.open(photos(indices), photos(group));
        ASSERT_TRUE(allReady(stage_.window(), std::ssize(indices)));
        ASSERT_TRUE(test::QuickStage::until([&] { return focusedPane() == state_.active(); }));
    }

    /// Which pane has the keyboard, −1 for none.
    int focusedPane() {
        auto* focus = stage_.window().activeFocusItem();
        const auto* pane = focus ? focus->parentItem() : nullptr;
        return pane && pane->property("shown").isValid() ? pane->property("index").toInt() : -1;
    }

    QStringList shownUrls() {
        QStringList urls;
        for (const auto* pane : panesIn(stage_.window().contentItem())) urls << pane->url();
        return urls;
    }

    CompareState state_;
};

TEST_F(CompareSheetTest, SaysWhatItShows) {
    open({0, 1});
    for (const auto* text :
         {"Compare Originals", "Fit", "100%", "Linked zoom", "Done", "Original photo: hue 10.png",
          "Original photo: hue 130.png", "90 × 60 · 12.3 MB", "Unmarked", "Import", "Skip", "Clear",
          "Open Original",
          "Drag to pan both photos · Ctrl+K Import · Ctrl+D Skip · Ctrl+U Clear · Space Flip · "
          "Shift+Arrows Pan"})
        EXPECT_TRUE(stage_.has(QString::fromUtf8(text))) << text;
    EXPECT_EQ(stage_.nameless(), QStringList());
}

TEST_F(CompareSheetTest, IsUsedByKeysAlone) {
    open({0, 1}, {0, 1, 2});
    EXPECT_TRUE(stage_.has(QStringLiteral("Pair 1 of 3")));
    stage_.key(Qt::Key_K, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state_.decisions().at(0), model::Decision::Keep);
    EXPECT_EQ(stage_.window().property("keysOfTheWindow"), 0);
    stage_.key(Qt::Key_Right);
    EXPECT_EQ(focusedPane(), 1);
    stage_.key(Qt::Key_D, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state_.decisions().at(1), model::Decision::Skip);
    stage_.key(Qt::Key_U, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state_.decisions().at(1), model::Decision::None);
    stage_.key(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state_.decisions().at(1), model::Decision::Skip);
    stage_.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_EQ(state_.decisions().at(1), model::Decision::None);
    stage_.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(state_.active(), 0);
    stage_.key(Qt::Key_Tab);
    EXPECT_EQ(state_.active(), 1);

    // Space shows the other photo in place, for as long as it is held.
    const auto before = shownUrls();
    QTest::keyPress(&stage_.window(), Qt::Key_Space);
    EXPECT_EQ(shownUrls(), QStringList({before[0], before[0]}));
    EXPECT_TRUE(allReady(stage_.window(), 2));
    QTest::keyRelease(&stage_.window(), Qt::Key_Space);
    EXPECT_EQ(shownUrls(), before);

    stage_.key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_TRUE(stage_.has(QStringLiteral("Original photo: hue 250.png")));
    EXPECT_TRUE(stage_.has(QStringLiteral("Pair 2 of 3")));
    EXPECT_TRUE(test::QuickStage::until([&] { return focusedPane() == 0; }));
    stage_.key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(stage_.has(QStringLiteral("Pair 1 of 3")));

    stage_.key(Qt::Key_Escape);
    EXPECT_FALSE(state_.isOpened());
    EXPECT_TRUE(test::QuickStage::until([&] { return !stage_.has(QStringLiteral("Compare Originals")); }));
}

TEST_F(CompareSheetTest, IsUsedByClicksAlone) {
    open({0, 1, 2});
    stage_.click(QStringLiteral("Original photo: hue 250.png"));
    EXPECT_EQ(state_.active(), 2);
    stage_.click(QStringLiteral("Skip")); // the first photo's
    settle();
    EXPECT_EQ(state_.active(), 0);
    EXPECT_EQ(state_.decisions().at(0), model::Decision::Skip);
    stage_.click(QStringLiteral("100%"));
    EXPECT_TRUE(state_.view()->actualPixels());
    stage_.click(QStringLiteral("Linked zoom"));
    EXPECT_NEAR(state_.view()->zoom(), 4.5, 0.3);
    stage_.click(QStringLiteral("Fit"));
    EXPECT_FALSE(state_.view()->actualPixels());
    EXPECT_EQ(state_.view()->zoom(), 1);
    stage_.click(QStringLiteral("Done"));
    EXPECT_FALSE(state_.isOpened());
}

TEST_F(CompareSheetTest, KeepsThePointerFromWhatIsBehind) {
    open({0, 1});
    const auto* pane = panesIn(stage_.window().contentItem()).front();
    const auto middle = pane->mapToScene({pane->width() / 2, pane->height() / 2}).toPoint();
    const auto drag = [&](QPoint from) {
        QTest::mousePress(&stage_.window(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 5; ++step) {
            QTest::qWait(20); // a flick has a speed
            QTest::mouseMove(&stage_.window(), from - QPoint(0, 30 * step));
        }
        QTest::mouseRelease(&stage_.window(), Qt::LeftButton, {}, from - QPoint(0, 150));
        stage_.settle();
    };
    const auto reachedBehind = [&] { return stage_.window().property("reachedBehind").toInt(); };

    for (const auto* name : {"Original photo: hue 130.png", "Skip", "Unmarked", "Compare Originals"}) {
        stage_.click(QString::fromUtf8(name));
        EXPECT_EQ(reachedBehind(), 0) << name;
    }
    drag(middle);
    state_.view()->setZoom(8);
    drag(middle);
    EXPECT_LT(state_.view()->center().y(), 1);
    EXPECT_GT(state_.view()->center().y(), 0.5);
    QWheelEvent turned(middle, stage_.window().mapToGlobal(middle), {}, {0, -240}, Qt::NoButton, {},
                       Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&stage_.window(), &turned);
    drag({20, 600}); // beside the sheet
    EXPECT_EQ(reachedBehind(), 0);
}

TEST_F(CompareSheetTest, HoldsNoOriginalOnceItIsClosed) {
    open({0, 1});
    state_.close();
    EXPECT_TRUE(test::QuickStage::until([&] { return panesIn(stage_.window().contentItem()).empty(); }));
}

TEST_F(CompareSheetTest, PansAndZoomsByKeysAndNamesItsPanes) {
    open({0, 1});
    const auto* face = QAccessible::queryAccessibleInterface(stage_.window().activeFocusItem());
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->text(QAccessible::Name), QStringLiteral("Original photo: hue 10.png"));
    EXPECT_EQ(face->role(), QAccessible::Graphic);
    EXPECT_TRUE(stage_.has(QStringLiteral("Compare Originals")));
    for (int i = 0; i < 6; ++i) stage_.key(Qt::Key_Equal);
    EXPECT_GT(state_.view()->zoom(), 3);
    stage_.key(Qt::Key_Right, Qt::ShiftModifier);
    stage_.key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_GT(state_.view()->center().x(), 0.5);
    EXPECT_LT(state_.view()->center().y(), 0.5);
    EXPECT_EQ(state_.active(), 0);
    stage_.key(Qt::Key_1);
    EXPECT_TRUE(state_.view()->actualPixels());
    stage_.key(Qt::Key_0);
    EXPECT_FALSE(state_.view()->actualPixels());
}

TEST_F(CompareSheetTest, EndsTheFlipWhenTheWindowLosesTheKeyboard) {
    open({0, 1});
    QTest::keyPress(&stage_.window(), Qt::Key_Space);
    ASSERT_TRUE(state_.isFlipped());
    QWindow other;
    other.show();
    other.requestActivate(); // as Alt+Tab does: the release of Space never comes
    EXPECT_TRUE(test::QuickStage::until([&] { return !state_.isFlipped(); }));
}

class FullscreenWindowTest : public ViewerWindows {
protected:
    void show(std::size_t index) {
        controller_.show(session_.photos[index], session_.photos);
        ASSERT_TRUE(controller_.window());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(controller_.window()));
        ASSERT_TRUE(allReady(*controller_.window(), 1));
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(controller_.window(), key, modifiers);
    }
    QColor middle() {
        const auto image = controller_.window()->grabWindow();
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    FullscreenPhotoController controller_{*model_, *history_, stage_.engine()};
};

TEST_F(FullscreenWindowTest, ShowsAPhotoAtATimeAndStepsByKeysAndEdges) {
    show(0);
    auto& window = *controller_.window();
    EXPECT_EQ(window.title(), QStringLiteral("Photo"));
    EXPECT_EQ(window.visibility(), QWindow::FullScreen);
    EXPECT_NEAR(middle().hsvHue(), 10, 2);
    key(Qt::Key_Right);
    ASSERT_TRUE(allReady(window, 1));
    EXPECT_NEAR(middle().hsvHue(), 130, 2);
    QTest::mouseClick(&window, Qt::LeftButton, {}, {window.width() - 50, window.height() / 2});
    EXPECT_EQ(controller_.state()->index(), 2);
    QTest::mouseClick(&window, Qt::LeftButton, {}, {50, window.height() / 2});
    EXPECT_EQ(controller_.state()->index(), 1);
    key(Qt::Key_Equal);
    EXPECT_EQ(controller_.state()->view()->zoom(), 1.25);
    key(Qt::Key_K, Qt::ControlModifier);
    settle();
    EXPECT_EQ(controller_.state()->decision(), model::Decision::Keep);
}

TEST_F(FullscreenWindowTest, ClosesByEscapeByItsButtonByTheDesktopAndForAnother) {
    const auto closes = [&] { return test::QuickStage::until([&] { return !controller_.window(); }); };
    show(0);
    key(Qt::Key_Escape);
    EXPECT_TRUE(closes());
    show(0);
    QTest::mouseClick(controller_.window(), Qt::LeftButton, {}, {controller_.window()->width() - 40, 40});
    EXPECT_TRUE(closes());
    show(0);
    controller_.window()->close();
    EXPECT_TRUE(closes());

    show(0);
    const QPointer first = controller_.window();
    show(1);
    EXPECT_TRUE(first.isNull());
    controller_.show(photo("/elsewhere.jpg"), session_.photos);
    EXPECT_TRUE(closes());
}

} // namespace
} // namespace lumisort::review
