#include "film/optics/FilmSpectralReconstructor.h"

#include "film/optics/Invariant.h"
#include "film/optics/SpectralFit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumisort::film {
namespace {

// Headroom for the factors that a scale takes.
constexpr double largestChannel = std::numeric_limits<double>::max() / 64;
// A fit that misses the colour by more than this gives way to the fallback.
constexpr double acceptedError = 2e-5;

LinearRgb sanitised(const LinearRgb& rgb) {
    LinearRgb result;
    for (std::size_t c = 0; c < 3; ++c) {
        result[c] = std::isfinite(rgb[c]) ? std::clamp(rgb[c], 0.0, largestChannel) : 0.0;
    }
    return result;
}

// t from -1 at the first wavelength to 1 at the last, once the lists agree and the wavelengths rise.
std::vector<double> positions(std::size_t weights, std::span<const double> wavelengths,
                              std::size_t fallbackBasis) {
    require(wavelengths.size() >= 3 && weights == wavelengths.size() && fallbackBasis == wavelengths.size(),
            "a spectral reconstruction has fewer than three wavelengths or lists of different lengths");
    require(std::ranges::all_of(wavelengths, [](double w) { return std::isfinite(w); }) &&
                wavelengths.front() < wavelengths.back(),
            "the wavelengths of a spectral reconstruction are not in order");
    const double middle = (wavelengths.front() + wavelengths.back()) / 2;
    const double half = (wavelengths.back() - wavelengths.front()) / 2;
    std::vector<double> t;
    for (const double wavelength : wavelengths) t.push_back((wavelength - middle) / half);
    return t;
}

} // namespace

/// One colour on its way to its spectrum.
class FilmSpectralReconstructor::Job {
public:
    /// Starts with a colour; true when it needs a fit, false when its spectrum is already there.
    bool begin(const FilmSpectralReconstructor& owner, const LinearRgb& rgb) {
        const LinearRgb colour = sanitised(rgb);
        result_.reflectance.assign(owner.wavelengths_.size(), 0.0);
        result_.scale = 0;
        result_.relativeRGBError = 0;
        result_.usedFallback = false;
        result_.iterations = 0;
        result_.inputWasClamped = colour != rgb;

        peak_ = largest(colour);
        if (peak_ <= 0) return false;
        normalized_ = colour / peak_;
        result_.scale = 2 * peak_;

        const LinearRgb white = LinearRgb::filled(1);
        if (largestMagnitude(normalized_ - white) < 1e-12 &&
            largestMagnitude(owner.whiteRGB_ - white) < 1e-10) {
            std::ranges::fill(result_.reflectance, 0.5);
            result_.relativeRGBError = errorOf(owner.displayRGB(result_.reflectance) * 2);
            return false;
        }
        // The brightest channel asks for about half of what a white reflects.
        fit_ = SpectralFit(normalized_ / 2, owner.maximumIterations_);
        return true;
    }

    SpectralFit& fit() { return fit_; }

    /// The spectrum of the finished fit, or the fallback's where the fit misses the colour.
    void finish(const FilmSpectralReconstructor& owner) {
        owner.kernel_.reflectance(fit_.coefficients(), result_.reflectance);
        result_.relativeRGBError = errorOf(fit_.rgb() * 2);
        result_.iterations = fit_.iterations();
        if (!std::isfinite(result_.relativeRGBError) || result_.relativeRGBError > acceptedError) {
            result_.usedFallback = true;
            useFallback(owner);
        }
    }

    const FilmReconstructedSpectrum& result() const { return result_; }

private:
    double errorOf(const LinearRgb& rgb) const { return largestMagnitude(rgb - normalized_); }

