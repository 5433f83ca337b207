#pragma once

#include "similarity/SimilarityMethod.h"

namespace lumisort::model {

using similarity::allSimilarityMethods;
using similarity::SimilarityMethod;

} // namespace lumisort::model
