#include "film/optics/PaperProfile.h"

#include "film/optics/Invariant.h"

#include <algorithm>

namespace lumisort::film {
namespace {

constexpr GaussianTriple dyes{{635, 535, 445}, {43, 34, 31}};
constexpr GaussianTriple sensitivities{{640, 545, 450}, {27, 25, 24}};

constexpr std::array papers{
    PaperProfile{FilmPaper::glossy, {0.018, 2.5, 2.3}, dyes, sensitivities},
    PaperProfile{FilmPaper::soft, {0.035, 2.15, 1.95}, dyes, sensitivities},
};

} // namespace

std::span<const PaperProfile> paperProfiles() {
    return papers;
}

const PaperProfile& paperProfile(FilmPaper paper) {
    const auto row = std::ranges::find(papers, paper, &PaperProfile::paper);
    require(row != papers.end(), "a film paper has no profile");
    return *row;
}

} // namespace lumisort::film
