#include "similarity/database/FingerprintForm.h"

#include "similarity/FingerprintCanvas.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace lumisort::similarity {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are stored as they lie in memory");

/// A cell's mean is the sum of its 8-bit values over this.
constexpr double whiteSum = 255.0 * (canvasSide / colourGridSide) * (canvasSide / colourGridSide);
constexpr double normTolerance = 1e-3;

template <class Number>
void append(std::string& bytes, Number number) {
    const auto raw = std::bit_cast<std::array<char, sizeof(Number)>>(number);
    bytes.append(raw.data(), raw.size());
}

template <class Number>
Number take(std::string_view& bytes) {
    Number number;
    std::memcpy(&number, bytes.data(), sizeof number);
    bytes.remove_prefix(sizeof number);
    return number;
}

constexpr std::size_t fingerprintBytes = sizeof(std::uint64_t) * (1 + orientationCount) + sizeof(double) * 2 +
                                         sizeof(std::uint16_t) * colourValueCount;

} // namespace

std::string bytesOf(const VisualFingerprint& fingerprint) {
    std::string bytes;
    bytes.reserve(fingerprintBytes);
    append(bytes, fingerprint.hash);
    for (const auto hash : fingerprint.orientationHashes) append(bytes, hash);
    append(bytes, fingerprint.aspect);
    append(bytes, fingerprint.deviation);
    for (const double color : fingerprint.colors)
        append(bytes, static_cast<std::uint16_t>(std::lround(color * whiteSum)));
    return bytes;
}

std::optional<VisualFingerprint> fingerprintFrom(std::string_view bytes) {
    if (bytes.size() != fingerprintBytes) return std::nullopt;
    VisualFingerprint fingerprint;
    fingerprint.hash = take<std::uint64_t>(bytes);
    for (std::size_t i = 0; i < orientationCount; ++i)
        fingerprint.orientationHashes.push_back(take<std::uint64_t>(bytes));
    fingerprint.aspect = take<double>(bytes);
    fingerprint.deviation = take<double>(bytes);
    for (std::size_t i = 0; i < colourValueCount; ++i)
        fingerprint.colors.push_back(take<std::uint16_t>(bytes) / whiteSum);
    if (!(fingerprint.aspect > 0) || !std::isfinite(fingerprint.aspect) ||
        !std::isfinite(fingerprint.deviation))
        return std::nullopt;
    return fingerprint;
}

std::string bytesOf(const FeaturePrint& print) {
    std::string bytes;
    bytes.reserve(sizeof print.values);
    for (const float value : print.values) append(bytes, value);
    return bytes;
}

std::optional<FeaturePrint> featurePrintFrom(std::string_view bytes) {
    if (bytes.size() != featurePrintLength * sizeof(float)) return std::nullopt;
    FeaturePrint print;
    double square = 0;
    for (auto& value : print.values) {
        value = take<float>(bytes);
        square += static_cast<double>(value) * value;
    }
    if (!(std::abs(square - 1) < normTolerance)) return std::nullopt;
    return print;
}

} // namespace lumisort::similarity
