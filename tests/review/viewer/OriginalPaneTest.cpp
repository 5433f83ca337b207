#include "review/viewer/OriginalPane.h"

#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"

#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

void qml_register_types_Lumisort_Viewer();

namespace lumisort::review {
namespace {

/// Every pixel has a colour of its own.
QImage picture(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, 16 * (x / 256 % 16) + y / 256 % 16));
    return image;
}

class OriginalPaneTest : public testing::Test {
protected:
    OriginalPaneTest() { qml_register_types_Lumisort_Viewer(); }

    QString write(const QImage& image, const QString& name) {
        const auto url = folder_.url().child(name.toStdString());
        EXPECT_TRUE(image.save(QString::fromStdString(url.path())));
        return QString::fromStdString(url.string());
    }

    void show(int width, int height, const QVariantMap& properties) {
        stage_.show(R"(import QtQuick
                       import Lumisort.Ui
                       import Lumisort.Viewer
                       Window {
                           property alias url: view.url
                           property alias zoom: linked.zoom
                           property alias center: linked.center
                           property alias actualPixels: linked.actualPixels
                           property alias leads: view.leads
                           color: "black"
                           OriginalView {
                               id: view
                               name: "photo"
                               x: 20; y: 10 // neither position nor clip may get lost
                               width: parent.width - 50; height: parent.height - 40
                               text: "white"
                               view: PhotoView { id: linked }
                           }
                       })",
                    {{QStringLiteral("width"), width + 50}, {QStringLiteral("height"), height + 40}});
        for (const auto& [name, value] : properties.asKeyValueRange()) set(name, value);
    }

    void set(const QString& name, const QVariant& value) {
        ASSERT_TRUE(stage_.window().setProperty(qPrintable(name), value));
    }
    QVariant get(const char* name) { return stage_.window().property(name); }

    OriginalPane& pane() { return *stage_.window().findChild<OriginalPane*>(); }
    bool becomes(OriginalPane::Status status) {
        return test::QuickStage::until([&] { return pane().status() == status; });
    }
    /// What the pane shows. Beside it the window stays black.
    QImage grab() {
        const QImage all = stage_.window().grabWindow().convertToFormat(QImage::Format_RGB32);
        const QRect inside = all.rect().adjusted(20, 10, -30, -30);
        for (int y = 0; y < all.height(); ++y)
            for (int x = 0; x < all.width(); ++x)
                if (!inside.contains(x, y) && qRed(all.pixel(x, y)) + qGreen(all.pixel(x, y)) != 0) return {};
        return all.copy(inside);
    }

    test::TemporaryFolder folder_;
    test::QuickStage stage_;
};

TEST_F(OriginalPaneTest, ShowsActualPixelsExactlyAndPansThem) {
    const QImage original = picture(1600, 1300); // four tiles
    show(300, 200, {{"url", write(original, "a.png")}, {"actualPixels", true}});
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    EXPECT_EQ(grab(), original.copy(650, 550, 300, 200));
    // Across the seams between tiles, at an odd place and in the corner.
    for (const QPoint corner : {QPoint(900, 950), QPoint(871, 933), QPoint(1300, 1100)}) {
        set("center", QPointF(corner.x() / 1300.0, corner.y() / 1100.0));
        EXPECT_EQ(grab(), original.copy(QRect(corner, QSize(300, 200))));
    }
    set("zoom", 4);
    set("center", QPointF(0, 0));
    EXPECT_EQ(grab(), original.copy(0, 0, 75, 50).scaled(300, 200)); // each pixel a square

    const QImage other = picture(700, 500).mirrored();
    set("url", write(other, "b.png"));
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    set("zoom", 1);
    EXPECT_EQ(grab(), other.copy(0, 0, 300, 200));
}

TEST_F(OriginalPaneTest, FitsSmoothlyAlsoAcrossTiles) {
    QImage ramp(2000, 1000, QImage::Format_RGB32);
    for (int x = 0; x < 2000; ++x)
        for (int y = 0; y < 1000; ++y) ramp.setPixel(x, y, qRgb(std::clamp((x - 990) * 4, 0, 255), 0, 0));
    show(400, 300, {{"url", write(ramp, "ramp.png")}});
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    QImage shown = grab();
    EXPECT_EQ(qRed(shown.pixel(100, 150)), 0);
    EXPECT_EQ(qRed(shown.pixel(300, 150)), 255);
    EXPECT_EQ(shown.pixel(300, 20), qRgb(0, 0, 0)); // above the picture
    // Far in, level 0: 1.6 display pixels for each of the picture's. A ramp stays a ramp over the seam.
    set("zoom", 8);
    set("center", QPointF((1020 * 1.6 - 200) / 2800, 0.5));
    shown = grab();
    int last = qRed(shown.pixel(150, 150));
    for (int x = 151; x < 250; ++x) {
        const int red = qRed(shown.pixel(x, 150));
        EXPECT_GE(red, last);
        EXPECT_LE(red - last, 4) << x; // 2.5 on average
        last = red;
    }
}

