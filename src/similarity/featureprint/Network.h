#pragma once

#include "similarity/featureprint/Kernels.h"
#include "similarity/featureprint/Weights.h"

#include <memory>
#include <span>
#include <vector>

namespace lumisort::similarity {

/// The working memory of one run, 2.5 MB. Maps are stored row by row and pixel by pixel, a pixel's channels
/// together.
struct NetworkBuffers {
    NetworkBuffers();

    kernels::Floats picture; ///< in: 224 × 224 pixels of red, green, blue in -1…1; a run leaves it as it is
    kernels::Floats patches; ///< rows of the picture, rearranged for the first convolution
    kernels::Floats window;  ///< the rows of a block's widened map that its filter needs at the moment
    kernels::Floats zeros;   ///< a row of such a map outside of the picture
    kernels::Floats filtered;
    kernels::Floats maps[2];                      ///< between blocks, in turn
    std::unique_ptr<const float*[]> in, residual; ///< pixels for a kernel
    std::unique_ptr<float*[]> out;
};

/// The network of Architecture.h with its weights packed for this machine. Immutable; runs on the calling
/// thread.
class Network {
public:
    struct Block {
        kernels::Pointwise widen;
        kernels::Depthwise filter;
        kernels::Pointwise narrow;
    };

    explicit Network(const Weights& weights);

    /// Runs over `buffers.picture` and returns the last map, 14 × 14 pixels of 96 channels, inside `buffers`.
    /// Never allocates.
    std::span<const float> run(NetworkBuffers& buffers) const;

private:
    std::vector<Block> blocks_;
};

} // namespace lumisort::similarity
