#include "film/inspect/CubeText.h"
#include "film/inspect/FilmPlot.h"
#include "film/inspect/FilmReport.h"
#include "film/optics/FilmOptics.h"
#include "platform/json/Reader.h"
#include "platform/tasks/Cancellation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace lumisort::film {
namespace {

using testing::HasSubstr;
using testing::Not;

using Numbers = std::vector<double>;

template <class Space>
void append(Numbers& numbers, const Triple<Space>& v) {
    numbers.insert(numbers.end(), v.v.begin(), v.v.end());
}

/// All numbers below a value, in the order of the text.
void collect(json::Value value, Numbers& numbers) {
    switch (value.type()) {
    case simdjson::ondemand::json_type::array:
        json::eachElement(value, [&](json::Value element) { collect(element, numbers); });
        break;
    case simdjson::ondemand::json_type::object:
        json::eachField(value, [&](std::string_view, json::Value member) { collect(member, numbers); });
        break;
    default:
        numbers.push_back(json::number(value));
    }
}

std::vector<std::pair<std::string, Numbers>> expectedMembers(const FilmSpectralModel& model) {
    Numbers rows, greys;
    for (const Vector3& row : model.exposureRows.matrix.rows) append(rows, row);
    for (const double exposure : {0.0, 0.01, 0.045, 0.09, 0.18, 0.36, 0.72, 1.0, 2.0}) {
        greys.push_back(exposure);
        append(greys, model.layerDensity(Exposure::filled(exposure)));
    }
    const auto list = [](const auto& v) { return Numbers(v.v.begin(), v.v.end()); };
    std::vector<std::pair<std::string, Numbers>> members{
        {"paperCalibration", {model.paperCalibration}},
        {"neutralTransmission", list(model.neutralTransmission)},
        {"exposureRows", rows},
        {"layerRanges", list(model.layerRanges())},
        {"reflectionCubeMinimums", list(model.reflectionCubeMinimums())},
        {"reflectionCubeRanges", list(model.reflectionCubeRanges())},
        {"greyScale", greys}};
    if (model.stock.isMeasured()) {
        members.insert(members.begin(), {"neutralLogExposure", {model.stock.neutralLogExposure}});
    }
    return members;
}

TEST(Inspect, WritesTheModelAsJsonThatReadsBackExactly) {
    for (const FilmStock stock : allFilmStocks) {
        for (const FilmPaper paper : allFilmPapers) {
            std::vector<std::pair<std::string, Numbers>> members;
            std::vector<std::string> names;
            const std::string text = inspectJson(stock, paper);
            json::parse(text, [&](json::Value root) {
                json::eachField(root, [&](std::string_view key, json::Value value) {
                    if (key == "stock" || key == "paper") {
                        names.emplace_back(json::text(value));
                    } else {
                        collect(value, members.emplace_back(key, Numbers{}).second);
                    }
                });
            });
            EXPECT_EQ(names, (std::vector{std::string(storedName(stock)), std::string(storedName(paper))}));
            EXPECT_EQ(members, expectedMembers(FilmSpectralModel(stock, paper)));
            EXPECT_THAT(text, HasSubstr("\"greyScale\":[{\"exposure\":0.0,\"layerDensity\":["));
        }
    }
}

TEST(Inspect, WritesCubesThatReadBackExactly) {
    const FilmOptics optics = buildOptics(FilmStock::color100, FilmPaper::soft);
    const std::map<InspectedCube, const FilmLookupCube*> cubes{
        {InspectedCube::exposure, &optics.exposure.cube},
        {InspectedCube::negative, &optics.negative.cube},
        {InspectedCube::paper, &optics.paper.cube}};
    for (const auto& [kind, cube] : cubes) {
        EXPECT_EQ(inspectedCubeNames.find(storedName(kind)), kind);
        std::istringstream text(cubeText(FilmStock::color100, FilmPaper::soft, kind));
        std::vector<std::string> head;
        std::vector<float> data;
        for (std::string line; std::getline(text, line);) {
            if (line.find_first_of("0123456789-") != 0) {
                head.push_back(line);
                continue;
            }
            EXPECT_EQ(line.find('e'), std::string::npos) << line;
            std::istringstream numbers(line);
            for (float number; numbers >> number;) data.push_back(number);
            data.push_back(1);
        }
        ASSERT_EQ(head.size(), 5U);
        EXPECT_EQ(head[0], "TITLE \"Color 100 on Soft paper, " + std::string(storedName(kind)) + " cube\"");
        EXPECT_EQ(head[2], "LUT_3D_SIZE 33");
        EXPECT_EQ(head[3], "DOMAIN_MIN 0.0 0.0 0.0");
        EXPECT_EQ(head[4], "DOMAIN_MAX 1.0 1.0 1.0");
        EXPECT_THAT(data, testing::ElementsAreArray(cube->data()));
    }
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(cubeText(FilmStock::color100, FilmPaper::soft, InspectedCube::paper, stop.get_token()),
                 tasks::Cancelled);
    EXPECT_EQ(inspectedCubeNames.find("print"), std::nullopt);
}

TEST(Inspect, DrawsAndDescribesEveryStockAndPaper) {
    for (const FilmStock stock : allFilmStocks) {
        for (const FilmPaper paper : allFilmPapers) {
            const std::string heading =
                std::string(title(stock)) + " on " + std::string(title(paper)) + " paper";
            const std::string svg = plotSvg(stock, paper);
            for (const char* part : {"spectral sensitivity", "characteristic curves", "Film: dyes and base",
                                     "Wavelength (nm)", "exposure", "Density", "Cyan", "mid-grey"}) {
                EXPECT_THAT(svg, HasSubstr(part));
            }
            EXPECT_THAT(svg, HasSubstr(heading));
            // A curve that leaves the numbers would be drawn as nothing by some viewers.
            EXPECT_THAT(svg, Not(testing::ContainsRegex("[ ,\"]-?(nan|inf)[ ,\"]")));
            const std::string text = inspectText(stock, paper);
            EXPECT_TRUE(text.starts_with(heading));
            const bool measured = stock == FilmStock::portra400;
            EXPECT_EQ(svg.find(">Base<") != std::string::npos, measured);
            EXPECT_EQ(text.find("E-4050") != std::string::npos, measured);
        }
    }
}

} // namespace
} // namespace lumisort::film