TEST_F(OriginalPaneTest, ShowsPanoramasThatNoTextureHolds) {
    QImage wide(60'000, 40, QImage::Format_RGB32);
    wide.fill(qRgb(0, 200, 0));
    for (int y = 0; y < 40; ++y)
        for (int x = 59'000; x < 60'000; ++x) wide.setPixel(x, y, qRgb(0, 0, 200));
    show(600, 100, {{"url", write(wide, "wide.png")}, {"actualPixels", true}});
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    EXPECT_EQ(grab().pixel(300, 50), qRgb(0, 200, 0));
    set("center", QPointF(1, 0.5));
    EXPECT_EQ(grab().pixel(300, 50), qRgb(0, 0, 200));
    set("actualPixels", false);
    set("zoom", 12);
    set("center", QPointF(1, 0.5));
    EXPECT_EQ(grab().pixel(590, 50), qRgb(0, 0, 200));
    EXPECT_EQ(grab().pixel(10, 50), qRgb(0, 200, 0));
}

TEST_F(OriginalPaneTest, SaysWhyThereIsNoPictureAndFollowsItsUrl) {
    show(400, 300, {{"url", QString::fromStdString(folder_.url().child("gone.png").string())}});
    EXPECT_TRUE(stage_.has("Original photo: photo"));
    EXPECT_TRUE(stage_.has("Loading original…"));
    ASSERT_TRUE(becomes(OriginalPane::Failed));
    EXPECT_TRUE(stage_.has("Source unavailable. Reconnect the drive or check the file location."));

    const auto first = write(picture(40, 30), "first.png"), second = write(picture(30, 40), "second.png");
    set("url", first);
    set("url", second); // the first answer comes too late
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    EXPECT_EQ(pane().place(), QRectF(87.5, 0, 225, 300));
    set("url", first);
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    set("url", second); // known: there at once
    EXPECT_EQ(pane().status(), OriginalPane::Ready);
    EXPECT_EQ(pane().place(), QRectF(87.5, 0, 225, 300));
    // It changes while it is not looked at: first as it was, then as it is.
    set("url", first);
    write(picture(50, 50), "second.png");
    set("url", second);
    EXPECT_TRUE(test::QuickStage::until([&] { return pane().place() == QRectF(50, 0, 300, 300); }));
    set("url", "");
    EXPECT_EQ(pane().status(), OriginalPane::Empty);
}

TEST_F(OriginalPaneTest, DragsPanAndTheWheelZoomsWhereItIsTurned) {
    show(300, 200, {{"url", write(picture(600, 400), "a.png")}, {"actualPixels", true}});
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    auto& window = stage_.window();
    QTest::mousePress(&window, Qt::LeftButton, {}, {170, 110});
    QTest::mouseMove(&window, {140, 110});
    QTest::mouseMove(&window, {110, 90});
    const auto center = get("center").toPointF();
    EXPECT_GT(center.x(), 0.55);
    EXPECT_LE(center.x(), 0.7);
    EXPECT_GT(center.y(), 0.5);
    QTest::mouseMove(&window, {319, 209});
    QTest::mouseMove(&window, {110, 90}); // there and back
    EXPECT_EQ(get("center").toPointF(), center);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, {110, 90});

    QWheelEvent notch({90, 70}, {90, 70}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&window, &notch);
    EXPECT_DOUBLE_EQ(get("zoom").toDouble(), std::exp(0.12));
    // What was under the pointer, 70 × 60 in the pane, is there still.
    const QRectF before(-300 * center.x(), -200 * center.y(), 600, 400), after = pane().place();
    EXPECT_NEAR((70 - after.x()) / after.width(), (70 - before.x()) / before.width(), 0.002);
    EXPECT_NEAR((60 - after.y()) / after.height(), (60 - before.y()) / before.height(), 0.002);
}

TEST_F(OriginalPaneTest, StepsPanThePaneThatLeads) {
    show(300, 200, {{"url", write(picture(600, 400), "a.png")}, {"actualPixels", true}});
    ASSERT_TRUE(becomes(OriginalPane::Ready));
    auto& view = *pane().view();
    view.panBySteps(1, -2);
    EXPECT_NEAR(view.center().x(), 0.6, 1e-9); // 30 of 300 pixels that do not fit
    EXPECT_NEAR(view.center().y(), 0.3, 1e-9);
    set("leads", false);
    view.panBySteps(1, 0);
    EXPECT_NEAR(view.center().x(), 0.6, 1e-9);
    set("leads", true);
    view.panBySteps(99, 99);
    EXPECT_EQ(view.center(), QPointF(1, 1));
}

} // namespace
} // namespace lumisort::review
