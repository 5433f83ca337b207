#include "platform/images/decoding/RawDevelopment.h"

#include "platform/images/decoding/Picture.h"
#include "platform/images/decoding/Raw.h"
#include "platform/images/decoding/RawFile.h"
#include "platform/images/development/BayerDevelopment.h"
#include "platform/images/development/SensorImage.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

namespace lumisort::images {
namespace {

[[noreturn]] void failAs(DevelopmentError::Reason reason, const char* message) {
    throw DevelopmentError(reason, message);
}

/// LibRaw's code for second greens.
constexpr int secondGreen = 3;

/// The channels of a 2 × 2 Bayer pattern of red, green and blue; none for any other sensor, and for those
/// whose samples LibRaw corrects or turns by 45° on the way to its own demosaicing.
std::optional<std::array<int, 4>> bayerColours(LibRaw& raw) {
    const auto& data = raw.imgdata;
    if (!data.rawdata.raw_image || data.idata.colors != 3 || data.idata.filters < 1000 ||
        raw.is_fuji_rotated() || data.sizes.pixel_aspect != 1 || data.rawdata.ph1_cblack ||
        data.rawdata.ph1_rblack)
        return std::nullopt;
    if (data.idata.filters != (data.idata.filters & 0xFFU) * 0x01010101U) return std::nullopt;
    std::array<int, 4> colours{};
    std::array<int, 3> counts{};
    for (int site = 0; site < 4; ++site) {
        const int code = raw.COLOR(site >> 1, site & 1);
        const int channel = code == secondGreen ? 1 : code;
        colours[static_cast<std::size_t>(site)] = channel;
        ++counts[static_cast<std::size_t>(channel)];
    }
    // The greens of a quad lie across from each other.
    if (counts != std::array{1, 2, 1} || colours[0] == colours[1] || colours[0] == colours[2])
        return std::nullopt;
    return colours;
}

/// White balance as shot, or for daylight where the file has none; the smallest multiplier is 1.
CameraColour::PerChannel<float> multipliers(const libraw_colordata_t& colour, int channels) {
    if (colour.as_shot_wb_applied & LIBRAW_ASWB_APPLIED) return {1, 1, 1, 1};
    const bool asShot = colour.cam_mul[0] > 0 && colour.cam_mul[2] > 0;
    CameraColour::PerChannel<float> multipliers{1, 1, 1, 1};
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels); ++c) {
        const float value = asShot ? colour.cam_mul[c] : colour.pre_mul[c];
        if (std::isfinite(value) && value > 0) multipliers[c] = value;
    }
    const float least = *std::min_element(multipliers.begin(), multipliers.begin() + channels);
    for (auto& value : multipliers) value /= least;
    return multipliers;
}

CameraColour cameraColour(const libraw_colordata_t& colour, int channels) {
    CameraColour camera{.channels = channels};
    if (channels == 1) {
        for (auto& row : camera.toLinear) row = {1, 0, 0, 0};
        return camera;
    }
    camera.saturation = multipliers(colour, channels);
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t c = 0; c < static_cast<std::size_t>(channels); ++c) {
            camera.toLinear[row][c] = colour.rgb_cam[row][c];
            if (!std::isfinite(colour.rgb_cam[row][c]))
                failAs(DevelopmentError::Reason::damaged, "The camera raw data has no usable colours.");
        }
    return camera;
}

/// The samples that LibRaw unpacked, with what they mean. The pattern of black levels is repeated so that it
/// holds whole quads.
Mosaic mosaicOf(LibRaw& raw, const std::array<int, 4>& colours, const CameraColour& camera) {
    const auto& sizes = raw.imgdata.sizes;
    const auto& colour = raw.imgdata.color;
    const std::ptrdiff_t stride = sizes.raw_pitch / 2;
    Mosaic mosaic{.samples = {raw.imgdata.rawdata.raw_image + sizes.top_margin * stride + sizes.left_margin,
                              sizes.width, sizes.height, stride},
                  .colours = colours};

    constexpr unsigned mostPattern = LIBRAW_CBLACK_SIZE - 6;
    const unsigned patternRows = colour.cblack[4], patternColumns = colour.cblack[5];
    const bool pattern = patternRows > 0 && patternColumns > 0 && patternRows <= mostPattern / patternColumns;
    mosaic.blackWidth = static_cast<int>(std::lcm(2U, pattern ? patternColumns : 1U));
    const auto rows = std::lcm(2U, pattern ? patternRows : 1U);
    mosaic.black.clear();
    for (unsigned y = 0; y < rows; ++y)
        for (unsigned x = 0; x < static_cast<unsigned>(mosaic.blackWidth); ++x) {
            float level =
                static_cast<float>(colour.black) +
                static_cast<float>(colour.cblack[raw.FC(static_cast<int>(y & 1), static_cast<int>(x & 1))]);
            if (pattern)
                level += static_cast<float>(
                    colour.cblack[6 + y % patternRows * patternColumns + x % patternColumns]);
            mosaic.black.push_back(level);
        }

    const float black = std::accumulate(mosaic.black.begin(), mosaic.black.end(), 0.F) /
                        static_cast<float>(mosaic.black.size());
    const float range = static_cast<float>(colour.maximum) - black;
    if (!(range > 0)) failAs(DevelopmentError::Reason::damaged, "The camera raw data has no usable levels.");
    // Sensors end a little below their nominal white in some channels.
    constexpr float nearlySaturated = 0.99F;
    for (std::size_t c = 0; c < 3; ++c) {
        mosaic.scale[c] = camera.saturation[c] / range;
        const auto limit = static_cast<float>(colour.linear_max[c]);
        const float reached = limit > black + range / 2 ? std::min(limit - black, range) : range;
        mosaic.saturated[c] =
            static_cast<std::uint16_t>(std::clamp(black + reached * nearlySaturated, 0.F, 65535.F));
    }
    return mosaic;
}

