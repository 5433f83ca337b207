#include "film/render/LiteralChain.h"

#include <algorithm>
#include <cmath>

namespace lumisort::film::literal {

namespace {

using Pixel = std::array<double, 3>;

Pixel mix(const Pixel& a, const Pixel& b, double weight) {
    Pixel mixed;
    for (std::size_t c = 0; c < 3; ++c) mixed[c] = a[c] * (1 - weight) + b[c] * weight;
    return mixed;
}

Pixel lookUp(const FilmLookupCube& cube, const Pixel& colour) {
    std::array<int, 3> low, high;
    Pixel weight;
    for (std::size_t c = 0; c < 3; ++c) {
        const double position = std::clamp(colour[c], 0.0, 1.0) * (cube.dimension() - 1);
        low[c] = static_cast<int>(std::floor(position));
        high[c] = std::min(low[c] + 1, cube.dimension() - 1);
        weight[c] = position - low[c];
    }
    const auto node = [&](int r, int g, int b) {
        const auto f = cube.node(r, g, b);
        return Pixel{f[0], f[1], f[2]};
    };
    const auto row = [&](int g, int b) { return mix(node(low[0], g, b), node(high[0], g, b), weight[0]); };
    return mix(mix(row(low[1], low[2]), row(high[1], low[2]), weight[1]),
               mix(row(low[1], high[2]), row(high[1], high[2]), weight[1]), weight[2]);
}

double densityAt(const FilmOptics& optics, std::size_t layer, double exposure) {
    const double relativeLog = std::log(std::max(exposure, 1e-12) / 0.18) / std::log(10.0);
    const double position = std::clamp((relativeLog + 6) / 9, 0.0, 1.0) * 2047;
    const auto low = static_cast<std::size_t>(position);
    const auto high = std::min<std::size_t>(low + 1, 2047);
    const double weight = position - static_cast<double>(low);
    return optics.curves.texels[low * 4 + layer] * (1 - weight) +
           optics.curves.texels[high * 4 + layer] * weight;
}

template <class Function>
Image mapped(const Image& image, Function function) {
    Image result(image.width, image.height);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) result.at(x, y) = function(image.at(x, y), x, y);
    return result;
}

double pixelsPerMM(const FilmRecipe& recipe) {
    return std::max(recipe.width, recipe.height) / (recipe.settings.format == FilmFormat::mm35 ? 36.0 : 60.0);
}

constexpr double pi = 3.14159265358979323846;

double sinc(double x) {
    return std::abs(x) < 1e-7 ? 1 - x * x / 6 : std::sin(x) / x;
}

std::vector<std::pair<double, double>> gaussLegendre(int n) {
    const auto evaluate = [n](double x) {
        double p0 = 1, p1 = x;
        for (int k = 2; k <= n; ++k) {
            const double p2 = ((2.0 * k - 1) * x * p1 - (k - 1.0) * p0) / k;
            p0 = p1, p1 = p2;
        }
        return std::pair(p1, n * (x * p1 - p0) / (x * x - 1));
    };
    std::vector<std::pair<double, double>> rule;
    for (int i = 0; i < n; ++i) {
        double x = std::cos(pi * (i + 0.75) / (n + 0.5));
        for (int pass = 0; pass < 16; ++pass) {
            const auto [p, slope] = evaluate(x);
            x -= p / slope;
            if (std::abs(p / slope) < 1e-14) break;
        }
        const double slope = evaluate(x).second;
        rule.emplace_back((x + 1) / 2, 1 / ((1 - x * x) * slope * slope));
    }
    return rule;
}

/// The disc model of one coefficient of variation, written out.
struct Discs {
    explicit Discs(double variation) {
        const double sigma = std::sqrt(std::log(1 + variation * variation));
        double sum = 0;
        for (const auto& [t, w] : gaussLegendre(24)) {
            const double z = 9 * (t - 0.5);
            radii.emplace_back(std::exp(sigma * z - sigma * sigma / 2),
                               9 * w * std::exp(-z * z / 2) / 2.5066282746310002);
            sum += radii.back().second;
        }
        for (auto& [r, p] : radii) {
            p /= sum;
            area += p * pi * r * r;
            largest = std::max(largest, r);
        }
        constexpr double step = 0.09375;
        const double h = 2 * largest / 768;
        std::vector<double> power{0}, cumulative{0};
        for (int j = 1; j <= 384; ++j) {
            double s = 0;
            for (int k = 0; k <= 768; ++k) {
                const double covariance = (std::exp(std::log(2.0) / area * overlap(k * h)) - 1) / 4;
                const double simpson = k == 0 || k == 768 ? 1 : k % 2 ? 4 : 2;
                s += h / 3 * simpson * (k * h) * covariance * ::j0(step * j * k * h);
            }
            power.push_back(std::max(0.0, step * j * s));
            cumulative.push_back(cumulative.back() + 0.5 * step * (power[power.size() - 2] + power.back()));
        }
        for (int i = 0; i < 64; ++i) {
            const double target = cumulative.back() * (i + 0.5) / 64;
            std::size_t j = 1;
            while (cumulative[j] < target) ++j;
            const double q =
                step * (static_cast<double>(j) - 1 +
                        (target - cumulative[j - 1]) / std::max(cumulative[j] - cumulative[j - 1], 1e-15));
            const double angle = i * pi * 0.7639320225002102 + 0.371;
            modes.emplace_back(q * std::cos(angle), q * std::sin(angle));
        }
    }

