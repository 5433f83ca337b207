#include "film/render/Development.h"
#include "film/render/Grain.h"
#include "film/render/Halation.h"
#include "film/render/Printing.h"
#include "film/render/SpectralExposure.h"

namespace lumisort::film {

namespace {

using enum FilmSetting;

int noBorder(const FilmRecipe&) {
    return 0;
}

constexpr std::array stages{
    Stage{"exposure", stock | paper | exposure, noBorder, prepareSpectralExposure},
    Stage{"halation", stock | format | halation, halationBorder, prepareHalation},
    Stage{"development", stock | format | colorSeparation, developmentBorder, prepareDevelopment},
    Stage{"grain", stock | format | grain, noBorder, prepareGrain},
    Stage{"negative", stock | paper, noBorder, prepareNegative},
    Stage{"print", paper | printExposure, noBorder, preparePrinting},
    Stage{"paper", stock | paper, noBorder, preparePaperLight},
};

} // namespace

std::span<const Stage> filmStages() {
    return stages;
}

FilmSettings settingsRead(const FilmSettings& settings, std::size_t count) {
    unsigned reads = 0;
    for (const auto& stage : std::span(stages).first(count)) reads |= stage.reads;
    FilmSettings read;
    const auto take = [&](FilmSetting setting, auto member) {
        if (reads & static_cast<unsigned>(setting)) read.*member = settings.*member;
    };
    take(stock, &FilmSettings::stock);
    take(paper, &FilmSettings::paper);
    take(format, &FilmSettings::format);
    take(exposure, &FilmSettings::exposure);
    take(printExposure, &FilmSettings::printExposure);
    take(grain, &FilmSettings::grain);
    take(halation, &FilmSettings::halation);
    take(colorSeparation, &FilmSettings::colorSeparation);
    return read;
}

} // namespace lumisort::film
