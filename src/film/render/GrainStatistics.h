#pragma once

#include <array>
#include <vector>

namespace lumisort::film {

/// The disc model of developed grain: a layer's image is a random set of overlapping discs whose radii follow
/// a log-normal distribution, and a pixel sees the share of its area that they cover (Newson, Delon and
/// Galerne, A Stochastic Film Grain Model, Computer Graphics Forum 2017). Lengths are in mean radii, so that
/// it serves every layer.
class GrainStatistics {
public:
    /// A plane wave of the noise: its angular frequency in radians per mean radius.
    struct Mode {
        double x = 0;
        double y = 0;
    };
    struct Radius {
        double radius = 0;
        double probability = 0;
    };

    /// The waves' frequencies sample the model's power spectrum evenly in power; their number is held to
    /// 16…128. The coefficient of variation is that of the radii, held to 0…0.65 (0.35 where it is not
    /// finite).
    GrainStatistics(double coefficientOfVariation, int modeCount);

    double meanArea() const { return meanArea_; }
    double maximumRadius() const { return maximumRadius_; }
    const std::vector<Radius>& radii() const { return radii_; }
    const std::vector<Mode>& modes() const { return modes_; }

    /// The mean area that two equal discs share whose centres are this far apart.
    double meanOverlap(double distance) const;

    /// How much of a wave is left in the mean over a square pixel of this side.
    static double pixelResponse(const Mode& mode, double footprint);
    /// Mean of the square of pixelResponse over all waves: the variance that their sum keeps.
    double spectralPixelVariance(double footprint) const;

    /// Standard deviation of the covered share of a pixel of this side where `coverage` is covered on
    /// average, relative to a share that is 0 or 1 with even odds.
    double coverageDeviation(double coverage, double footprint) const;

private:
    void drawModes(int count);

    double meanArea_ = 0;
    double maximumRadius_ = 0;
    std::vector<Radius> radii_;
    std::vector<Mode> modes_;
};

} // namespace lumisort::film