    double overlap(double d) const {
        double mean = 0;
        for (const auto& [r, p] : radii)
            if (d < 2 * r)
                mean += p * (2 * r * r * std::acos(d / (2 * r)) - d / 2 * std::sqrt(4 * r * r - d * d));
        return mean;
    }

    std::vector<std::pair<double, double>> radii, modes;
    double area = 0, largest = 0;
};

const Discs& discsOf(const FilmRecipe& recipe) {
    // All stocks have the same coefficient of variation; the table takes long to sum.
    static const Discs discs(recipe.optics->model.stock.grain.radiusCoefficientOfVariation);
    return discs;
}

double footprintOf(const FilmRecipe& recipe, std::size_t layer) {
    const auto& grain = recipe.optics->model.stock.grain;
    return 1000 / pixelsPerMM(recipe) / grain.meanRadiusMicrometres[grain.isMonochrome ? 0 : layer];
}

std::uint64_t mixBits(std::uint64_t z) {
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

double uniform(std::uint64_t z) {
    return (static_cast<double>(z >> 11) + 0.5) * std::pow(2.0, -53);
}

/// Cosine and sine amplitudes [wave][layer].
struct Amplitudes {
    std::vector<Pixel> cosine, sine;
};

Amplitudes amplitudesOf(const FilmRecipe& recipe) {
    const auto& grain = recipe.optics->model.stock.grain;
    constexpr std::uint64_t g = 0x9E3779B97F4A7C15u;
    const auto draw = [](std::uint64_t first, std::uint64_t second) {
        return std::sqrt(-2 * std::log(uniform(mixBits(first)))) *
               std::cos(2 * pi * uniform(mixBits(second)));
    };
    std::uint64_t state = 0x9E3779B9ull * 4294967296ull + recipe.grainSeed;
    Amplitudes amplitudes;
    for (int i = 0; i < 64; ++i) {
        const double a = draw(state + g, state + 2 * g), b = draw(state + 3 * g, state + 4 * g);
        const std::uint64_t t = state + 4 * g;
        Pixel cosine, sine;
        for (std::uint64_t k = 0; k < 3; ++k) {
            const double share = std::sqrt(grain.correlation), own = std::sqrt(1 - grain.correlation);
            const double c = draw(t + g + 4 * g * k, t + 2 * g + 4 * g * k);
            const double s = draw(t + 3 * g + 4 * g * k, t + 4 * g + 4 * g * k);
            cosine[k] = grain.isMonochrome ? a : share * a + own * c;
            sine[k] = grain.isMonochrome ? b : share * b + own * s;
        }
        amplitudes.cosine.push_back(cosine);
        amplitudes.sine.push_back(sine);
        state = t + 12 * g;
    }
    return amplitudes;
}

double pixelResponse(const std::pair<double, double>& mode, double footprint) {
    return sinc(footprint * mode.first / 2) * sinc(footprint * mode.second / 2);
}

Pixel noiseAt(const FilmRecipe& recipe, const Amplitudes& amplitudes, int x, int y) {
    Pixel noise{};
    for (std::size_t layer = 0; layer < 3; ++layer) {
        const double footprint = footprintOf(recipe, layer);
        for (std::size_t i = 0; i < 64; ++i) {
            const auto& mode = discsOf(recipe).modes[i];
            // Pixel centres, y upward.
            const double angle =
                ((x + 0.5) * mode.first + (recipe.height - y - 0.5) * mode.second) * footprint;
            const double response = pixelResponse(mode, footprint) / 8;
            noise[layer] += response * amplitudes.cosine[i][layer] * std::cos(angle) +
                            response * amplitudes.sine[i][layer] * std::sin(angle);
        }
    }
    return noise;
}

} // namespace

Image imageOf(const images::LinearImage& scene) {
    Image image(scene.width(), scene.height());
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < scene.height(); ++y)
            for (int x = 0; x < scene.width(); ++x)
                image.at(x, y)[static_cast<std::size_t>(c)] = scene.plane(c).at(x, y);
    return image;
}

