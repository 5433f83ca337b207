#pragma once

#include "similarity/featureprint/FeaturePrintModel.h"

#include <memory>

namespace lumisort::similarity {

/// The network of all visual searches of the process (tens of megabytes), loaded at the first call. Any
/// thread. Throws FeaturePrintError where its weights cannot be read.
const std::shared_ptr<const FeaturePrintModel>& sharedFeaturePrintModel();

} // namespace lumisort::similarity