/// Mean black level of a channel.
float blackOf(const libraw_colordata_t& colour, std::size_t channel) {
    const unsigned count = std::min<unsigned>(colour.cblack[4] * colour.cblack[5], LIBRAW_CBLACK_SIZE - 6);
    const float pattern =
        count ? static_cast<float>(std::accumulate(colour.cblack + 6, colour.cblack + 6 + count, 0U)) /
                    static_cast<float>(count)
              : 0;
    return static_cast<float>(colour.black) + static_cast<float>(colour.cblack[channel]) + pattern;
}

/// LibRaw's own demosaicing, in the camera's colours. White balance scales the channels down from the
/// largest, so that none is clipped.
LinearImage developByLibRaw(RawFile& raw, bool half, Turn turn, const std::stop_token& stop) {
    const auto& data = raw->imgdata;
    const int channels = data.idata.colors;
    if (channels != 1 && channels != 3 && channels != 4)
        failAs(DevelopmentError::Reason::unsupported, "The camera raw data is of an unknown kind.");
    const CameraColour camera = cameraColour(data.color, channels);
    CameraColour::PerChannel<float> range{};
    for (std::size_t c = 0; c < range.size(); ++c)
        range[c] = static_cast<float>(data.color.maximum) - blackOf(data.color, c);

    constexpr int keepAboveWhite = 1, gradientInterpolation = 2;
    auto& params = raw->imgdata.params;
    params.output_color = 0; // the camera's own
    params.use_camera_wb = 0;
    std::ranges::copy(camera.saturation, params.user_mul);
    params.highlight = keepAboveWhite;
    params.no_auto_bright = 1;
    params.adjust_maximum_thr = 0; // White is what the camera says, whatever the photo shows.
    params.half_size = half && data.idata.filters != LIBRAW_XTRANS ? 1 : 0;
    // One pass of three over X-Trans for a preview: shrinking hides what the others improve.
    if (half) params.user_qual = gradientInterpolation;
    raw.run(&LibRaw::dcraw_process, stop);
    if (!data.image || data.idata.colors != channels || data.color.maximum == 0)
        failAs(DevelopmentError::Reason::damaged, "The camera raw data is damaged or incomplete.");

    const float largest = *std::ranges::max_element(camera.saturation);
    SensorImage sensor{.samples = data.image, .width = data.sizes.iwidth, .height = data.sizes.iheight};
    // LibRaw divides by what it takes for the range, which is too large where it has black levels per
    // channel.
    for (std::size_t c = 0; c < range.size(); ++c)
        sensor.scale[c] =
            range[c] > 0 ? largest / 65535 * static_cast<float>(data.color.maximum) / range[c] : 0;
    return developSensorImage(sensor, camera, turn, stop);
}

} // namespace

DevelopedPhoto developRaw(const FileBytes& file, const RawDevelopment& development,
                          const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    RawFile raw(file);
    const auto& sizes = raw->imgdata.sizes;
    checkDecodable(std::max(sizes.raw_width, sizes.width), std::max(sizes.raw_height, sizes.height));
    const int flip = raw.flip();
    const Turn turn{.mirrorX = (flip & 1) != 0, .mirrorY = (flip & 2) != 0, .transpose = (flip & 4) != 0};
    const int longest = std::max(sizes.width, sizes.height);
    const bool half = development.longestSide > 0 && longest / 2 >= development.longestSide;

    raw.unpack(stop);
    // A film print of half a photo would look whole to whoever did not take it.
    if (raw->error_count() > 0)
        failAs(DevelopmentError::Reason::damaged, "The camera raw data is damaged or incomplete.");
    const ImageProperties properties = readRawProperties(file);
    DevelopedPhoto photo{.fullWidth = static_cast<int>(properties.width),
                         .fullHeight = static_cast<int>(properties.height)};
    if (turn.transpose) std::swap(photo.fullWidth, photo.fullHeight);
    if (const auto colours = bayerColours(*raw); colours && sizes.width >= 4 && sizes.height >= 4) {
        const CameraColour camera = cameraColour(raw->imgdata.color, 3);
        const Mosaic mosaic = mosaicOf(*raw, *colours, camera);
        photo.image =
            half ? halveBayer(mosaic, camera, turn, stop) : demosaicBayer(mosaic, camera, turn, stop);
    } else {
        photo.image = developByLibRaw(raw, half, turn, stop);
    }
    return photo;
}

} // namespace lumisort::images