Image gaussianBlur(const Image& image, double sigma) {
    const int radius = static_cast<int>(std::ceil(10 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += weights.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    const auto pass = [&](const Image& in, bool rows) {
        return mapped(in, [&](const Pixel&, int x, int y) {
            Pixel total{};
            for (int i = -radius; i <= radius; ++i) {
                const auto& tap = rows ? in.at(std::clamp(x + i, 0, in.width - 1), y)
                                       : in.at(x, std::clamp(y + i, 0, in.height - 1));
                for (std::size_t c = 0; c < 3; ++c)
                    total[c] += weights[static_cast<std::size_t>(i + radius)] / sum * tap[c];
            }
            return total;
        });
    };
    return pass(pass(image, true), false);
}

Image spectralExposure(const Image& scene, const FilmRecipe& recipe) {
    const double gain = std::pow(2.0, recipe.settings.exposure);
    return mapped(scene, [&](Pixel rgb, int, int) {
        for (double& v : rgb) v = std::max(v, 0.0);
        const double peak = std::max({rgb[0], rgb[1], rgb[2]});
        Pixel chromaticity;
        for (std::size_t c = 0; c < 3; ++c) chromaticity[c] = rgb[c] / std::max(peak, 1e-12);
        Pixel exposure = lookUp(recipe.optics->exposure.cube, chromaticity);
        for (double& e : exposure) e *= peak * gain * 4;
        return exposure;
    });
}

Image halation(const Image& exposure, const FilmRecipe& recipe) {
    if (!(recipe.settings.halation > 0)) return exposure;
    const auto& halation = recipe.optics->model.stock.halation;
    Image result = exposure;
    for (std::size_t c = 0; c < 3; ++c) {
        const double pixelsPerMicrometre = pixelsPerMM(recipe) / 1000;
        const auto core = gaussianBlur(exposure, pixelsPerMicrometre * halation.coreSigmaMicrometres[c]);
        const auto tail = gaussianBlur(exposure, pixelsPerMicrometre * halation.tailSigmaMicrometres[c]);
        const double fraction = recipe.settings.halation * halation.scatteringFraction[c];
        for (std::size_t i = 0; i < result.pixels.size(); ++i)
            result.pixels[i][c] = (1 - fraction) * exposure.pixels[i][c] +
                                  fraction * ((1 - halation.tailWeight[c]) * core.pixels[i][c] +
                                              halation.tailWeight[c] * tail.pixels[i][c]);
    }
    return result;
}

Image development(const Image& exposure, const FilmRecipe& recipe) {
    const auto& optics = *recipe.optics;
    const auto develop = [&](const Pixel& light) {
        return Pixel{densityAt(optics, 0, light[0]), densityAt(optics, 1, light[1]),
                     densityAt(optics, 2, light[2])};
    };
    if (!(recipe.settings.colorSeparation > 0) || recipe.settings.stock == FilmStock::mono400)
        return mapped(exposure, [&](const Pixel& light, int, int) { return develop(light); });
    const auto residual = mapped(exposure, [&](const Pixel& light, int, int) {
        double logs = 0;
        for (const double e : light) logs += std::log(std::max(e, 1e-12) / 0.18) / std::log(10.0);
        const double neutral = 0.18 * std::pow(10.0, logs / 3);
        Pixel difference = develop(light);
        const Pixel grey = develop({neutral, neutral, neutral});
        for (std::size_t c = 0; c < 3; ++c) difference[c] -= grey[c];
        return difference;
    });
    const auto spread = gaussianBlur(residual, pixelsPerMM(recipe) * 0.008);
    return mapped(exposure, [&](Pixel light, int x, int y) {
        Pixel d = spread.at(x, y);
        for (double& v : d) v *= 3.2;
        const Pixel inhibition{0.06 * d[1] + 0.035 * d[2], 0.04 * d[0] + 0.04 * d[2],
                               0.025 * d[0] + 0.05 * d[1]};
        for (std::size_t c = 0; c < 3; ++c)
            light[c] *= std::exp(-inhibition[c] * recipe.settings.colorSeparation * std::log(10.0));
        return develop(light);
    });
}

std::array<double, 3> grainNoise(const FilmRecipe& recipe, int x, int y) {
    return noiseAt(recipe, amplitudesOf(recipe), x, y);
}

double grainDeviation(const FilmRecipe& recipe, std::size_t layer, int level) {
    const auto& model = recipe.optics->model;
    const auto& discs = discsOf(recipe);
    const double f = footprintOf(recipe, layer);
    double kept = 0;
    for (const auto& mode : discs.modes) kept += std::pow(pixelResponse(mode, f), 2) / 64;
    const double p = (3.2 * level / 32 - model.layerMinimums()[layer]) / model.layerRanges()[layer];
    if (p <= 0 || p >= 1) return 0;
    const double mu = -std::log(1 - p) / discs.area, e = std::min(2 * discs.largest, f);
    const auto rule = gaussLegendre(16);
    double s = 0;
    for (const auto& [xi, wi] : rule)
        for (const auto& [xj, wj] : rule)
            s += wi * wj * (f - e * xi) * (f - e * xj) * (1 - p) * (1 - p) *
                 (std::exp(mu * discs.overlap(std::hypot(e * xi, e * xj))) - 1);
    const double variance = std::min(p * (1 - p), std::max(0.0, s * 4 * e * e / (f * f * f * f)));
    return model.stock.grain.densityAmount * std::sqrt(variance / (0.25 * std::max(kept, 1e-12)));
}

Image grain(const Image& density, const FilmRecipe& recipe) {
    if (!(recipe.settings.grain > 0)) return density;
    const auto& model = recipe.optics->model;
    const auto amplitudes = amplitudesOf(recipe);
    std::array<std::array<double, 33>, 3> deviation;
    for (std::size_t c = 0; c < 3; ++c)
        for (int level = 0; level < 33; ++level)
            deviation[c][static_cast<std::size_t>(level)] = grainDeviation(recipe, c, level);
    return mapped(density, [&](Pixel stored, int x, int y) {
        const Pixel noise = noiseAt(recipe, amplitudes, x, y);
        for (std::size_t c = 0; c < 3; ++c) {
            const double position = std::clamp(stored[c], 0.0, 1.0) * 32;
            const auto low = static_cast<std::size_t>(position);
            const auto high = std::min<std::size_t>(low + 1, 32);
            const double weight = position - static_cast<double>(low);
            const double strength = deviation[c][low] * (1 - weight) + deviation[c][high] * weight;
            const double d = stored[c] * 3.2, least = model.layerMinimums()[c],
                         range = model.layerRanges()[c];
            const double room = std::max(0.0, std::min(d - least, least + range - d));
            stored[c] = (d + std::clamp(noise[c] * strength * recipe.settings.grain, -room, room)) / 3.2;
        }
        return stored;
    });
}

Image print(const Image& density, const FilmRecipe& recipe) {
    const auto& optics = *recipe.optics;
    const auto& model = optics.model;
    const auto& curve = model.paper.curve;
    return mapped(density, [&](const Pixel& dyes, int, int) {
        Pixel paper = lookUp(optics.negative.cube, dyes);
        for (std::size_t c = 0; c < 3; ++c) {
            const double calibration = model.paperCalibration +
                                       recipe.settings.printExposure * std::log10(2.0) -
                                       std::log10(model.neutralTransmission[c]);
            const double logDose = -paper[c] * 3.2 + calibration;
            paper[c] = std::clamp(
                (curve.minimum + curve.range / (1 + std::exp(-curve.slope * logDose))) / 3.2, 0.0, 1.0);
        }
        Pixel light = lookUp(optics.paper.cube, paper);
        for (std::size_t c = 0; c < 3; ++c)
            light[c] = light[c] * model.reflectionCubeRanges()[c] + model.reflectionCubeMinimums()[c];
        return light;
    });
}

Image film(const Image& scene, const FilmRecipe& recipe) {
    return print(grain(development(halation(spectralExposure(scene, recipe), recipe), recipe), recipe),
                 recipe);
}

} // namespace lumisort::film::literal
