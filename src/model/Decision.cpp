#include "model/Decision.h"

namespace lumisort::model {

Decision::Value Decision::of(std::optional<library::ReviewDecision> decision) {
    if (!decision) return None;
    return *decision == library::ReviewDecision::keep ? Keep : Skip;
}

} // namespace lumisort::model
