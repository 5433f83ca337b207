#pragma once

#include "film/optics/FilmOptics.h"
#include "film/optics/FilmSettings.h"
#include "film/render/Planes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace lumisort::film {

/// What one rendering of one picture is made with.
struct FilmRecipe {
    std::shared_ptr<const FilmOptics> optics; ///< of the settings' stock and paper
    FilmSettings settings;                    ///< validated
    int width = 0;                            ///< of the whole picture, in pixels
    int height = 0;
    std::uint32_t grainSeed = 0;

    Rectangle picture() const { return {0, 0, width, height}; }
    /// The scale of all spatial effects.
    double pixelsPerMicrometre() const {
        return std::max(width, height) / (longEdgeMM(settings.format) * 1000);
    }
};

/// Memory that a stage works in, kept from strip to strip by one worker.
struct StageScratch {
    std::array<Planes, 3> planes;
};

/// Computes `out` from `in`, whose region is that of `out` grown by the stage's border as far as the picture
/// goes. Safe to call from several threads, each with its own scratch. A pixel depends on its place in the
/// picture alone: whatever the regions, it is the same number bit for bit.
using StageRendering = std::function<void(const PlaneView& in, const PlaneView& out, StageScratch& scratch)>;

/// The settings that shape a stage's result, as flags.
enum class FilmSetting : unsigned {
    stock = 1,
    paper = 2,
    format = 4,
    exposure = 8,
    printExposure = 16,
    grain = 32,
    halation = 64,
    colorSeparation = 128,
};
constexpr unsigned operator|(FilmSetting a, FilmSetting b) {
    return static_cast<unsigned>(a) | static_cast<unsigned>(b);
}
constexpr unsigned operator|(unsigned a, FilmSetting b) {
    return a | static_cast<unsigned>(b);
}

/// One step of the film chain.
struct Stage {
    std::string_view name;
    unsigned reads; ///< FilmSetting flags
    /// How many pixels around a pixel shape it.
    int (*border)(const FilmRecipe&);
    /// The stage with everything computed that does not depend on the pixels; empty when the settings skip
    /// it.
    StageRendering (*prepare)(const FilmRecipe&);
};

/// The whole chain in order, from scene-linear RGB to the print's linear display RGB.
std::span<const Stage> filmStages();

/// `settings` with every setting reset that none of the first `count` stages reads: two edits for which it is
/// equal have the same picture after these stages.
FilmSettings settingsRead(const FilmSettings& settings, std::size_t count);

} // namespace lumisort::film
