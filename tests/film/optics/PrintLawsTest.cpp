#include "film/optics/FilmConstants.h"
#include "film/optics/LiteralModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace lumisort::film {
namespace {

/// A colour exposed, developed, printed and seen under daylight, without any table between.
LinearRgb printed(const FilmSpectralModel& model, const LinearRgb& scene, double printExposureStops = 0) {
    const Exposure exposure = model.exposure(model.reconstructor().reconstruct(scene));
    const Transmission light = model.seenThroughNegative(model.layerDensity(exposure));
    const Vector3 calibration = model.printCalibration(printExposureStops);
    Vector3 densities;
    for (std::size_t c = 0; c < 3; ++c) {
        densities[c] = model.paper.curve.density(std::log10(light[c]) + calibration[c]);
    }
    return literal::seenThrough(model.paperDyes, {}, model.reflectionWeights, densities);
}

double spread(const LinearRgb& colour) {
    return largest(colour) - std::ranges::min(colour.v);
}

template <class Check>
void forEachPair(const Check& check) {
    for (const StockProfile& stock : stockProfiles()) {
        for (const PaperProfile& paper : paperProfiles()) {
            SCOPED_TRACE(std::string(storedName(stock.stock)) + "/" + std::string(storedName(paper.paper)));
            check(FilmSpectralModel(stock, paper));
        }
    }
}

TEST(PrintLaws, MidGreyPrintsAs18Percent) {
    forEachPair([](const FilmSpectralModel& model) {
        const LinearRgb grey = printed(model, LinearRgb::filled(midGreyExposure));
        for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(grey[c], 0.18, 1e-14);
    });
}

// Layers with one common curve and dyes that share the light absorb every wavelength alike, so that greys
// keep no trace of colour. Measured layers have three curves: their cast is a fact of the stock, 0.048 at
// five stops above mid-grey, where it is largest.
TEST(PrintLaws, GreysStayNeutralThroughAnIdealStock) {
    forEachPair([](const FilmSpectralModel& model) {
        for (double stops = -20; stops <= 10; stops += 0.5) {
            const LinearRgb grey = printed(model, LinearRgb::filled(midGreyExposure * std::exp2(stops)));
            EXPECT_LE(spread(grey), model.stock.isMeasured() ? 0.05 : 1e-14) << stops;
        }
    });
}

TEST(PrintLaws, ColoursPrintNeutralFromAPanchromaticStock) {
    for (const StockProfile& stock : stockProfiles()) {
        if (!stock.isPanchromatic) continue;
        const FilmSpectralModel model(stock, paperProfile(FilmPaper::glossy));
        for (const LinearRgb& colour : {LinearRgb{1, 0, 0}, {0.1, 0.7, 0.2}, {0.02, 0.01, 0.9}}) {
            EXPECT_LE(spread(printed(model, colour)), 1e-14);
        }
    }
}

// A negative: light in the scene lightens the print, light in the enlarger darkens it.
TEST(PrintLaws, LightInTheSceneLightensAndLightInTheEnlargerDarkens) {
    forEachPair([](const FilmSpectralModel& model) {
        LinearRgb before = printed(model, LinearRgb::filled(midGreyExposure / 16));
        for (double stops = -3.5; stops <= 3; stops += 0.5) {
            const LinearRgb now = printed(model, LinearRgb::filled(midGreyExposure * std::exp2(stops)));
            for (std::size_t c = 0; c < 3; ++c) EXPECT_GT(now[c], before[c]) << stops;
            before = now;
        }
        before = printed(model, LinearRgb::filled(midGreyExposure), -2);
        for (double stops = -1.5; stops <= 2; stops += 0.5) {
            const LinearRgb now = printed(model, LinearRgb::filled(midGreyExposure), stops);
            for (std::size_t c = 0; c < 3; ++c) EXPECT_LT(now[c], before[c]) << stops;
            before = now;
        }
    });
}

// Spaces do not mix: what does not compile cannot be confused.
template <class A, class B>
concept Adds = requires(A a, B b) { a + b; };
template <class A, class B>
concept Subtracts = requires(A a, B b) { a - b; };
static_assert(Adds<LinearRgb, LinearRgb> && Adds<Vector3, Vector3>);
static_assert(!Adds<LinearRgb, Exposure> && !Adds<LinearRgb, Xyz> && !Adds<Density, Transmission>);
static_assert(!Subtracts<Exposure, Density> && !Adds<LinearRgb, Vector3>);
static_assert(!std::is_convertible_v<LinearRgb, Exposure> && !std::is_convertible_v<Vector3, LinearRgb>);
static_assert(!std::is_invocable_v<decltype(&FilmSpectralModel::layerDensity), FilmSpectralModel, LinearRgb>);

} // namespace
} // namespace lumisort::film
