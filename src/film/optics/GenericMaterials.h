#pragma once

// The assumed numbers of stocks and papers that no data sheet backs, and the constants of every stock and
// paper that the simulation needs beside a measured profile.

#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"
#include "film/optics/Vector3.h"

namespace lumisort::film {

/// The film curve is minimum + range / (1 + exp(-slope · L)), L the log exposure relative to mid-grey.
/// A stock with a profile develops by its own curves instead.
struct StockConstants {
    double minimum;
    double range;
    double slope;
    double grainDensity; ///< grain strength of stocks without a profile
};

constexpr StockConstants stockConstants(FilmStock stock) {
    switch (stock) {
    case FilmStock::portra400:
        return {0, 2.8, 1.0, 0.04};
    case FilmStock::color100:
        return {0.04, 2.7, 1.15, 0.035};
    case FilmStock::color400:
        return {0.055, 2.65, 1.08, 0.065};
    case FilmStock::mono400:
        return {0.035, 2.8, 1.2, 0.075};
    }
    return {};
}

/// The paper curve is minimum + range / (1 + exp(-slope · log dose)).
struct PaperConstants {
    double minimum;
    double range;
    double slope;
};

constexpr PaperConstants paperConstants(FilmPaper paper) {
    switch (paper) {
    case FilmPaper::glossy:
        return {0.018, 2.5, 2.3};
    case FilmPaper::soft:
        return {0.035, 2.15, 1.95};
    }
    return {};
}

/// Three Gaussian lobes, red, green, blue; centres and standard deviations in nanometres.
struct Lobes {
    Vector3 centresNM;
    Vector3 widthsNM;
};

inline constexpr Lobes filmDyeLobes{{640, 540, 445}, {42, 32, 29}};
inline constexpr Lobes filmSensitivityLobes{{655, 540, 440}, {24, 23, 21}};
inline constexpr Lobes paperDyeLobes{{635, 535, 445}, {43, 34, 31}};
inline constexpr Lobes paperSensitivityLobes{{640, 545, 450}, {27, 25, 24}};
/// Smooth spectra that are mixed into any colour that a plain reflectance cannot have.
inline constexpr Lobes reconstructionLobes{{625, 535, 455}, {20, 20, 20}};

inline constexpr double takingIlluminantKelvin = 6504;
inline constexpr double printingLampKelvin = 3200;

/// The relative exposure of mid-grey, 1 being that of a perfect white.
inline constexpr double midGreyExposure = 0.18;
/// The density of an 18 % reflectance, log10(1 / 0.18).
inline constexpr double midGreyDensity = 0.744727494896694;
/// Exposures at or below this one are taken as this one, so that their logarithm exists.
inline constexpr double smallestExposure = 1e-12;

} // namespace lumisort::film
