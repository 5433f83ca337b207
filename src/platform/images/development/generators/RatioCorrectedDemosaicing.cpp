#include <Halide.h>

#include <array>

namespace lumisort::images::pipelines {

using namespace Halide;

/// A Bayer mosaic to linear sRGB: ratio-corrected demosaicing (RCD, as Luis Sanz Rodríguez describes it) and
/// the camera's colour matrix.
///
/// The mosaic comes as quads of 2 × 2 samples whose sites are numbered 0 red, 1 green beside red, 2 green
/// beside blue, 3 blue. Below, offsets (dx, dy) count samples from a site, whatever quad they fall into.
class RatioCorrectedDemosaicing : public Generator<RatioCorrectedDemosaicing> {
public:
    Input<Buffer<float>> mosaic{"mosaic", 3};  ///< quad column, quad row, site; six quads more on each side
    Input<Buffer<float>> matrix{"matrix", 2};  ///< column, row: camera RGB to linear sRGB
    Output<Buffer<float>> linear{"linear", 3}; ///< x, y, channel; starts at a whole quad

    void generate() {
        for (int site = 0; site < 4; ++site) samples[site](u, v) = mosaic(u, v, site);
        measureDirections();
        interpolateGreen();
        interpolateRedAtBlue();
        interpolateRedAndBlueAtGreen();
        linear(x, y, c) = interleaved([this](int site) {
            return matrix(0, c) * at(red, site, 0, 0, true) + matrix(1, c) * at(green, site, 0, 0, true) +
                   matrix(2, c) * at(blue, site, 0, 0, true);
        });
    }

    void schedule() {
        for (int dimension : {0, 1}) linear.dim(dimension).set_min(0);
        mosaic.dim(2).set_bounds(0, 4);
        matrix.dim(0).set_bounds(0, 3);
        matrix.dim(1).set_bounds(0, 3);
        Var row{"row"}, quadRow{"quadRow"};
        linear.bound(c, 0, 3)
            .split(y, quadRow, row, 2, TailStrategy::RoundUp)
            .reorder(x, c, row, quadRow)
            .unroll(c)
            .unroll(row)
            .vectorize(x, 16, TailStrategy::RoundUp);
        for (Func* plane : kept()) plane->store_root().compute_at(linear, quadRow).vectorize(u, 8);
    }

private:
    static constexpr int redSite = 0, blueSite = 3;
    static constexpr bool isGreen(int site) { return site == 1 || site == 2; }
    using Sites = std::array<Func, 4>;

    /// The plane's value `dx`, `dy` samples from `site`; of the quad that holds (x, y) where `ofPixel`.
    Expr at(const Sites& plane, int site, int dx, int dy, bool ofPixel = false) {
        const int column = (site & 1) + dx, line = (site >> 1) + dy;
        const Expr quad = ofPixel ? x / 2 : Expr(u), quadLine = ofPixel ? y / 2 : Expr(v);
        return plane[static_cast<std::size_t>((line & 1) * 2 + (column & 1))](quad + (column >> 1),
                                                                              quadLine + (line >> 1));
    }

    template <class OfSite>
    Expr interleaved(OfSite value) {
        return select(y % 2 == 0, select(x % 2 == 0, value(0), value(1)),
                      select(x % 2 == 0, value(2), value(3)));
    }

    /// The share of the first of two directional energies: 0 … 1, 0.5 where there is nothing to tell them
    /// apart.
    static Expr share(const Expr& first, const Expr& second) {
        constexpr float flat = 1e-10f;
        return (first + flat) / (first + second + 2.0f * flat);
    }

    /// Where a site cannot tell its direction, its four neighbours along the diagonals may.
    Expr surer(const Sites& direction, int site) {
        const Expr own = at(direction, site, 0, 0);
        const Expr around = (at(direction, site, -1, -1) + at(direction, site, 1, -1) +
                             at(direction, site, -1, 1) + at(direction, site, 1, 1)) *
                            0.25f;
        return select(abs(own - 0.5f) < abs(around - 0.5f), around, own);
    }

