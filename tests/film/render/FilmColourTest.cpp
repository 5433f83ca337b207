#include "film/render/Renderings.h"
#include "platform/images/Decoder.h"
#include "support/DngFile.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <numbers>

namespace lumisort::film::test {

namespace {

using lumisort::test::Light;
using lumisort::test::TestCamera;

constexpr FilmSettings plain{.grain = 0, .halation = 0, .colorSeparation = 0};

double code(const Planes& picture, int c, int x, int y = 0) {
    return 255 * encoded(picture.row(c, y)[x]);
}

TEST(FilmColour, RampsThroughTheEdgeOfSrgbStepOnlyWhereTheModelDoes) {
    // From grey to each colour and half as far again, in steps of a hundredth.
    struct Ramp {
        const char* name;
        Light colour;
    };
    constexpr int steps = 151;
    for (const auto stock : allFilmStocks)
        for (const auto& [name, colour] :
             {Ramp{"red", {0.9, 0, 0}}, Ramp{"orange", {0.9, 0.35, 0}}, Ramp{"blue", {0, 0, 0.9}},
              Ramp{"cyan", {0, 0.7, 0.8}}, Ramp{"magenta", {0.8, 0, 0.7}}}) {
            SCOPED_TRACE(testing::Message() << storedName(stock) << ' ' << name);
            const auto ramp = sceneOf(steps, 1, [&, target = colour](int x, int) {
                const double share = x / 100.0;
                Light light{};
                for (std::size_t c = 0; c < 3; ++c) light[c] = 0.3 + share * (target[c] - 0.3);
                return light;
            });
            auto settings = plain;
            settings.stock = stock;
            const auto recipe = recipeOf(settings, steps, 1);
            const auto picture = rendered(recipe, ramp);
            const auto truth = literal::film(literal::imageOf(ramp), recipe);
            EXPECT_LE(largestDifference(picture, truth), 1.0 / 1024);
            for (int x = 1; x < steps; ++x)
                for (int c = 0; c < 3; ++c) {
                    const double step = code(picture, c, x) - code(picture, c, x - 1);
                    if (std::abs(step) <= 4) continue;
                    const auto channel = static_cast<std::size_t>(c);
                    const double modelled =
                        255 * (encoded(truth.at(x, 0)[channel]) - encoded(truth.at(x - 1, 0)[channel]));
                    EXPECT_NEAR(step, modelled, 0.5) << x;
                    std::printf("%s to %s: channel %d steps by %.1f codes at %d %%, as the model says\n",
                                std::string(storedName(stock)).c_str(), name, c, step, x);
                }
        }
}

/// Hue and chroma in the plane of two colour differences of codes.
std::array<double, 2> chromaOf(const Planes& picture, int x, int y) {
    const double r = code(picture, 0, x, y), g = code(picture, 1, x, y), b = code(picture, 2, x, y);
    return {r - g, (r + g) / 2 - b};
}

// Where the sensor clips, the print has the hue of the lamp's true light, and no ring.
TEST(FilmColour, ClippedLampsPrintInTheirOwnHue) {
    constexpr int side = 96;
    const auto lamp = [](const Light& colour, double peak) {
        return [=](int x, int y) {
            const double distance = std::hypot(x - side / 2, y - side / 2) / 16;
            const double light = 0.02 + peak * std::exp(-distance * distance / 2);
            return Light{colour[0] * light, colour[1] * light, colour[2] * light};
        };
    };
    // What the camera reads of white: in the first, green clips first; in the second red and green.
    for (const Light& white : {Light{0.5, 1, 0.65}, Light{1, 0.95, 0.5}, Light{1, 1, 1}})
        for (const Light& colour : {Light{1, 1, 1}, Light{1, 0.85, 0.6}, Light{0.75, 0.9, 1}})
            for (const double peak : {1.3, 3.0, 12.0}) {
                SCOPED_TRACE(testing::Message() << "white " << white[0] << ' ' << white[2] << ", lamp "
                                                << colour[1] << ' ' << colour[2] << " · " << peak);
                const lumisort::test::TemporaryFolder folder;
                const TestCamera camera{.neutral = white};
                const auto url = camera.photograph(folder, "a.dng", side, side, lamp(colour, peak));
                const auto developed = images::decoder().develop(url, {}).image;
                const auto recipe = recipeOf(plain, side, side);
                const auto found = rendered(recipe, developed);
                const auto truth = rendered(recipe, sceneOf(side, side, lamp(colour, peak)));
                double worstHue = 0, worstFall = 0, worstCast = 0, brightest = 0;
                for (int x = 8; x <= side / 2; ++x) {
                    const auto shown = chromaOf(found, x, side / 2), meant = chromaOf(truth, x, side / 2);
                    worstCast = std::max(worstCast, std::hypot(shown[0] - meant[0], shown[1] - meant[1]));
                    if (std::hypot(meant[0], meant[1]) > 12)
                        worstHue =
                            std::max(worstHue, std::abs(std::remainder(std::atan2(shown[1], shown[0]) -
                                                                           std::atan2(meant[1], meant[0]),
                                                                       2 * std::numbers::pi)) *
                                                   180 / std::numbers::pi);
                    const double luminance = 0.2126 * code(found, 0, x, side / 2) +
                                             0.7152 * code(found, 1, x, side / 2) +
                                             0.0722 * code(found, 2, x, side / 2);
                    worstFall = std::max(worstFall, brightest - luminance);
                    brightest = std::max(brightest, luminance);
                }
                EXPECT_LT(worstHue, 5) << "degrees";
                EXPECT_LT(worstCast, 6) << "codes";
                // The brightest lamp's light changes by 4 % between neighbouring pixels, whose colours are
                // interpolated: two codes.
                EXPECT_LT(worstFall, 2) << "codes";
            }
}

/// A measure of a picture that one setting is there to move.
struct Measure {
    const char* name;
    std::function<void(FilmSettings&, double)> set;
    double from, to;
    std::function<double(const Planes&)> of;
    bool rises;
};

// Left half grey, then a lamp on black at three quarters, strong colours on the right edge; 6 µm a pixel.
TEST(FilmColour, EverySettingMovesItsMeasureAllTheWay) {
    constexpr int width = 6000, height = 40, lampAt = 4500;
    const auto scene = sceneOf(width, height, [](int x, int) -> Light {
        if (x < 3000) return {0.18, 0.18, 0.18};
        if (x < 5500) return std::abs(x - lampAt) < 20 ? Light{60, 60, 60} : Light{0.0005, 0.0005, 0.0005};
        return {0.25, 0.12, 0.06};
    });
    const auto grey = [](const Planes& p) {
        double sum = 0;
        for (int x = 100; x < 2900; ++x) sum += code(p, 1, x, 20);
        return sum / 2800;
    };
    const auto grain = [](const Planes& p) {
        double sum = 0, squares = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 100; x < 2900; ++x) {
                const double v = code(p, 1, x, y);
                sum += v, squares += v * v;
            }
        const double count = 2800.0 * height;
        return std::sqrt(std::max(0.0, squares / count - sum / count * (sum / count)));
    };
    const auto redBesideTheLamp = [](const Planes& p) { return code(p, 0, lampAt + 26, 20); };
    const auto chroma = [](const Planes& p) { return code(p, 0, 5750, 20) - code(p, 2, 5750, 20); };
    for (const auto& [name, set, from, to, of, rises] :
         {Measure{"exposure: grey", [](FilmSettings& s, double v) { s.exposure = v; }, -3, 3, grey, true},
          Measure{"print exposure: grey", [](FilmSettings& s, double v) { s.printExposure = v; }, -2, 2, grey,
                  false},
          Measure{"grain: deviation of grey", [](FilmSettings& s, double v) { s.grain = v; }, 0, 1, grain,
                  true},
          Measure{"format: deviation of grey",
                  [](FilmSettings& s, double v) {
                      s.grain = 1;
                      s.format = v > 0.5 ? FilmFormat::mediumFormat : FilmFormat::mm35;
                  },
                  0, 1, grain, false},
          Measure{"halation: red beside a lamp", [](FilmSettings& s, double v) { s.halation = v; }, 0, 1,
                  redBesideTheLamp, true},
          Measure{"color separation: chroma", [](FilmSettings& s, double v) { s.colorSeparation = v; }, 0, 1,
                  chroma, true}}) {
        const int steps = to - from == 1 && std::string_view(name).starts_with("format") ? 1 : 4;
        double before = 0;
        for (int i = 0; i <= steps; ++i) {
            auto settings = plain;
            set(settings, from + (to - from) * i / steps);
            const double now = of(rendered(recipeOf(settings, width, height), scene));
            std::printf("%s at %.2f: %.2f codes\n", name, from + (to - from) * i / steps, now);
            if (i > 0) {
                EXPECT_GT(rises ? now - before : before - now, 0.02) << name << ' ' << i;
            }
            before = now;
        }
    }
}

} // namespace

} // namespace lumisort::film::test
