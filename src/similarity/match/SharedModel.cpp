#include "similarity/match/SharedModel.h"

namespace lumisort::similarity {

const std::shared_ptr<const FeaturePrintModel>& sharedFeaturePrintModel() {
    static const auto model = std::make_shared<const FeaturePrintModel>();
    return model;
}

} // namespace lumisort::similarity
