#pragma once

#include "film/optics/FilmMaterialProfile.h"

namespace lumisort::film::FilmMaterials {

/// The study of a 400 ISO colour negative film after its published data sheet, built on first use from
/// the tables in Portra400Tables.h. Safe to ask for from any thread.
const FilmMaterialProfile& portra400();

} // namespace lumisort::film::FilmMaterials
