#include "ui/PaneGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace lumisort::ui {
namespace {

void expectNear(QPointF a, QPointF b) {
    EXPECT_NEAR(a.x(), b.x(), 1e-9);
    EXPECT_NEAR(a.y(), b.y(), 1e-9);
}

TEST(PaneGeometry, PlacesThePicture) {
    struct Case {
        const char* what;
        PaneView view;
        QRectF place;
    };
    const QSizeF pane(450, 390);
    for (const auto& [what, view, place] : {
             Case{"wide fits", {pane, {6000, 4000}}, {0, 45, 450, 300}},
             Case{"tall fits", {pane, {1000, 2000}}, {127.5, 0, 195, 390}},
             Case{"small grows", {pane, {45, 30}}, {0, 45, 450, 300}},
             Case{"what fits stays centred", {pane, {1000, 2000}, 1, false, {0, 1}}, {127.5, 0, 195, 390}},
             Case{"zoomed to the top left", {pane, {6000, 4000}, 2, false, {0, 0}}, {0, 0, 900, 600}},
             Case{"zoomed to the bottom right",
                  {pane, {6000, 4000}, 2, false, {1, 1}},
                  {-450, -210, 900, 600}},
             Case{"one side overflows", {pane, {6000, 4000}, 1.2, false, {1, 1}}, {-90, 15, 540, 360}},
             Case{"actual pixels", {pane, {4000, 3000}, 1, true, {0, 0}, 1}, {0, 0, 4000, 3000}},
             Case{
                 "actual pixels at two to one", {pane, {4000, 3000}, 1, true, {0, 0}, 2}, {0, 0, 2000, 1500}},
             Case{
                 "a ratio below one is none", {pane, {4000, 3000}, 1, true, {0, 0}, 0.5}, {0, 0, 4000, 3000}},
             Case{"actual pixels on the display's grid",
                  {{99, 99}, {10, 10}, 1, true, {0.5, 0.5}, 1},
                  {45, 45, 10, 10}},
             Case{"and that of the window",
                  {{99, 99}, {10, 10}, 1, true, {0.5, 0.5}, 1, {0.25, 0}},
                  {44.75, 45, 10, 10}},
         }) {
        SCOPED_TRACE(what);
        expectNear(placeOf(view).topLeft(), place.topLeft());
        expectNear(placeOf(view).bottomRight(), place.bottomRight());
    }
}

TEST(PaneGeometry, DragsWithinTheOverflow) {
    const PaneView twice{{450, 300}, {6000, 4000}, 2};                     // overflows by 450 × 300
    const PaneView wide{{400, 400}, {1000, 500}, 1.5, false, {0.5, 0.25}}; // by 200 and not at all
    struct Case {
        const char* what;
        PaneView view;
        QPointF start, translation, center;
    };
    for (const auto& [what, view, start, translation, center] : {
             Case{"left", twice, {0.5, 0.5}, {-45, 0}, {0.6, 0.5}},
             Case{"right by the overflow", twice, {0.5, 0.5}, {450, 0}, {0, 0.5}},
             Case{"down beyond", twice, {0.5, 0.5}, {0, 900}, {0.5, 0}},
             Case{"a side that fits", wide, {0.5, 0.75}, {-20, 50}, {0.6, 0.25}},
             Case{"what fits", {{450, 300}, {30, 20}, 1, false, {0.2, 0.3}}, {0.5, 0.5}, {9, 9}, {0.2, 0.3}},
         }) {
        SCOPED_TRACE(what);
        expectNear(draggedCenter(view, start, translation), center);
    }
}

TEST(PaneGeometry, ZoomsAboutThePointer) {
    for (const QPointF anchor : {QPointF(225, 150), QPointF(300, 110)}) {
        PaneView view{{450, 300}, {6000, 4000}, 2, false, {0.4, 0.6}};
        const auto under = [&] { return (anchor - placeOf(view).topLeft()) / scaleOf(view); };
        const QPointF before = under();
        view.center = zoomedCenter(view, 5, anchor);
        view.zoom = 5;
        EXPECT_NEAR(under().x(), before.x(), 1e-6);
        EXPECT_NEAR(under().y(), before.y(), 1e-6);
    }
    // Out again to where all of it fits: centred.
    expectNear(zoomedCenter({{450, 300}, {6000, 4000}, 2, false, {0, 1}}, 1, {10, 10}), {0.5, 0.5});
}

TEST(PaneGeometry, TurnsTheWheelIntoAFactor) {
    EXPECT_DOUBLE_EQ(wheelFactor(0, 120), std::exp(0.12));
    EXPECT_DOUBLE_EQ(wheelFactor(0, -240), std::exp(-0.24));
    EXPECT_DOUBLE_EQ(wheelFactor(40, 120), std::exp(0.2));
    EXPECT_DOUBLE_EQ(wheelFactor(0, 0), 1);
}

/// Drawn one after the other, tiles cover what is seen of the picture, and each pixel of the level lands
/// where the picture has it.
TEST(PaneGeometry, TilesCoverWhatIsSeenAndNoMore) {
    struct Case {
        const char* what;
        PaneView view;
        int level;
        QSize levelSize;
        int mostTiles;
    };
    for (const auto& [what, view, level, levelSize, mostTiles] : {
             Case{"fits in one", {{450, 390}, {6000, 4000}}, 3, {750, 500}, 1},
             Case{"odd sizes, halved", {{1900, 1000}, {5001, 3333}}, 1, {2501, 1667}, 6},
             Case{"panorama at 100 %",
                  {{800, 600}, {60'000, 1300}, 1, true, {0.7, 0.3}},
                  0,
                  {60'000, 1300},
                  4},
             Case{"panorama, whole", {{800, 600}, {60'000, 1300}}, 6, {938, 21}, 1},
             Case{"far in", {{450, 390}, {6000, 4000}, 8, false, {1, 1}}, 0, {6000, 4000}, 4},
         }) {
        SCOPED_TRACE(what);
        const auto tiles = visibleTiles(view, level, levelSize);
        const QRectF seen = placeOf(view) & QRectF(QPointF(), view.pane);
        EXPECT_LE(tiles.size(), static_cast<std::size_t>(mostTiles));
        double covered = 0;
        for (const auto& tile : tiles) {
            EXPECT_LE(tile.picture.width(), tileSide);
            EXPECT_LE(tile.picture.height(), tileSide);
            EXPECT_TRUE(QRect({}, levelSize).contains(tile.picture));
            EXPECT_TRUE(QRectF(QPointF(), QSizeF(tile.picture.size())).contains(tile.source));
            const QPointF full = (tile.source.topLeft() + tile.picture.topLeft()) * std::ldexp(1.0, level);
            expectNear(tile.target.topLeft(), placeOf(view).topLeft() + full * scaleOf(view));
            const QRectF drawn = tile.target & seen;
            covered += drawn.width() * drawn.height();
        }
        // Seams are drawn twice, by a thirty-second of a pixel.
        EXPECT_GE(covered, seen.width() * seen.height() - 1e-3);
        EXPECT_LE(covered, seen.width() * seen.height() * 1.01);
    }
    EXPECT_TRUE(visibleTiles({{0, 0}, {60, 40}}, 0, {60, 40}).empty());
}

} // namespace
} // namespace lumisort::ui