    /// The energy of detail along (dx, dy): second differences between samples of one colour, which neither a
    /// ramp nor the colours' alternation moves, sharpened by a second difference between neighbours.
    Expr detail(int site, int dx, int dy) {
        const auto sample = [&](int k) { return at(samples, site, k * dx, k * dy); };
        const Expr filtered = 4.0f * sample(0) - (sample(1) + sample(-1)) - 2.0f * (sample(2) + sample(-2)) +
                              (sample(3) + sample(-3));
        return filtered * filtered;
    }

    void measureDirections() {
        for (int site = 0; site < 4; ++site) {
            verticalDetail[site](u, v) = detail(site, 0, 1);
            horizontalDetail[site](u, v) = detail(site, 1, 0);
        }
        for (int site = 0; site < 4; ++site)
            localDirection[site](u, v) =
                share(at(verticalDetail, site, 0, -1) + at(verticalDetail, site, 0, 0) +
                          at(verticalDetail, site, 0, 1),
                      at(horizontalDetail, site, -1, 0) + at(horizontalDetail, site, 0, 0) +
                          at(horizontalDetail, site, 1, 0));
        for (int site = 0; site < 4; ++site) direction[site](u, v) = surer(localDirection, site);
    }

    /// An estimate and how much its neighbourhood varies: the less, the more it counts.
    struct Estimate {
        Expr value, variation;
    };
    static Expr weighed(const Estimate& a, const Estimate& b) {
        return (b.variation * a.value + a.variation * b.value) / (a.variation + b.variation);
    }
    static Expr difference(const Expr& a, const Expr& b) { return abs(a - b); }

    /// The green sample next to a site towards (dx, dy), corrected by the ratio of the low-pass intensities
    /// here and two samples on. The pedestal keeps the ratio near 1 in what is all but black.
    Estimate greenTowards(int site, int dx, int dy) {
        constexpr float pedestal = 1.0f / 512;
        const auto sample = [&](int k) { return at(samples, site, k * dx, k * dy); };
        const Expr here = at(lowPass, site, 0, 0), there = at(lowPass, site, 2 * dx, 2 * dy);
        return {sample(1) * (2.0f * (here + pedestal)) / (here + there + 2.0f * pedestal),
                least + difference(sample(1), sample(-1)) + difference(sample(0), sample(2)) +
                    difference(sample(1), sample(3)) + difference(sample(2), sample(4))};
    }

    void interpolateGreen() {
        for (int site : {redSite, blueSite}) {
            const auto column = [&](int dx) {
                return at(samples, site, dx, -1) + 2.0f * at(samples, site, dx, 0) + at(samples, site, dx, 1);
            };
            lowPass[site](u, v) = max((column(-1) + 2.0f * column(0) + column(1)) * (1.0f / 16), 0.0f);
        }
        for (int site = 0; site < 4; ++site) {
            if (isGreen(site)) {
                green[site] = samples[site];
                continue;
            }
            const Expr vertical = weighed(greenTowards(site, 0, -1), greenTowards(site, 0, 1));
            const Expr horizontal = weighed(greenTowards(site, -1, 0), greenTowards(site, 1, 0));
            green[site](u, v) = lerp(vertical, horizontal, at(direction, site, 0, 0));
        }
    }

    /// Red and blue follow green by their ratio to it, which is what stays constant across an object under
    /// changing light. The pedestal turns that into a difference towards black, where ratios mean nothing.
    static constexpr float colourPedestal = 1.0f / 8;
    static Expr overGreen(const Expr& sample, const Expr& green) {
        return (sample + colourPedestal) / (max(green, 0.0f) + colourPedestal);
    }
    static Expr besideGreen(const Expr& ratio, const Expr& green) {
        return ratio * (max(green, 0.0f) + colourPedestal) - colourPedestal;
    }

