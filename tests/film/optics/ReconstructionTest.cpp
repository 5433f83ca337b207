#include "film/optics/Colorimetry.h"
#include "film/optics/LiteralModel.h"
#include "film/optics/SpectralFit.h"
#include "film/optics/SpectralTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace lumisort::film {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double ceiling = std::numeric_limits<double>::max() / 64;

const FilmSpectralModel model(FilmStock::portra400, FilmPaper::glossy);
const FilmSpectralReconstructor reconstructor = model.reconstructor();

std::vector<LinearRgb> randomColours(std::size_t count) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> channel(0, 1);
    std::vector<LinearRgb> colours;
    while (colours.size() < count) {
        // Every other one saturated: one channel near or at nothing.
        LinearRgb colour{channel(random), channel(random), channel(random)};
        if (colours.size() % 2) colour[random() % 3] *= colours.size() % 4 == 1 ? 0 : 0.01;
        colours.push_back(colour);
    }
    return colours;
}

int interiorExtrema(const std::vector<double>& values) {
    int count = 0;
    double direction = 0;
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        const double step = values[i + 1] - values[i];
        if (step * direction < 0) ++count;
        if (step != 0) direction = step;
    }
    return count;
}

/// What every result promises: a spectrum within 0 and 1 that shows the colour within the stated error.
void expectSound(const FilmReconstructedSpectrum& spectrum, const LinearRgb& colour) {
    const LinearRgb shown = literal::displayRGB(model, spectrum.reflectance) * spectrum.scale;
    const double error = largestMagnitude(shown - colour);
    EXPECT_LE(error, (spectrum.relativeRGBError + 1e-14) * largest(colour));
    for (const double value : spectrum.reflectance) {
        EXPECT_GE(value, 0);
        EXPECT_LE(value, 1);
    }
}

// The steps, damping and stopping rule are those of the literal loop; what remains is the rounding of
// sqrt(1 + z²) against hypot(1, z) and of the order of products.
TEST(Reconstruction, AgreesWithTheLiteralLoopUpToRounding) {
    for (const LinearRgb& colour : randomColours(400)) {
        const FilmReconstructedSpectrum spectrum = reconstructor.reconstruct(colour);
        const literal::Fit expected =
            literal::fit(reconstructor.observerRGBWeights(), colour / largest(colour) / 2, 64);
        EXPECT_EQ(spectrum.iterations, expected.iterations);
        EXPECT_FALSE(spectrum.usedFallback);
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            EXPECT_NEAR(spectrum.reflectance[i], expected.reflectance[i], 1e-12);
        }
        expectSound(spectrum, colour);
        EXPECT_LE(spectrum.relativeRGBError, 2.000001e-8);
        EXPECT_LE(interiorExtrema(spectrum.reflectance), 1);
    }
}

// A search that no film's weights provoke: functions that are too flat, too steep, singular, curved away or
// no numbers at all.
TEST(SpectralFit, TakesTheLiteralPathOverRoughGround) {
    const auto diagonal = [](const auto& valueAt, const auto& slopeAt) {
        return [=](const Vector3& c, literal::Columns& columns) {
            columns = {};
            for (std::size_t k = 0; k < 3; ++k) columns[k][k] = slopeAt(c[k]);
            return LinearRgb{valueAt(c[0]), valueAt(c[1]), valueAt(c[2])};
        };
    };
    const LinearRgb target{0.5, 0.3, 0.1};
    bool rejected = false, singular = false, shortened = false;
    const auto compare = [&](const auto& evaluate) {
        const literal::Search expected = literal::search(evaluate, target, literal::flatStart(target), 64);
        SpectralFit fit(target, 64);
        FitEvaluation evaluation;
        do {
            literal::Columns columns;
            evaluation.rgb = evaluate(fit.candidate(), columns);
            for (std::size_t k = 0; k < 3; ++k) evaluation.derivatives[k] = {columns[k]};
        } while (fit.advance(evaluation));
        EXPECT_EQ(fit.iterations(), expected.iterations);
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(fit.coefficients()[k], expected.c[k], 1e-9 * std::max(1.0, std::abs(expected.c[k])));
        }
        rejected |= expected.rejected;
        singular |= expected.singular;
        shortened |= expected.shortened;
    };
    compare(diagonal([](double x) { return 1e-3 * x; }, [](double) { return 1e-3; }));
    compare(diagonal([](double x) { return std::exp(5 * x) / 50; },
                     [](double x) { return std::exp(5 * x) / 10; }));
    compare(diagonal([](double x) { return std::sin(9 * x); }, [](double x) { return 9 * std::cos(9 * x); }));
    compare(diagonal([](double) { return 0.2; }, [](double) { return 0.0; }));
    compare(diagonal([](double x) { return std::abs(x) > 1 ? nan : 0.2 * x; }, [](double) { return 0.2; }));
    compare(diagonal([](double x) { return std::sqrt(x); }, [](double x) { return 0.5 / std::sqrt(x); }));
    EXPECT_TRUE(rejected && singular && shortened);
}

