#pragma once

#include <array>
#include <cstddef>

namespace lumisort::similarity::architecture {

/// MobileNetV2 (Sandler et al. 2018, table 2) up to its twelfth inverted residual. A block widens its input
/// with a 1 × 1 convolution, filters each channel with a 3 × 3 one, narrows with a 1 × 1 one and adds its
/// input where the shapes agree. All but the last of the three end in ReLU6. The first block is widened by
/// the network's first convolution, 3 × 3 with stride 2 over the picture, instead.
struct Block {
    int in;        ///< channels of its input; of the first block: of the picture
    int hidden;    ///< channels of the filtered map
    int out;       ///< channels of its output
    int stride;    ///< of the 3 × 3 filter
    int side;      ///< of the square map that is filtered
    bool residual; ///< whether the input is added to the output

    constexpr int outSide() const { return side / stride; }
};

inline constexpr int inputSide = 224;
inline constexpr int inputChannels = 3;

namespace detail {
struct Group {
    int expansion, channels, repeats, stride;
};
inline constexpr std::array<Group, 5> groups = {
    {{1, 16, 1, 1}, {6, 24, 2, 2}, {6, 32, 3, 2}, {6, 64, 4, 2}, {6, 96, 3, 1}}};
} // namespace detail

inline constexpr std::array<Block, 13> blocks = [] {
    std::array<Block, 13> result{};
    int channels = 32; // of the first convolution
    int side = inputSide / 2;
    std::size_t next = 0;
    for (const detail::Group& group : detail::groups) {
        for (int repeat = 0; repeat < group.repeats; ++repeat) {
            const int stride = repeat == 0 ? group.stride : 1;
            const int in = next == 0 ? inputChannels : channels;
            const bool residual = stride == 1 && channels == group.channels;
            result[next++] = {in, channels * group.expansion, group.channels, stride, side, residual};
            channels = group.channels;
            side /= stride;
        }
    }
    return result;
}();

inline constexpr int outputChannels = blocks.back().out;
inline constexpr int outputSide = blocks.back().outSide();

} // namespace lumisort::similarity::architecture
