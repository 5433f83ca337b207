#pragma once

#include <stdexcept>
#include <string>

namespace lumisort::similarity {

enum class VisualScanFailure {
    nothingAnalyzed = 1, ///< a run in which no photo has a print
    tooLittleDetail = 2, ///< a photo that is (almost) one flat tone
    corruptFile,         ///< a photo that cannot be decoded, or prints without a distance
    fileChanged,         ///< a photo that changed while it was analyzed
};

/// What goes wrong with a photo, or with a run, of visual similarity. `what()` is shown as it stands.
class VisualScanError : public std::runtime_error {
public:
    VisualScanError(VisualScanFailure failure, const std::string& message)
        : std::runtime_error(message), failure_(failure) {}

    VisualScanFailure failure() const noexcept { return failure_; }

private:
    VisualScanFailure failure_;
};

} // namespace lumisort::similarity
