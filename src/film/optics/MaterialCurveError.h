#pragma once

#include <exception>

namespace lumisort::film {

/// Why a spectrum or a curve was refused.
enum class MaterialCurveError { tooFewPoints, nonfinite, unordered, decreasing, negativeSpectrum };

/// What the constructors throw; the case says all.
class MaterialCurveFailure : public std::exception {
public:
    explicit MaterialCurveFailure(MaterialCurveError error) : error_(error) {}
    MaterialCurveError error() const { return error_; }
    const char* what() const noexcept override;

private:
    MaterialCurveError error_;
};

} // namespace lumisort::film