TEST(Reconstruction, OfManyColoursAtOnceEqualsThatOfEach) {
    std::vector<LinearRgb> colours = randomColours(101);
    colours[7] = {0, 0, 0};
    colours[8] = {1, 1, 1};
    colours[9] = {nan, -1, infinity};
    colours[100] = {1, 0, 0};
    for (const std::size_t count : {0UL, 1UL, 8UL, 10UL, 101UL}) {
        std::vector<int> seen(count);
        const auto compare = [&](std::size_t i, const FilmReconstructedSpectrum& spectrum) {
            ++seen[i];
            EXPECT_EQ(spectrum, reconstructor.reconstruct(colours[i]));
        };
        reconstructor.reconstruct(std::span(colours).first(count), compare);
        EXPECT_EQ(seen, std::vector<int>(count, 1));
    }
}

TEST(Reconstruction, SurvivesAnyInput) {
    const struct {
        LinearRgb input;
        LinearRgb seen; ///< as which it is taken
        bool clamped;
    } cases[] = {
        {{0, 0, 0}, {0, 0, 0}, false},
        {{-0.0, 0, 0}, {0, 0, 0}, false},
        {{-1, -0.5, -1e300}, {0, 0, 0}, true},
        {{nan, nan, nan}, {0, 0, 0}, true},
        {{infinity, -infinity, 0}, {0, 0, 0}, true},
        {{0.5, nan, 0.25}, {0.5, 0, 0.25}, true},
        {{0.5, 0.25, -1e-300}, {0.5, 0.25, 0}, true},
        {{1e-300, 2e-300, 0}, {1e-300, 2e-300, 0}, false},
        {{5e-324, 0, 0}, {5e-324, 0, 0}, false},
        {{ceiling, 1, 0}, {ceiling, 1, 0}, false},
        {{std::numeric_limits<double>::max(), 0, 1e306}, {ceiling, 0, 1e306}, true},
    };
    for (const auto& [input, seen, clamped] : cases) {
        SCOPED_TRACE(testing::Message() << input[0] << " " << input[1] << " " << input[2]);
        const FilmReconstructedSpectrum spectrum = reconstructor.reconstruct(input);
        EXPECT_EQ(spectrum.inputWasClamped, clamped);
        ASSERT_EQ(spectrum.reflectance.size(), spectralSampleCount);
        EXPECT_LE(spectrum.iterations, 64);
        if (largest(seen) > 0) {
            EXPECT_EQ(spectrum.scale, 2 * largest(seen));
            expectSound(spectrum, seen);
        } else {
            EXPECT_EQ(spectrum.reflectance, std::vector<double>(spectralSampleCount, 0.0));
            EXPECT_EQ(spectrum.scale, 0);
            EXPECT_EQ(spectrum.relativeRGBError, 0);
            EXPECT_EQ(spectrum.iterations, 0);
            EXPECT_FALSE(spectrum.usedFallback);
        }
    }
}

TEST(Reconstruction, OfGreyIsFlat) {
    for (const double grey : {1e-9, 0.18, 1.0, 40.0}) {
        const FilmReconstructedSpectrum spectrum = reconstructor.reconstruct(LinearRgb::filled(grey));
        EXPECT_EQ(spectrum.reflectance, std::vector<double>(spectralSampleCount, 0.5));
        EXPECT_EQ(spectrum.scale, 2 * grey);
        EXPECT_EQ(spectrum.iterations, 0);
        EXPECT_LT(spectrum.relativeRGBError, 1e-14);
    }
}

