#pragma once

#include "film/optics/FilmOptics.h"

#include <array>
#include <memory>
#include <stop_token>

namespace lumisort::film {

/// The optics of every pair of stock and paper that was asked for so far: eight at most, 15 MB. Used by one
/// thread at a time.
class OpticsCache {
public:
    /// Builds a pair's optics when it is asked for first. Throws tasks::Cancelled; then nothing is kept.
    std::shared_ptr<const FilmOptics> get(FilmStock stock, FilmPaper paper, const std::stop_token& stop);

private:
    std::array<std::array<std::shared_ptr<const FilmOptics>, allFilmPapers.size()>, allFilmStocks.size()>
        pairs_;
};

} // namespace lumisort::film
