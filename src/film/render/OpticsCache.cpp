#include "film/render/OpticsCache.h"

#include <cstddef>

namespace lumisort::film {

std::shared_ptr<const FilmOptics> OpticsCache::get(FilmStock stock, FilmPaper paper,
                                                   const std::stop_token& stop) {
    auto& optics = pairs_.at(static_cast<std::size_t>(stock)).at(static_cast<std::size_t>(paper));
    if (!optics) optics = std::make_shared<const FilmOptics>(buildOptics(stock, paper, 0, stop));
    return optics;
}

} // namespace lumisort::film
