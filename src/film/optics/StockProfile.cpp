#include "film/optics/StockProfile.h"

#include "film/optics/GenericStocks.h"
#include "film/optics/Invariant.h"
#include "film/optics/MaterialCurveError.h"
#include "film/optics/Portra400.h"

#include <algorithm>

namespace lumisort::film {
namespace {

std::vector<StockProfile> allProfiles() {
    try {
        std::vector<StockProfile> rows{portra400Profile()};
        std::ranges::move(genericProfiles(), std::back_inserter(rows));
        return rows;
    } catch (const MaterialCurveFailure& failure) {
        require(false, failure.what());
        throw;
    }
}

} // namespace

std::span<const StockProfile> stockProfiles() {
    static const std::vector<StockProfile> rows = allProfiles();
    return rows;
}

const StockProfile& stockProfile(FilmStock stock) {
    const auto row = std::ranges::find(stockProfiles(), stock, &StockProfile::stock);
    require(row != stockProfiles().end(), "a film stock has no profile");
    return *row;
}

} // namespace lumisort::film
