#include "support/DngFile.h"

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

namespace lumisort::test {
namespace {

// Six by six samples of Fujifilm's X-Trans sensors.
constexpr std::array<std::array<int, 6>, 6> xTrans{{{1, 1, 0, 1, 1, 2},
                                                    {1, 1, 2, 1, 1, 0},
                                                    {2, 0, 1, 0, 2, 1},
                                                    {1, 1, 2, 1, 1, 0},
                                                    {1, 1, 0, 1, 1, 2},
                                                    {0, 2, 1, 2, 0, 1}}};

/// XYZ (D65) to linear sRGB.
constexpr std::array<Light, 3> fromXyz{{{3.2404542, -1.5371385, -0.4985314},
                                        {-0.9692660, 1.8760108, 0.0415560},
                                        {0.0556434, -0.2040259, 1.0572252}}};

/// The fourth colour of a sensor that sees between green and blue.
constexpr Light fourth{0.1, 0.45, 0.45};

double dot(const Light& a, const Light& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void setField(TIFF* file, std::uint32_t tag, auto... values) {
    if (TIFFSetField(file, tag, values...) != 1)
        throw std::runtime_error("libtiff refuses tag " + std::to_string(tag));
}

} // namespace

int TestCamera::channelAt(int x, int y) const {
    const auto column = static_cast<std::size_t>(x), row = static_cast<std::size_t>(y);
    switch (sensor) {
    case Sensor::bayer:
        return bayerPattern[row % 2 * 2 + column % 2];
    case Sensor::xTrans:
        return xTrans[row % 6][column % 6];
    case Sensor::fourColour:
        return static_cast<int>(row % 2 * 2 + column % 2);
    default:
        return 1;
    }
}

double TestCamera::response(const Light& light, int channel) const {
    if (channel == 3) return dot(fourth, light);
    const auto c = static_cast<std::size_t>(channel);
    return dot(primaries[c], light) * neutral[c];
}

files::FileUrl TestCamera::photograph(const TemporaryFolder& folder, const std::string& name, int width,
                                      int height, const std::function<Light(int, int)>& light) const {
    const bool mosaic = sensor == Sensor::bayer || sensor == Sensor::xTrans || sensor == Sensor::fourColour;
    const int samples = sensor == Sensor::linear ? 3 : 1, channels = sensor == Sensor::fourColour ? 4 : 3;
    const auto path = (folder.path() / name).string();
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> file(TIFFOpen(path.c_str(), "w"), &TIFFClose);
    if (!file) throw std::runtime_error("cannot write " + path);
    TIFF* const tiff = file.get();

    setField(tiff, TIFFTAG_SUBFILETYPE, 0);
    setField(tiff, TIFFTAG_IMAGEWIDTH, width);
    setField(tiff, TIFFTAG_IMAGELENGTH, height);
    setField(tiff, TIFFTAG_BITSPERSAMPLE, 16);
    setField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
    setField(tiff, TIFFTAG_ROWSPERSTRIP, height);
    setField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    setField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    setField(tiff, TIFFTAG_PHOTOMETRIC, mosaic ? PHOTOMETRIC_CFA : 34892 /* linear raw */);
    setField(tiff, TIFFTAG_ORIENTATION, orientation);
    setField(tiff, TIFFTAG_MAKE, "Chart");
    setField(tiff, TIFFTAG_MODEL, "Test 1");
    constexpr std::array<std::uint8_t, 4> version{1, 4, 0, 0}, backward{1, 1, 0, 0};
    setField(tiff, TIFFTAG_DNGVERSION, version.data());
    setField(tiff, TIFFTAG_DNGBACKWARDVERSION, backward.data());
    setField(tiff, TIFFTAG_UNIQUECAMERAMODEL, "Chart Test 1");
    if (mosaic) {
        const int side = sensor == Sensor::xTrans ? 6 : 2;
        const std::array<std::uint16_t, 2> repeat{static_cast<std::uint16_t>(side),
                                                  static_cast<std::uint16_t>(side)};
        std::vector<std::uint8_t> pattern;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) pattern.push_back(static_cast<std::uint8_t>(channelAt(x, y)));
        setField(tiff, TIFFTAG_CFAREPEATPATTERNDIM, repeat.data());
        setField(tiff, TIFFTAG_CFAPATTERN, static_cast<int>(pattern.size()), pattern.data());
        constexpr std::array<std::uint8_t, 4> planes{0, 1, 2, 3};
        if (channels == 4) setField(tiff, TIFFTAG_CFAPLANECOLOR, channels, planes.data());
    }
    // Levels and the calibration of the sensor's channels: XYZ to what they read of it.
    const std::vector<float> blacks(static_cast<std::size_t>(samples), static_cast<float>(black));
    const std::vector<std::uint32_t> whites(static_cast<std::size_t>(samples),
                                            static_cast<std::uint32_t>(white));
    setField(tiff, TIFFTAG_BLACKLEVEL, samples, blacks.data());
    setField(tiff, TIFFTAG_WHITELEVEL, samples, whites.data());
    std::vector<float> matrix, whitePoint;
    for (int channel = 0; channel < channels; ++channel) {
        whitePoint.push_back(static_cast<float>(response({1, 1, 1}, channel)));
        for (std::size_t column = 0; column < 3; ++column)
            matrix.push_back(static_cast<float>(
                response({fromXyz[0][column], fromXyz[1][column], fromXyz[2][column]}, channel)));
    }
    if (sensor != Sensor::monochrome) {
        setField(tiff, TIFFTAG_COLORMATRIX1, static_cast<int>(matrix.size()), matrix.data());
        setField(tiff, TIFFTAG_CALIBRATIONILLUMINANT1, 21 /* D65 */);
        setField(tiff, TIFFTAG_ASSHOTNEUTRAL, channels, whitePoint.data());
    }

    std::vector<std::uint16_t> row(static_cast<std::size_t>(width * samples));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Light here = light(x, y);
            for (int sample = 0; sample < samples; ++sample) {
                const double read = response(here, samples == 3 ? sample : channelAt(x, y));
                const double level = black + read * (white - black);
                row[static_cast<std::size_t>(x * samples + sample)] = static_cast<std::uint16_t>(
                    std::lround(std::clamp(level, 0.0, static_cast<double>(white))));
            }
        }
        if (TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y)) != 1)
            throw std::runtime_error("cannot write " + path);
    }
    return files::FileUrl::fromPath(path);
}

} // namespace lumisort::test
