#include "film/optics/StockProfile.h"

#include "film/optics/PaperProfile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lumisort::film {
namespace {

const StockProfile& profile = stockProfile(FilmStock::portra400);

const MonotoneCurve& measured(const FilmLayer& layer) {
    return std::get<MonotoneCurve>(layer.characteristic);
}

// Σ (i + 1) · value: a wrong digit or two swapped numbers change it.
template <class Items, class Get>
double checksum(const Items& items, const Get& get) {
    double result = 0;
    double weight = 0;
    for (const auto& item : items) result += ++weight * get(item);
    return result;
}

// The checksums were computed from the published tables by a separate program.
TEST(Portra400, HoldsTheTablesDigitForDigit) {
    const struct {
        const char* name;
        std::size_t sensitivityPoints;
        double sensitivityNM, logSensitivity, density, tangents;
    } layers[] = {
        {"Red / cyan-forming", 41, 532985, 1447.17, 65.36, 27.645076892049349},
        {"Green / magenta-forming", 45, 550935, 1800.28, 90.58, 27.577841367559945},
        {"Blue / yellow-forming", 31, 236050, 795.31, 115.1, 32.530954851241337},
    };
    for (std::size_t c = 0; c < 3; ++c) {
        const FilmLayer& layer = profile.layers[c];
        EXPECT_EQ(layer.name, layers[c].name);
        const auto& samples = std::get<SampledSpectrum>(layer.sensitivity).points();
        ASSERT_EQ(samples.size(), layers[c].sensitivityPoints);
        const std::vector<MaterialPoint> plotted(samples.begin() + 1, samples.end() - 1);
        EXPECT_EQ(checksum(samples, [](auto& p) { return p.x; }), layers[c].sensitivityNM);
        EXPECT_NEAR(checksum(plotted, [](auto& p) { return std::log10(p.y); }), layers[c].logSensitivity,
                    1e-10);
        EXPECT_EQ(samples.front().y, 0);
        EXPECT_EQ(samples.back().y, 0);
        const MonotoneCurve& curve = measured(layer);
        EXPECT_NEAR(checksum(curve.points(), [](auto& p) { return p.x; }), -52.1, 1e-12);
        EXPECT_NEAR(checksum(curve.points(), [](auto& p) { return p.y; }), layers[c].density, 1e-12);
        EXPECT_NEAR(checksum(curve.tangents(), [](double t) { return t; }), layers[c].tangents, 1e-12);
        EXPECT_EQ(layer.dyeAbsorption.points().size(), 81U);
    }
    EXPECT_NEAR(checksum(profile.baseDensity.points(), [](auto& p) { return p.y; }), 52.92, 1e-12);
    EXPECT_EQ(checksum(profile.baseDensity.points(), [](auto& p) { return p.x; }), 81600);
    EXPECT_EQ(profile.id, "portra400-study-v1");
    EXPECT_EQ(profile.neutralLogExposure, measured(profile.layers[0]).logExposure(0.82));
    EXPECT_EQ(profile.isoSpeed, 400);
}

TEST(Portra400, PlacesMidGreyInTheMiddleOfThePublishedInterval) {
    EXPECT_NEAR(profile.neutralLogExposure, -1.5737051235195993, 1e-14);
    const double expected[] = {0.82, 1.2886766823786289, 1.673799481363022};
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(density(profile.layers[c].characteristic, profile.neutralLogExposure), expected[c],
                    1e-14);
    }
}

TEST(Portra400, EndsItsSpectraAsTheyAreMeasuredOrAssumed) {
    const auto& red = std::get<SampledSpectrum>(profile.layers[0].sensitivity);
    EXPECT_EQ(red.value(470), 0);
    EXPECT_DOUBLE_EQ(red.value(480), std::pow(10, 0.38) / 2);
    EXPECT_EQ(red.value(700), 0);
    EXPECT_GT(red.value(699), 0);
    EXPECT_EQ(profile.baseDensity.value(300), 0.70);
    EXPECT_EQ(profile.baseDensity.value(900), 0.22);
    for (double wavelength = 380; wavelength <= 780; wavelength += 2.5) {
        double total = 0;
        for (const FilmLayer& layer : profile.layers) {
            total += layer.dyeAbsorption.value(wavelength);
            EXPECT_GE(layer.dyeAbsorption.value(wavelength), 0.035);
        }
        EXPECT_NEAR(total, 1, 1e-15);
    }
    EXPECT_EQ(profile.layers[0].dyeAbsorption.value(780.1), 0);
    EXPECT_EQ(profile.layers[2].dyeAbsorption.value(379.9), 0);
}

