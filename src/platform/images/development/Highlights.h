#pragma once

#include "platform/images/development/CameraColour.h"

#include <vector>

namespace lumisort::images {

/// What a saturated channel would have read, from the channels that still tell and the colour of the light
/// around.
///
/// The colour of each block of the picture is the mean of its unsaturated light, the brightest counting most.
/// Blocks without any take theirs from coarser and coarser blocks around (pull-push interpolation, Gortler et
/// al. 1996, The Lumigraph, 3.4). Where the light around ends far below saturation, as at the rim of a lamp,
/// it tells nothing of the saturated colour, which is then neutral.
class Highlights {
public:
    using Channels = CameraColour::PerChannel<float>;

    /// Sums over the unsaturated light of a block; weights add up, so blocks do.
    struct Light {
        Channels colour{};  ///< weighted sum of white-balanced values
        float weight = 0;   ///< 1 for light just below saturation
        float nearness = 0; ///< weighted sum of how near to saturation, 0 … 1

        /// Counts light of these white-balanced values; `nearest` is their largest share of saturation.
        void add(const Channels& values, int channels, float nearest);
    };

    /// `blocks`: the light of blocks of `blockSide` pixels, row by row.
    Highlights(int channels, int blockSide, int columns, int rows, std::vector<Light> blocks);

    /// What is known of the light at a place: the mean value of each channel, with saturated samples counted
    /// as full saturation, and the share of its samples that are not saturated.
    struct Evidence {
        Channels mean{};
        Channels unsaturated{};
    };
    /// The light's white-balanced channels at the pixel position (x, y), none of the saturated below
    /// saturation.
    Channels estimate(float x, float y, const Evidence& evidence) const;

private:
    /// Means of the channels over their own mean, interpolated between blocks.
    Channels colourAt(float x, float y) const;

    int channels_;
    float blockSide_;
    int columns_, rows_;
    std::vector<Channels> colours_;
};

} // namespace lumisort::images
