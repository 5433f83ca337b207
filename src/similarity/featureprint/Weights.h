#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lumisort::similarity {

enum class LayerKind : std::uint16_t { full3x3 = 0, depthwise3x3 = 1, pointwise = 2 };

/// What the weights file says of a layer, in its order and with its numbers.
struct LayerShape {
    LayerKind kind = LayerKind::pointwise;
    std::uint16_t in = 0;
    std::uint16_t out = 0;
    std::uint16_t stride = 1;

    std::size_t weightCount() const;
    friend bool operator==(const LayerShape&, const LayerShape&) = default;
};

struct Layer {
    LayerShape shape;
    std::vector<float> weights; ///< full [out][3][3][in], depthwise [3][3][out], pointwise [out][in]
    std::vector<float> bias;    ///< [out]
};

/// The contents of a weights file, whose layout stands in data/feature-print/make-weights.
struct Weights {
    std::string name;
    std::string sha256;        ///< of everything but the digest itself, 64 lower-case hexadecimal digits
    std::vector<Layer> layers; ///< three for each block of architecture::blocks, in order
};

/// Reads and checks a weights file: its size, its digest, its version and that its layers are those of the
/// architecture. Reads nothing of a file that has another size. Throws FeaturePrintError `unsupported`.
Weights readWeights(const std::filesystem::path& path);

} // namespace lumisort::similarity
