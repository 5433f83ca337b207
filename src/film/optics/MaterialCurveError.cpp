#include "film/optics/MaterialCurveError.h"

namespace lumisort::film {

const char* MaterialCurveFailure::what() const noexcept {
    switch (error_) {
    case MaterialCurveError::tooFewPoints:
        return "A material curve needs at least two points.";
    case MaterialCurveError::nonfinite:
        return "A material curve holds a number that is not finite.";
    case MaterialCurveError::unordered:
        return "The points of a material curve are not in increasing order.";
    case MaterialCurveError::decreasing:
        return "The values of a monotone curve decrease.";
    case MaterialCurveError::negativeSpectrum:
        return "A spectrum holds a negative value.";
    }
    return "A material curve was refused.";
}

} // namespace lumisort::film
