#include "film/render/TiffWriter.h"

#include <lcms2.h>

#include <bit>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumisort::film {

namespace {

static_assert(std::endian::native == std::endian::little,
              "the file has the byte order of its samples in memory");

std::vector<std::uint8_t> srgbProfile() {
    const auto profile = cmsCreate_sRGBProfile();
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::vector<std::uint8_t> bytes(size);
    const bool saved = cmsSaveProfileToMem(profile, bytes.data(), &size) != 0;
    cmsCloseProfile(profile);
    if (!saved) throw std::runtime_error("The sRGB profile could not be made.");
    return bytes;
}

/// A directory of fields whose values follow it, at a known offset of the file.
class Directory {
public:
    enum class Type : std::uint16_t { byte = 7, two = 3, four = 4 };

    void add(std::uint16_t tag, Type type, const std::vector<std::uint32_t>& values) {
        Field field{tag, type, static_cast<std::uint32_t>(values.size()), {}};
        for (const auto value : values)
            append(field.bytes, value, type == Type::four ? 4 : type == Type::two ? 2 : 1);
        fields_.push_back(std::move(field));
    }

    /// Bytes of the directory and all of its values.
    std::uint32_t size() const {
        std::size_t size = 2 + 12 * fields_.size() + 4;
        for (const auto& field : fields_)
            if (field.bytes.size() > 4) size += field.bytes.size() + field.bytes.size() % 2;
        return static_cast<std::uint32_t>(size);
    }

    std::vector<std::uint8_t> encoded(std::uint32_t offset) const {
        std::vector<std::uint8_t> head, values;
        const auto valuesAt = offset + static_cast<std::uint32_t>(2 + 12 * fields_.size() + 4);
        append(head, static_cast<std::uint32_t>(fields_.size()), 2);
        for (const auto& field : fields_) {
            append(head, field.tag, 2);
            append(head, static_cast<std::uint32_t>(field.type), 2);
            append(head, field.count, 4);
            if (field.bytes.size() > 4) {
                append(head, valuesAt + static_cast<std::uint32_t>(values.size()), 4);
                values.insert(values.end(), field.bytes.begin(), field.bytes.end());
                if (values.size() % 2) values.push_back(0);
            } else {
                head.insert(head.end(), field.bytes.begin(), field.bytes.end());
                head.resize(head.size() + 4 - field.bytes.size());
            }
        }
        append(head, 0, 4); // no directory follows
        head.insert(head.end(), values.begin(), values.end());
        return head;
    }

    static void append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }

private:
    struct Field {
        std::uint16_t tag;
        Type type;
        std::uint32_t count;
        std::vector<std::uint8_t> bytes;
    };
    std::vector<Field> fields_; ///< in ascending order of their tags
};

constexpr std::uint32_t headerBytes = 8;
/// Readers hold one strip at a time.
constexpr std::uint32_t stripRows = 64;

Directory directoryOf(std::uint32_t width, std::uint32_t height, std::uint32_t pixelsAt) {
    using enum Directory::Type;
    const std::uint32_t rowBytes = 8 * width;
    std::vector<std::uint32_t> offsets, sizes;
    for (std::uint32_t y = 0; y < height; y += stripRows) {
        offsets.push_back(pixelsAt + y * rowBytes);
        sizes.push_back(std::min(stripRows, height - y) * rowBytes);
    }
    const auto profile = srgbProfile();
    Directory directory;
    directory.add(256, four, {width});
    directory.add(257, four, {height});
    directory.add(258, two, {16, 16, 16, 16}); // bits per sample
    directory.add(259, two, {1});              // no compression
    directory.add(262, two, {2});              // RGB
    directory.add(273, four, offsets);         // of the strips
    directory.add(274, two, {1});              // upright
    directory.add(277, two, {4});              // samples per pixel
    directory.add(278, four, {stripRows});
    directory.add(279, four, sizes);
    directory.add(284, two, {1}); // interleaved
    directory.add(338, two, {2}); // the fourth sample is straight alpha
    directory.add(34675, byte, {profile.begin(), profile.end()});
    return directory;
}

} // namespace

TiffWriter::TiffWriter(files::OpenFile& file, int width, int height) : file_(file) {
    const auto w = static_cast<std::uint32_t>(width), h = static_cast<std::uint32_t>(height);
    const std::uint32_t pixelsAt = headerBytes + directoryOf(w, h, 0).size();
    std::vector<std::uint8_t> head{'I', 'I', 42, 0};
    Directory::append(head, headerBytes, 4);
    const auto directory = directoryOf(w, h, pixelsAt).encoded(headerBytes);
    head.insert(head.end(), directory.begin(), directory.end());
    file_.write(std::as_bytes(std::span(head)));
}

void TiffWriter::write(std::span<const std::uint16_t> rgba) {
    file_.write(std::as_bytes(rgba));
}

} // namespace lumisort::film
