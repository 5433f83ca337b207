#include "app/desktop/SampleRaw.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace lumisort::app {

namespace {

enum Type : std::uint16_t { byte = 1, text = 2, two = 3, four = 4, ratio = 5, signedRatio = 10 };

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

/// A TIFF directory; values of more than four bytes come behind it. Fields must be added by ascending tag.
class Directory {
public:
    void add(std::uint16_t tag, Type type, const std::vector<std::uint32_t>& values) {
        const int size = type == byte || type == text ? 1 : type == two ? 2 : 4;
        const bool isRatio = type == ratio || type == signedRatio;
        std::string bytes;
        for (const auto value : values) append(bytes, value, size);
        fields_.push_back({tag, type, static_cast<std::uint32_t>(isRatio ? values.size() / 2 : values.size()),
                           std::move(bytes)});
    }
    void add(std::uint16_t tag, const std::string& words) {
        std::vector<std::uint32_t> letters(words.begin(), words.end());
        letters.push_back(0);
        add(tag, text, letters);
    }
    std::size_t size() const {
        std::size_t size = 2 + 12 * fields_.size() + 4;
        for (const auto& field : fields_)
            if (field.bytes.size() > 4) size += field.bytes.size();
        return size;
    }
    std::string encoded(std::uint32_t offset) const {
        std::string head, values;
        append(head, static_cast<std::uint32_t>(fields_.size()), 2);
        const auto valuesAt = offset + static_cast<std::uint32_t>(2 + 12 * fields_.size() + 4);
        for (const auto& field : fields_) {
            append(head, field.tag, 2);
            append(head, field.type, 2);
            append(head, field.count, 4);
            if (field.bytes.size() > 4) {
                append(head, valuesAt + static_cast<std::uint32_t>(values.size()), 4);
                values += field.bytes;
            } else {
                head += field.bytes;
                head.append(4 - field.bytes.size(), '\0');
            }
        }
        append(head, 0, 4);
        return head + values;
    }

private:
    struct Field {
        std::uint16_t tag;
        Type type;
        std::uint32_t count;
        std::string bytes;
    };
    std::vector<Field> fields_;
};

/// Linear light of a code of sRGB, white at half of what the sensor holds.
std::uint16_t sampleOf(int code) {
    const double v = code / 255.0;
    const double light = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    return static_cast<std::uint16_t>(std::lround(light * 32'767));
}

} // namespace

std::string sampleRaw(const QImage& picture) {
    const auto width = static_cast<std::uint32_t>(picture.width()),
               height = static_cast<std::uint32_t>(picture.height());
    constexpr std::uint32_t directoryAt = 8, unit = 10'000;
    // XYZ to linear sRGB (IEC 61966-2-1), in ten-thousandths.
    constexpr std::array<int, 9> primaries{32405, -15371, -4985, -9693, 18760, 416, 556, -2040, 10572};
    std::vector<std::uint32_t> matrix;
    for (const int value : primaries) {
        matrix.push_back(static_cast<std::uint32_t>(value));
        matrix.push_back(unit);
    }
    const auto directory = [&](std::uint32_t pixelsAt) {
        Directory made;
        made.add(254, four, {0});
        made.add(256, four, {width});
        made.add(257, four, {height});
        made.add(258, two, {16});
        made.add(259, two, {1});
        made.add(262, two, {32803}); // colour filter array
        made.add(271, "Lumisort");
        made.add(272, "Sample");
        made.add(273, four, {pixelsAt});
        made.add(274, two, {1});
        made.add(277, two, {1});
        made.add(278, four, {height});
        made.add(279, four, {2 * width * height});
        made.add(33421, two, {2, 2});
        made.add(33422, byte, {0, 1, 1, 2});
        made.add(50706, byte, {1, 4, 0, 0});
        made.add(50708, "Lumisort Sample");
        made.add(50714, two, {0});
        made.add(50717, four, {65'535});
        made.add(50721, signedRatio, matrix);
        made.add(50728, ratio, {1, 1, 1, 1, 1, 1});
        made.add(50778, two, {21}); // D65
        return made;
    };
    const auto pixelsAt = static_cast<std::uint32_t>(directoryAt + directory(0).size() + 15) / 16 * 16;
    std::string file("II*\0\10\0\0\0", directoryAt);
    file += directory(pixelsAt).encoded(directoryAt);
    file.resize(pixelsAt);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb colour = picture.pixel(x, y);
            const int code = y % 2 == 0 && x % 2 == 0   ? qRed(colour)
                             : y % 2 == 1 && x % 2 == 1 ? qBlue(colour)
                                                        : qGreen(colour);
            append(file, sampleOf(code), 2);
        }
    return file;
}

} // namespace lumisort::app