    void interpolateRedAtBlue() {
        for (int site : {redSite, blueSite}) {
            ratio[site](u, v) = overGreen(at(samples, site, 0, 0), at(green, site, 0, 0));
            for (int slope : {0, 1}) {
                const auto sample = [&](int k) { return at(samples, site, slope ? -k : k, k); };
                const Expr curvature = sample(2) - 2.0f * sample(0) + sample(-2);
                diagonalDetail[slope][site](u, v) = curvature * curvature;
            }
        }
        for (int site : {redSite, blueSite}) {
            const auto along = [&](int slope) {
                const int dx = slope ? -1 : 1;
                return at(diagonalDetail[slope], site, dx, 1) + at(diagonalDetail[slope], site, 0, 0) +
                       at(diagonalDetail[slope], site, -dx, -1);
            };
            localDiagonal[site](u, v) = share(along(0), along(1));
        }
        for (int site : {redSite, blueSite}) {
            const auto towards = [&](int dx, int dy) -> Estimate {
                const auto sample = [&](int k) { return at(samples, site, k * dx, k * dy); };
                return {at(ratio, site, dx, dy),
                        least + difference(sample(1), sample(-1)) + difference(sample(1), sample(3)) +
                            difference(at(green, site, 0, 0), at(green, site, 2 * dx, 2 * dy))};
            };
            const Expr falling = weighed(towards(-1, -1), towards(1, 1));
            const Expr rising = weighed(towards(1, -1), towards(-1, 1));
            opposite[site](u, v) =
                besideGreen(lerp(falling, rising, surer(localDiagonal, site)), at(green, site, 0, 0));
        }
        red[redSite] = samples[redSite];
        red[blueSite] = opposite[blueSite];
        blue[blueSite] = samples[blueSite];
        blue[redSite] = opposite[redSite];
    }

    void interpolateRedAndBlueAtGreen() {
        for (Sites* colour : {&red, &blue})
            for (int site : {1, 2}) {
                const auto towards = [&](int dx, int dy) -> Estimate {
                    const auto sample = [&](int k) { return at(*colour, site, k * dx, k * dy); };
                    return {overGreen(sample(1), at(green, site, dx, dy)),
                            least + difference(sample(1), sample(-1)) + difference(sample(1), sample(3)) +
                                difference(at(green, site, 0, 0), at(green, site, 2 * dx, 2 * dy))};
                };
                const Expr vertical = weighed(towards(0, -1), towards(0, 1));
                const Expr horizontal = weighed(towards(-1, 0), towards(1, 0));
                (*colour)[static_cast<std::size_t>(site)](u, v) =
                    besideGreen(lerp(vertical, horizontal, at(direction, site, 0, 0)), at(green, site, 0, 0));
            }
    }

    /// What is computed row by row and kept for as long as rows below need it.
    std::vector<Func*> kept() {
        std::vector<Func*> planes;
        for (int site = 0; site < 4; ++site)
            for (Sites* plane : {&verticalDetail, &horizontalDetail, &localDirection, &direction})
                planes.push_back(&(*plane)[site]);
        for (int site : {redSite, blueSite})
            for (Sites* plane : {&lowPass, &green, &ratio, &diagonalDetail[0], &diagonalDetail[1],
                                 &localDiagonal, &opposite})
                planes.push_back(&(*plane)[site]);
        for (int site : {1, 2})
            for (Sites* plane : {&red, &blue}) planes.push_back(&(*plane)[site]);
        return planes;
    }

    static constexpr float least = 1e-5f; ///< of variation, so that weights stay finite

    Var u{"u"}, v{"v"}, x{"x"}, y{"y"}, c{"c"};
    Sites samples, verticalDetail, horizontalDetail, localDirection, direction, lowPass, green, ratio,
        localDiagonal, opposite, red, blue;
    std::array<Sites, 2> diagonalDetail; ///< along the falling and the rising diagonal
};

} // namespace lumisort::images::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::images::pipelines::RatioCorrectedDemosaicing, ratio_corrected_demosaicing)
