#pragma once

#include "film/optics/MaterialProvenance.h"
#include "film/optics/MonotoneCurve.h"
#include "film/optics/SampledSpectrum.h"
#include "film/optics/Vector3.h"

#include <string>
#include <vector>

namespace lumisort::film {

/// The grain of a stock. Vectors hold one number for each layer: red, green, blue.
struct MaterialGrain {
    Vector3 meanRadiusMicrometres;           ///< of the silver grains
    double radiusCoefficientOfVariation = 0; ///< spread of the radii over their mean
    double densityAmount = 0;                ///< strength of the density modulation
    bool isMonochrome = false;               ///< all layers share one grain field
    MaterialProvenance provenance;

    friend bool operator==(const MaterialGrain&, const MaterialGrain&) = default;
};

/// Light that the film's back returns into its layers: a narrow core and a wide tail, both Gaussian.
struct MaterialHalation {
    Vector3 scatteringFraction;   ///< of each layer's light
    Vector3 coreSigmaMicrometres; ///< standard deviation on the film
    Vector3 tailSigmaMicrometres; ///< standard deviation on the film
    Vector3 tailWeight;           ///< share of the scattered light that goes into the tail
    MaterialProvenance provenance;

    friend bool operator==(const MaterialHalation&, const MaterialHalation&) = default;
};

/// One emulsion layer.
struct FilmMaterialLayer {
    std::string name;             ///< "Red / cyan-forming"
    SampledSpectrum sensitivity;  ///< linear, relative
    MonotoneCurve characteristic; ///< density against base-10 log exposure in lux seconds
    SampledSpectrum dyeAbsorption;

    friend bool operator==(const FilmMaterialLayer&, const FilmMaterialLayer&) = default;
};

/// A measured film stock. A value: built once, then read from any thread.
struct FilmMaterialProfile {
    std::string id; ///< stable name of the profile and its version
    std::string title;
    int isoSpeed = 0;
    std::vector<FilmMaterialLayer> layers; ///< red, green, blue; readers use the first three
    SampledSpectrum baseDensity;           ///< base, fog and mask together
    /// Base-10 log exposure in lux seconds of a scene patch of 18 % reflectance.
    double neutralLogExposure = 0;
    MaterialGrain grain;
    MaterialHalation halation;
    std::vector<MaterialProvenance> provenance; ///< one entry for each group of numbers

    friend bool operator==(const FilmMaterialProfile&, const FilmMaterialProfile&) = default;
};

} // namespace lumisort::film