    void useFallback(const FilmSpectralReconstructor& owner) {
        std::vector<double> mixture;
        mixture.reserve(owner.fallbackBasis_.size());
        const LinearRgb target = normalized_ / 2;
        for (const Vector3& basis : owner.fallbackBasis_) {
            const double value = dot(basis, target);
            mixture.push_back(std::isfinite(value) && value > 0 ? value : 0.0);
        }
        const double peak = std::ranges::max(mixture);
        if (!(peak > 0)) return;
        for (double& value : mixture) value /= peak;
        result_.relativeRGBError = errorOf(owner.displayRGB(mixture) * (2 * peak));
        result_.scale = peak_ * (2 * peak);
        result_.reflectance = std::move(mixture);
    }

    double peak_ = 0; ///< the colour's largest channel
    LinearRgb normalized_;
    SpectralFit fit_;
    FilmReconstructedSpectrum result_;
};

FilmSpectralReconstructor::FilmSpectralReconstructor(std::vector<LinearRgb> observerRGBWeights,
                                                     std::vector<double> wavelengths,
                                                     std::vector<Vector3> fallbackBasis,
                                                     int maximumIterations)
    : observerRGBWeights_(std::move(observerRGBWeights)), wavelengths_(std::move(wavelengths)),
      fallbackBasis_(std::move(fallbackBasis)),
      kernel_(observerRGBWeights_,
              positions(observerRGBWeights_.size(), wavelengths_, fallbackBasis_.size())),
      maximumIterations_(std::max(maximumIterations, 0)) {
    for (const LinearRgb& weights : observerRGBWeights_) whiteRGB_ += weights;
}

LinearRgb FilmSpectralReconstructor::displayRGB(std::span<const double> reflectance) const {
    LinearRgb rgb;
    for (std::size_t i = 0; i < reflectance.size(); ++i) rgb += observerRGBWeights_[i] * reflectance[i];
    return rgb;
}

FilmReconstructedSpectrum FilmSpectralReconstructor::reconstruct(const LinearRgb& rgb) const {
    FilmReconstructedSpectrum result;
    reconstruct(std::span(&rgb, 1), [&](std::size_t, const FilmReconstructedSpectrum& s) { result = s; });
    return result;
}

void FilmSpectralReconstructor::reconstruct(
    std::span<const LinearRgb> colours,
    const std::function<void(std::size_t, const FilmReconstructedSpectrum&)>& finished) const {
    struct Lane {
        Job job;
        std::size_t index = 0;
        bool busy = false;
    };
    std::array<Lane, SigmoidKernel::lanes> lanes;
    SigmoidKernel::Candidates candidates;
    SigmoidKernel::Evaluations evaluations;
    std::size_t next = 0;

    const auto refill = [&](Lane& lane) {
        for (lane.busy = false; !lane.busy && next < colours.size(); ++next) {
            lane.index = next;
            lane.busy = lane.job.begin(*this, colours[next]);
            if (!lane.busy) finished(next, lane.job.result());
        }
    };
    const auto advance = [&](Lane& lane, std::size_t l) {
        FitEvaluation evaluation;
        for (std::size_t c = 0; c < 3; ++c) {
            evaluation.rgb[c] = evaluations.rgb[c][l];
            for (std::size_t k = 0; k < 3; ++k) {
                evaluation.derivatives[k][c] = evaluations.derivatives[k][c][l];
            }
        }
        if (lane.job.fit().advance(evaluation)) return;
        lane.job.finish(*this);
        finished(lane.index, lane.job.result());
        refill(lane);
    };

    for (Lane& lane : lanes) refill(lane);
    while (std::ranges::any_of(lanes, &Lane::busy)) {
        for (std::size_t l = 0; l < lanes.size(); ++l) {
            for (std::size_t c = 0; c < 3; ++c) candidates.c[c][l] = lanes[l].job.fit().candidate()[c];
        }
        kernel_.evaluate(candidates, evaluations);
        for (std::size_t l = 0; l < lanes.size(); ++l) {
            if (lanes[l].busy) advance(lanes[l], l);
        }
    }
}

} // namespace lumisort::film