TEST(Portra400, SaysWhereEachGroupOfNumbersComesFrom) {
    const struct {
        const char* component;
        MaterialEvidence evidence;
        std::optional<int> page;
    } expected[] = {
        {"Effective channel characteristic curves", MaterialEvidence::graphEstimate, 5},
        {"Layer spectral sensitivity", MaterialEvidence::graphEstimate, 5},
        {"Aggregate minimum spectral density", MaterialEvidence::graphEstimate, 5},
        {"Neutral exposure reference", MaterialEvidence::publishedValue, 3},
        {"Dye absorption basis", MaterialEvidence::modelAssumption, std::nullopt},
        {"Grain parameters", MaterialEvidence::modelAssumption, std::nullopt},
        {"Halation parameters", MaterialEvidence::modelAssumption, std::nullopt},
    };
    ASSERT_EQ(profile.provenance.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const MaterialProvenance& entry = profile.provenance[i];
        EXPECT_EQ(entry.component, expected[i].component);
        EXPECT_EQ(entry.evidence, expected[i].evidence);
        EXPECT_EQ(entry.sourcePage, expected[i].page);
        EXPECT_EQ(entry.source.has_value(), expected[i].page.has_value());
        EXPECT_EQ(materialEvidenceNames.find(storedName(entry.evidence)), entry.evidence);
    }
    EXPECT_EQ(materialEvidenceNames.find("guess"), std::nullopt);
    EXPECT_EQ(profile.grain.provenance, profile.provenance[5]);
    EXPECT_EQ(profile.halation.provenance, profile.provenance[6]);
}

// What documents store and people read.
TEST(FilmChoices, KeepTheirNames) {
    std::string names;
    for (const FilmStock stock : allFilmStocks) {
        names.append(storedName(stock)).append("=").append(title(stock)).append(", ");
        EXPECT_EQ(filmStockNames.find(storedName(stock)), stock);
    }
    for (const FilmPaper paper : allFilmPapers) {
        names.append(storedName(paper)).append("=").append(title(paper)).append(", ");
        EXPECT_EQ(filmPaperNames.find(storedName(paper)), paper);
    }
    EXPECT_EQ(names,
              "portra400=Portrait 400 Study, color100=Color 100, color400=Color 400, mono400=Mono 400, "
              "glossy=Standard, soft=Soft, ");
    EXPECT_EQ(filmStockNames.find("Mono 400"), std::nullopt);
    EXPECT_EQ(filmPaperNames.find(""), std::nullopt);
}

// Radii and fractions are sizes on the film, so a wrong one shows only in pictures.
TEST(StockProfiles, HoldGrainHalationAndCouplingInFilmUnits) {
    const struct {
        FilmStock stock;
        Vector3 radii;
        double amount;
        bool isBlackAndWhite;
    } expected[] = {
        {FilmStock::portra400, {0.8, 0.7, 0.6}, 0.075, false},
        {FilmStock::color100, {0.6, 0.5, 0.45}, 0.035, false},
        {FilmStock::color400, {1.1, 0.95, 0.8}, 0.065, false},
        {FilmStock::mono400, {2, 2, 2}, 0.075, true},
    };
    for (const auto& [stock, radii, amount, isBlackAndWhite] : expected) {
        const StockProfile& row = stockProfile(stock);
        EXPECT_EQ(row.grain.meanRadiusMicrometres, radii);
        EXPECT_EQ(row.grain.radiusCoefficientOfVariation, 0.35);
        EXPECT_EQ(row.grain.densityAmount, amount);
        EXPECT_EQ(row.grain.correlation, 0.35);
        EXPECT_EQ(row.grain.isMonochrome, isBlackAndWhite);
        EXPECT_EQ(row.isPanchromatic, isBlackAndWhite);
        EXPECT_EQ(row.coupling.has_value(), !isBlackAndWhite);
        EXPECT_EQ(row.halation.scatteringFraction, (Vector3{0.025, 0.008, 0.002}));
        EXPECT_EQ(row.halation.coreSigmaMicrometres, (Vector3{12, 9, 6}));
        EXPECT_EQ(row.halation.tailSigmaMicrometres, (Vector3{45, 32, 20}));
        EXPECT_EQ(row.halation.tailWeight, (Vector3{0.18, 0.18, 0.18}));
    }
    const InterlayerCoupling coupling = profile.coupling.value();
    EXPECT_EQ(coupling.inhibition,
              (Matrix3{Vector3{0, 0.06, 0.035}, Vector3{0.04, 0, 0.04}, Vector3{0.025, 0.05, 0}}));
    EXPECT_EQ(coupling.diffusionSigmaMicrometres, 8);
}

TEST(StockProfiles, HaveOneRowForEachChoice) {
    ASSERT_EQ(stockProfiles().size(), allFilmStocks.size());
    for (std::size_t i = 0; i < allFilmStocks.size(); ++i)
        EXPECT_EQ(stockProfiles()[i].stock, allFilmStocks[i]);
    for (const StockProfile& row : stockProfiles()) {
        EXPECT_EQ(row.summary.starts_with("Independent physical simulation"), !row.isMeasured()) << row.id;
    }
    EXPECT_EQ(profile.summary,
              "Portra 400 response and sensitivity estimated from Kodak E-4050. Dyes, paper and "
              "chemistry remain model assumptions; not a measured replica.");
    ASSERT_EQ(paperProfiles().size(), allFilmPapers.size());
    for (std::size_t i = 0; i < allFilmPapers.size(); ++i)
        EXPECT_EQ(paperProfiles()[i].paper, allFilmPapers[i]);
}

} // namespace
} // namespace lumisort::film
