#include "film/edits/FilmSettingsForm.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumisort::film {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

FilmSettings parsed(const std::string& text) {
    FilmSettings settings;
    json::parse(text, [&](json::Value root) { settings = readFilmSettings(root); });
    return settings;
}

TEST(FilmSettings, TheTwoViewsClampEachAdjustment) {
    using S = FilmSettings;
    const struct {
        double S::* field;
        double given, editing, rendering;
    } cases[] = {
        {&S::exposure, 4.7, 3, 4.7},
        {&S::exposure, -9, -3, -5},
        {&S::exposure, infinity, 0, 0},
        {&S::printExposure, -2.5, -2, -2.5},
        {&S::printExposure, 7, 2, 5},
        {&S::printExposure, nan, 0, 0},
        {&S::grain, nan, 0.35, 0.35},
        {&S::grain, 1.5, 1, 1},
        {&S::grain, -0.1, 0, 0},
        {&S::halation, -infinity, 0.2, 0.2},
        {&S::halation, 2, 1, 1},
        {&S::halation, 0.7, 0.7, 0.7},
        {&S::colorSeparation, nan, 0.25, 0.25},
        {&S::colorSeparation, -1, 0, 0},
    };
    for (const auto& [field, given, editing, rendering] : cases) {
        FilmSettings settings{FilmStock::mono400, FilmPaper::soft, FilmFormat::mediumFormat};
        auto forEditing = settings, forRendering = settings;
        settings.*field = given;
        forEditing.*field = editing;
        forRendering.*field = rendering;
        EXPECT_EQ(settings.validatedForEditing(), forEditing) << given;
        EXPECT_EQ(settings.validated(), forRendering) << given;
    }
}

TEST(FilmSettings, WhatIsMissingLooksAsItDidBeforeTheKeyExisted) {
    EXPECT_EQ(parsed(R"({"grain":null,"contrast":{"a":[1]}})"),
              (FilmSettings{FilmStock::color100, FilmPaper::glossy, FilmFormat::mm35, 0, 0, 0.35, 0.2, 0}));
    EXPECT_EQ(parsed(R"({"grain":1,"stock":"mono400","exposure":-4e0})"),
              (FilmSettings{FilmStock::mono400, FilmPaper::glossy, FilmFormat::mm35, -4, 0, 1, 0.2, 0}));
}

TEST(FilmSettings, ReadsBackWhatItWrites) {
    const FilmSettings settings{
        FilmStock::color400, FilmPaper::soft, FilmFormat::mediumFormat, 0.1, -1.0 / 3, 1e-300, 1, 0.7};
    const auto text = json::toText([&](json::Writer& out) { write(out, settings); });
    EXPECT_EQ(parsed(text), settings);
}

TEST(FilmSettings, RefusesWrongTypesAndUnknownMaterials) {
    const std::pair<std::string, std::string> cases[] = {
        {R"({"stock":"ektar"})", "stock: “ektar” is not known"},
        {R"({"paper":1})", "paper: a text is expected"},
        {R"({"grain":"0.5"})", "grain: a number is expected"},
        {R"({"exposure":NaN})", "exposure: a number is expected"},
        {R"({"exposure":1e400})", "exposure: a number is expected"},
    };
    for (const auto& [text, message] : cases) {
        try {
            parsed(text);
            ADD_FAILURE() << text;
        } catch (const json::FormatError& error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

} // namespace
} // namespace lumisort::film