TEST(Reconstruction, FallsBackWhereTheFitMissesTheColour) {
    const FilmSpectralReconstructor impatient(reconstructor.observerRGBWeights(), reconstructor.wavelengths(),
                                              reconstructor.fallbackBasis(), -3);
    EXPECT_EQ(impatient.maximumIterations(), 0);
    for (const LinearRgb& colour : {LinearRgb{1, 0, 0}, LinearRgb{0.2, 0.9, 0.3}, LinearRgb{0, 0, 7}}) {
        const FilmReconstructedSpectrum spectrum = impatient.reconstruct(colour);
        EXPECT_TRUE(spectrum.usedFallback);
        EXPECT_EQ(spectrum.iterations, 0);
        EXPECT_EQ(std::ranges::max(spectrum.reflectance), 1);
        EXPECT_LT(spectrum.relativeRGBError, 0.2);
        expectSound(spectrum, colour);
    }
    // Without a usable basis the fit stands, here the flat start.
    const FilmSpectralReconstructor lost(reconstructor.observerRGBWeights(), reconstructor.wavelengths(),
                                         std::vector<Vector3>(spectralSampleCount, {-1, nan, -1}), 0);
    const FilmReconstructedSpectrum spectrum = lost.reconstruct({1, 0, 0});
    EXPECT_TRUE(spectrum.usedFallback);
    EXPECT_EQ(spectrum.scale, 2);
    EXPECT_DOUBLE_EQ(spectrum.reflectance[40], 1.0 / 6);
}

TEST(Reconstruction, RefusesListsThatDoNotBelongTogether) {
    const std::vector<LinearRgb> weights(3);
    const std::vector<Vector3> basis(3);
    EXPECT_DEATH(FilmSpectralReconstructor({weights[0], weights[1]}, {400, 500}, {basis[0], basis[1]}, 64),
                 "three");
    EXPECT_DEATH(FilmSpectralReconstructor(weights, {400, 500, 600, 700}, basis, 64), "lengths");
    EXPECT_DEATH(FilmSpectralReconstructor(weights, {400, nan, 600}, basis, 64), "order");
    EXPECT_DEATH(FilmSpectralReconstructor(weights, {600, 500, 400}, basis, 64), "order");
}

// The patches of a measured chart: their own spectra show colours, and the spectra found for these colours
// show them again. Beyond the measured 730 nm a patch holds its last value, where the observer sees next
// to nothing.
TEST(Reconstruction, FindsTheColoursOfMeasuredPatchesAgain) {
    LUMISORT_NEEDS_CORPUS();
    const auto rows = test::spectralTable("colorchecker24_reflectance_babelcolor_average.csv");
    const auto published = test::spectralTable("colorchecker24_babelcolor_average_xyY.csv");
    ASSERT_EQ(rows.size(), 36U);
    ASSERT_EQ(published.size(), 24U);
    for (std::size_t patch = 0; patch < 24; ++patch) {
        std::vector<MaterialPoint> points;
        for (const auto& row : rows) points.push_back({row[0], row[patch + 1]});
        const SampledSpectrum measured(points, SampledSpectrum::Outside::holdEndpoint);
        std::vector<double> reflectance;
        for (const double wavelength : reconstructor.wavelengths()) {
            reflectance.push_back(measured.value(wavelength));
        }
        const LinearRgb colour = literal::displayRGB(model, reflectance);

        // The chart's own published colour, under D50, is the same but for the observer's fit and a black
        // body in place of daylight; the strongest red differs most, by 0.037.
        const double x = published[patch][1], y = published[patch][2], luminance = published[patch][3];
        const Xyz xyz{x / y * luminance, luminance, (1 - x - y) / y * luminance};
        const LinearRgb chart = linearRgbFromXyz * adaptToD65(xyz, {0.9642, 1, 0.8252});
        EXPECT_LT(largestMagnitude(colour - chart), 0.038) << patch;

        LinearRgb inGamut;
        for (std::size_t c = 0; c < 3; ++c) inGamut[c] = std::max(colour[c], 0.0);
        const FilmReconstructedSpectrum found = reconstructor.reconstruct(colour);
        expectSound(found, inGamut);
        EXPECT_EQ(found.inputWasClamped, inGamut != colour);
        EXPECT_FALSE(found.usedFallback);
        EXPECT_LE(found.relativeRGBError, 2.000001e-8);
        EXPECT_LE(interiorExtrema(found.reflectance), 3);
    }
}

} // namespace
} // namespace lumisort::film
