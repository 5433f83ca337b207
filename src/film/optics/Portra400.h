#pragma once

#include "film/optics/StockProfile.h"

namespace lumisort::film {

/// The study of a 400 ISO colour negative film after its published data sheet.
StockProfile portra400Profile();

} // namespace lumisort::film
