#include "film/optics/FilmSpectralModel.h"

#include "film/optics/Colorimetry.h"
#include "film/optics/FilmConstants.h"
#include "film/optics/ReferenceValues.h"
#include "film/optics/SpectralTable.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lumisort::film {
namespace {

template <class Samples>
Vector3 checksum(const Samples& samples) {
    Vector3 result;
    double weight = 0;
    for (const auto& sample : samples) result += Vector3{sample.v} * ++weight;
    return result;
}

template <class Space>
void expectNear(const Triple<Space>& actual, const Vector3& expected, double relative, const char* what) {
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(actual[c], expected[c], relative * std::max(1e-3, std::abs(expected[c])))
            << what << " " << c;
    }
}

TEST(FilmSpectralModel, HoldsTheReferenceNumbersForEveryStockAndPaper) {
    for (const reference::Stock& expected : reference::stocks) {
        for (const FilmPaper paper : allFilmPapers) {
            SCOPED_TRACE(std::string(storedName(expected.stock)) + "/" + std::string(storedName(paper)));
            const FilmSpectralModel model(expected.stock, paper);
            constexpr double rounding = 1e-13;
            expectNear(checksum(model.dyes), expected.dyes, rounding, "dyes");
            expectNear(checksum(model.filmSensitivityWeights), expected.filmWeights, rounding,
                       "film weights");
            expectNear(checksum(model.paperDyes), reference::paperDyes, rounding, "paper dyes");
            expectNear(checksum(model.paperWeights), reference::paperWeights, rounding, "paper weights");
            expectNear(checksum(model.reflectionWeights), reference::reflectionWeights, rounding, "display");
            expectNear(checksum(model.reconstructionBasis), reference::reconstructionBasis, rounding,
                       "basis");
            for (std::size_t c = 0; c < 3; ++c) {
                expectNear(model.exposureRows.matrix[c], expected.exposureRows[c], 3e-13, "exposure row");
            }
            expectNear(model.neutralTransmission, expected.neutralTransmission, rounding, "neutral");
            expectNear(model.layerRanges(), expected.layerRanges, rounding, "layer ranges");
            expectNear(model.reflectionCubeMinimums(), reference::reflectionCubeMinimums, rounding,
                       "minimums");
            expectNear(model.reflectionCubeRanges(), reference::reflectionCubeRanges, rounding, "ranges");
            expectNear(model.layerDensity({0.01, 0.01, 0.01}), expected.densityAt1Percent, rounding, "1 %");
            expectNear(model.layerDensity({0.36, 0.36, 0.36}), expected.densityAt36Percent, rounding, "36 %");
            expectNear(model.layerDensity({2, 2, 2}), expected.densityAt200Percent, rounding, "200 %");
        }
    }
    EXPECT_NEAR(FilmSpectralModel(FilmStock::color100, FilmPaper::glossy).paperCalibration,
                -0.38783931272204428, 1e-15);
    EXPECT_NEAR(FilmSpectralModel(FilmStock::color100, FilmPaper::soft).paperCalibration,
                -0.36292642459731381, 1e-15);
}

TEST(FilmSpectralModel, ObeysItsLaws) {
    for (const FilmStock stock : allFilmStocks) {
        for (const FilmPaper paper : allFilmPapers) {
            const FilmSpectralModel model(stock, paper);
            Exposure film;
            Transmission print;
            LinearRgb display;
            const LinearRgb ranges = model.reflectionCubeRanges();
            Matrix3 seen;
            for (std::size_t i = 0; i < spectralSampleCount; ++i) {
                film += model.filmSensitivityWeights[i];
                print += model.paperWeights[i];
                display += model.reflectionWeights[i];
                seen += outer(Vector3{model.reflectionWeights[i].v}, model.reconstructionBasis[i]);
                if (!model.stock.isMeasured()) {
                    EXPECT_EQ(model.baseDensities[i], 0);
                }
            }
            for (std::size_t c = 0; c < 3; ++c) {
                EXPECT_NEAR(film[c], 1, 1e-14);
                EXPECT_NEAR(print[c], 1, 1e-14);
                EXPECT_NEAR(display[c], 1, 1e-14);
                EXPECT_NEAR(sum(model.exposureRows.matrix[c]), 1, 1e-14);
                EXPECT_GE(ranges[c], 1);
                for (std::size_t j = 0; j < 3; ++j) EXPECT_NEAR(seen[c][j], c == j, 1e-13);
            }
            // A dose of the calibration alone prints mid-grey.
            EXPECT_NEAR(model.paper.curve.density(model.paperCalibration), std::log10(1 / 0.18), 1e-14);
            if (stock == FilmStock::mono400) {
                EXPECT_EQ(model.exposureRows.matrix[0], model.exposureRows.matrix[1]);
                EXPECT_EQ(model.exposureRows.matrix[0], model.exposureRows.matrix[2]);
            }
        }
    }
    const FilmSpectralModel measured(FilmStock::portra400, FilmPaper::glossy);
    EXPECT_EQ(measured.baseDensities.front(), 0.70);
    EXPECT_EQ(measured.baseDensities.back(), 0.22);
}

TEST(FilmSpectralModel, DevelopsAnyNumberWithinTheFilmsRange) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const FilmStock stock : allFilmStocks) {
        const FilmSpectralModel model(stock, FilmPaper::glossy);
        const Density toe = model.layerDensity(Exposure::filled(1e-12));
        for (const double bad : {0.0, -1.0, -infinity, nan, 1e-300}) {
            EXPECT_EQ(model.layerDensity(Exposure::filled(bad)), toe) << bad;
        }
        const Density top = model.layerDensity(Exposure::filled(infinity));
        EXPECT_EQ(model.layerDensity(Exposure::filled(1e300)), top);
        for (std::size_t c = 0; c < 3; ++c) {
            // 1e-12 is 11.3 decades below mid-grey: sigmoids of slope 1 and more keep less than 1e-4 of their
            // range.
            EXPECT_NEAR(toe[c], model.layerMinimums()[c], 1e-4 * model.layerRanges()[c]);
            EXPECT_NEAR(top[c], model.layerMinimums()[c] + model.layerRanges()[c], 1e-14);
        }
        // Each layer by itself: changing one exposure changes one density.
        const Density one = model.layerDensity({0.18, 5, 0.001});
        EXPECT_EQ(one[0], model.layerDensity(Exposure::filled(0.18))[0]);
        EXPECT_EQ(one[2], model.layerDensity(Exposure::filled(0.001))[2]);
    }
}

// The largest deviation is a fact that Colorimetry.h states.
TEST(ColourMatching, StaysCloseToTheTabulatedFunctions) {
    expectNear(checksum(sampled(colourMatching1931)), reference::colourMatching1931, 1e-13, "observer");

    LUMISORT_NEEDS_CORPUS();
    Vector3 deviation;
    const auto rows = test::spectralTable("cmf_xyz_CIE_1931_2_Degree_Standard_Observer.csv");
    ASSERT_EQ(rows.size(), 471U);
    for (const auto& row : rows) {
        if (row[0] < 380 || row[0] > 780) continue;
        const Xyz difference = colourMatching1931(row[0]) - Xyz{row[1], row[2], row[3]};
        for (std::size_t c = 0; c < 3; ++c) deviation[c] = std::max(deviation[c], std::abs(difference[c]));
    }
    EXPECT_NEAR(deviation[0], 0.0140, 5e-5);
    EXPECT_NEAR(deviation[1], 0.0080, 5e-5);
    EXPECT_NEAR(deviation[2], 0.0222, 5e-5);
}

} // namespace
} // namespace lumisort::film
