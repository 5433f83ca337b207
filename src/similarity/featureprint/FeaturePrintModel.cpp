#include "similarity/featureprint/FeaturePrintModel.h"

#include "similarity/featureprint/Architecture.h"
#include "similarity/featureprint/AreaFilter.h"
#include "similarity/featureprint/Network.h"
#include "similarity/featureprint/Weights.h"

#include <cmath>
#include <system_error>

namespace lumisort::similarity {

namespace {

constexpr const char* weightsName = "feature-print.weights";

[[noreturn]] void refuse(const char* reason) {
    throw FeaturePrintError(FeaturePrintFailure::noPrint, reason);
}

void check(const images::Bitmap& photo) {
    constexpr int maxSide = 65'535;
    if (photo.isEmpty() || photo.width() > maxSide || photo.height() > maxSide)
        refuse("The picture is empty.");
}

/// The means of the four quarters of the last map, as a unit vector.
FeaturePrint pooled(std::span<const float> map) {
    constexpr std::size_t side = architecture::outputSide, channels = architecture::outputChannels,
                          cell = side / 2;
    static_assert(4 * channels == featurePrintLength);
    FeaturePrint print;
    for (std::size_t y = 0; y < side; ++y)
        for (std::size_t x = 0; x < side; ++x)
            for (std::size_t c = 0; c < channels; ++c)
                print.values[(y / cell * 2 + x / cell) * channels + c] += map[(y * side + x) * channels + c];
    // Sums do as well as means: the norm takes the common factor out.
    double squares = 0;
    for (const float value : print.values) squares += static_cast<double>(value) * value;
    const double norm = std::sqrt(squares);
    if (!std::isfinite(norm) || norm == 0) refuse("The picture has no visual features.");
    for (float& value : print.values) value = static_cast<float>(value / norm);
    return print;
}

} // namespace

struct FeaturePrintModel::Scratch::Buffers {
    AreaFilter filter;
    NetworkBuffers network;
};

FeaturePrintModel::Scratch::Scratch() : buffers_(std::make_unique<Buffers>()) {}
FeaturePrintModel::Scratch::~Scratch() = default;
FeaturePrintModel::Scratch::Scratch(Scratch&&) noexcept = default;
FeaturePrintModel::Scratch& FeaturePrintModel::Scratch::operator=(Scratch&&) noexcept = default;

std::filesystem::path FeaturePrintModel::defaultWeights() {
    std::error_code missing;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", missing);
    const std::filesystem::path installed =
        program.parent_path().parent_path() / "share" / "lumisort" / weightsName;
    const std::filesystem::path built = std::filesystem::path(LUMISORT_FEATURE_PRINT_DATA) / weightsName;
    return !std::filesystem::exists(installed, missing) && std::filesystem::exists(built, missing)
               ? built
               : installed;
}

FeaturePrintModel::FeaturePrintModel(const std::filesystem::path& weights) {
    const Weights read = readWeights(weights);
    identity_ = {read.name, read.sha256, revision};
    network_ = std::make_unique<const Network>(read);
}
FeaturePrintModel::~FeaturePrintModel() = default;
FeaturePrintModel::FeaturePrintModel(FeaturePrintModel&&) noexcept = default;
FeaturePrintModel& FeaturePrintModel::operator=(FeaturePrintModel&&) noexcept = default;

FeaturePrint FeaturePrintModel::print(const images::Bitmap& photo, Scratch& scratch) const {
    check(photo);
    auto& [filter, buffers] = *scratch.buffers_;
    constexpr int side = architecture::inputSide;
    const std::span picture(buffers.picture.get(), std::size_t{architecture::inputChannels} * side * side);
    filter.shrink(photo, side, side, picture);
    for (float& value : picture) value = value * (1 / 127.5F) - 1.0F; // as the network was trained
    return pooled(network_->run(buffers));
}

} // namespace lumisort::similarity
