#include "ui/PhotoView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lumisort::ui {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(PhotoView, ClampsZoomAndCentre) {
    PhotoView view(8);
    struct Case {
        double set, zoom;
    };
    for (const auto& [set, zoom] :
         {Case{2.5, 2.5}, Case{99, 8}, Case{nan, 8}, Case{HUGE_VAL, 8}, Case{0.2, 1}}) {
        view.setZoom(set);
        EXPECT_EQ(view.zoom(), zoom) << set;
    }
    view.setZoom(3);
    view.setCenter({-1, 0.75});
    EXPECT_EQ(view.center(), QPointF(0, 0.75));
    view.setCenter({nan, 0});
    EXPECT_EQ(view.center(), QPointF(0, 0.75));
}

TEST(PhotoView, CentresAPhotoThatFitsAgainButNotActualPixels) {
    PhotoView view;
    view.setZoom(3);
    view.setCenter({0.2, 1});
    view.setZoom(2);
    EXPECT_EQ(view.center(), QPointF(0.2, 1));
    view.setZoom(0.5);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));

    view.setActualPixels(true);
    view.setCenter({0.2, 1});
    view.setZoom(1);
    EXPECT_EQ(view.center(), QPointF(0.2, 1));
    view.setZoom(3);
    view.setActualPixels(false);
    EXPECT_EQ(view.zoom(), 1);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
}

TEST(PhotoView, ZoomsInSteps) {
    PhotoView view;
    for (int i = 0; i < 4; ++i) view.zoomBySteps(1);
    EXPECT_DOUBLE_EQ(view.zoom(), 2.44140625);
    for (int i = 0; i < 5; ++i) view.zoomBySteps(-1);
    EXPECT_EQ(view.zoom(), 1);
}

} // namespace
} // namespace lumisort::ui
