#pragma once

#include "platform/files/FileUrl.h"
#include "platform/images/Bitmap.h"
#include "similarity/featureprint/FeaturePrint.h"
#include "similarity/featureprint/FeaturePrintModel.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace lumisort::similarity {

/// Longest side of the picture that a print is made of, in pixels.
inline constexpr int featurePictureSide = 1024;

/// The decoder and the model of a visual scan; tests replace them. Both functions are called from several
/// threads at once.
struct VisualScanDependencies {
    /// Of the model that makes the prints; shared by all prints that it makes.
    std::shared_ptr<const FeaturePrintIdentity> identity;
    /// The upright photo, longest side at most featurePictureSide. Throws images::ImageError where the file
    /// is no readable photo, and tasks::Cancelled.
    std::function<images::Bitmap(const files::FileUrl&, const std::stop_token&)> picture;
    /// Throws FeaturePrintError.
    std::function<FeaturePrint(const images::Bitmap&)> print;

    /// The program's own decoder and network, with as many scratch memories as there are threads at work.
    static VisualScanDependencies of(std::shared_ptr<const FeaturePrintModel> model);
};

} // namespace lumisort::similarity
