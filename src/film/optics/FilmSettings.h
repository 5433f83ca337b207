#pragma once

#include "film/optics/FilmFormat.h"
#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"

namespace lumisort::film {

/// One film edit, complete in itself; the initial values are those of a new edit. What comes from a control
/// or a document may be any number, so the users of an edit take one of its two clamped views.
struct FilmSettings {
    FilmStock stock = FilmStock::portra400;
    FilmPaper paper = FilmPaper::glossy;
    FilmFormat format = FilmFormat::mm35;
    double exposure = 0;           ///< of the camera, in stops
    double printExposure = 0;      ///< of the print, in stops
    double grain = 0.35;           ///< amount, 0…1
    double halation = 0.2;         ///< amount, 0…1
    double colorSeparation = 0.25; ///< strength of the inter-layer effect, 0…1

    /// Within what the editor offers: exposure ±3, print exposure ±2, amounts 0…1. An adjustment that is not
    /// finite gets the value of a new edit.
    FilmSettings validatedForEditing() const;
    /// Within what the renderer takes: both exposures ±5, else the same.
    FilmSettings validated() const;

    friend bool operator==(const FilmSettings&, const FilmSettings&) = default;
};

} // namespace lumisort::film
