#include "platform/images/development/SensorImage.h"

#include "platform/images/development/Highlights.h"
#include "platform/images/development/Strips.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>
#include <vector>

namespace lumisort::images {
namespace {

constexpr int stripRows = 64;

/// The share of saturation from which on a sample, which interpolation may have mixed, counts as saturated.
constexpr float nearlySaturated = 0.98F;

/// The samples of one sensor as white-balanced light.
class Reader {
public:
    Reader(const SensorImage& sensor, const CameraColour& colour) : sensor_(sensor), colour_(colour) {}

    struct Pixel {
        Highlights::Channels light{};
        Highlights::Channels unsaturated{};
        float nearest = 0; ///< largest share of saturation
    };

    Pixel at(int x, int y) const {
        const auto* samples = sensor_.samples[static_cast<std::ptrdiff_t>(y) * sensor_.width + x];
        Pixel pixel;
        for (std::size_t c = 0; c < static_cast<std::size_t>(colour_.channels); ++c) {
            pixel.light[c] = static_cast<float>(samples[c]) * sensor_.scale[c];
            const float share = pixel.light[c] / colour_.saturation[c];
            pixel.unsaturated[c] = share < nearlySaturated ? 1.F : 0.F;
            pixel.nearest = std::max(pixel.nearest, share);
        }
        return pixel;
    }

private:
    const SensorImage& sensor_;
    const CameraColour& colour_;
};

std::optional<Highlights> findHighlights(const SensorImage& sensor, const Reader& reader, int channels,
                                         const std::stop_token& stop) {
    if (channels < 3) return std::nullopt;
    constexpr int side = 8;
    const int columns = (sensor.width + side - 1) / side, rows = (sensor.height + side - 1) / side;
    std::vector<Highlights::Light> blocks(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    std::atomic<bool> saturated = false;
    forEachStrip(
        sensor.height, stripRows,
        [&](int top, int bottom) {
            for (int y = top; y < bottom; ++y)
                for (int x = 0; x < sensor.width; ++x) {
                    const auto pixel = reader.at(x, y);
                    if (pixel.nearest >= nearlySaturated)
                        saturated = true;
                    else
                        blocks[static_cast<std::size_t>(y / side) * static_cast<std::size_t>(columns) +
                               static_cast<std::size_t>(x / side)]
                            .add(pixel.light, channels, pixel.nearest);
                }
        },
        stop);
    if (!saturated) return std::nullopt;
    return Highlights(channels, side, columns, rows, std::move(blocks));
}

} // namespace

LinearImage developSensorImage(const SensorImage& sensor, const CameraColour& colour, Turn turn,
                               const std::stop_token& stop) {
    const Reader reader(sensor, colour);
    const auto highlights = findHighlights(sensor, reader, colour.channels, stop);
    LinearImage upright = turn.imageFor(sensor.width, sensor.height);
    forEachStrip(
        sensor.height, stripRows,
        [&](int top, int bottom) {
            LinearImage linear(sensor.width, bottom - top);
            for (int y = top; y < bottom; ++y)
                for (int x = 0; x < sensor.width; ++x) {
                    auto [light, unsaturated, nearest] = reader.at(x, y);
                    if (highlights && nearest >= nearlySaturated) {
                        const auto estimate = highlights->estimate(
                            static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F, {light, unsaturated});
                        for (std::size_t c = 0; c < light.size(); ++c)
                            if (unsaturated[c] < 1) light[c] = std::max(light[c], estimate[c]);
                    }
                    for (int channel = 0; channel < 3; ++channel) {
                        const auto& row = colour.toLinear[static_cast<std::size_t>(channel)];
                        float sum = 0;
                        for (std::size_t c = 0; c < static_cast<std::size_t>(colour.channels); ++c)
                            sum += row[c] * light[c];
                        linear.plane(channel).at(x, y - top) = sum;
                    }
                }
            placeUpright({linear.plane(0), linear.plane(1), linear.plane(2)}, top, turn, upright);
        },
        stop);
    return upright;
}

} // namespace lumisort::images
