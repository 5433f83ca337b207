#include "platform/images/decoding/TiffHead.h"

#include <algorithm>
#include <vector>

namespace lumisort::images {
namespace {

using enum TiffField::Type;

constexpr std::uint16_t exifPointer = 0x8769, gpsPointer = 0x8825, stripOffsets = 273;
constexpr std::uint32_t headerBytes = 8;
/// Readers hold one strip at a time.
constexpr std::uint32_t stripRows = 64;

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

std::uint32_t sizeOf(const TiffDirectory& directory) {
    std::size_t size = 2 + 12 * directory.size() + 4;
    for (const auto& [tag, field] : directory)
        if (field.bytes.size() > 4) size += (field.bytes.size() + 1) / 2 * 2;
    return static_cast<std::uint32_t>(size);
}

/// The directory that starts at `offset`, followed by the values that do not fit into it.
std::string encode(const TiffDirectory& directory, std::uint32_t offset) {
    std::string head, values;
    const auto valuesAt = offset + static_cast<std::uint32_t>(2 + 12 * directory.size() + 4);
    append(head, static_cast<std::uint32_t>(directory.size()), 2);
    for (const auto& [tag, field] : directory) {
        append(head, tag, 2);
        append(head, field.type, 2);
        append(head, field.count, 4);
        if (field.bytes.size() > 4) {
            append(head, valuesAt + static_cast<std::uint32_t>(values.size()), 4);
            values += field.bytes;
            if (values.size() % 2) values += '\0';
        } else {
            head += field.bytes;
            head.append(4 - field.bytes.size(), '\0');
        }
    }
    append(head, 0, 4); // No directory follows.
    return head + values;
}

void set(TiffDirectory& directory, std::uint16_t tag, TiffField::Type type,
         std::vector<std::uint32_t> values) {
    directory[tag] = TiffField::of(type, values);
}

void describePixels(TiffMetadata& metadata, std::uint32_t width, std::uint32_t height) {
    auto& image = metadata.image;
    const std::uint32_t strips = (height + stripRows - 1) / stripRows;
    std::vector<std::uint32_t> sizes(strips, stripRows * 8 * width);
    if (strips > 0) sizes.back() = (height - (strips - 1) * stripRows) * 8 * width;
    set(image, 256, four, {width});
    set(image, 257, four, {height});
    set(image, 258, two, {16, 16, 16, 16}); // bits per sample
    set(image, 259, two, {1});              // no compression
    set(image, 262, two, {2});              // RGB
    set(image, 274, two, {1});              // upright
    set(image, 277, two, {4});              // samples per pixel
    set(image, 278, four, {stripRows});
    set(image, 279, four, std::move(sizes));
    set(image, 284, two, {1}); // interleaved
    set(image, 338, two, {2}); // The fourth sample is straight alpha.
    if (metadata.exif.empty()) return;
    set(metadata.exif, 0xA001, two, {1}); // sRGB
    set(metadata.exif, 0xA002, four, {width});
    set(metadata.exif, 0xA003, four, {height});
}

} // namespace

TiffField TiffField::of(Type type, std::span<const std::uint32_t> values) {
    TiffField field{static_cast<std::uint16_t>(type), static_cast<std::uint32_t>(values.size()), {}};
    for (const auto value : values)
        append(field.bytes, value, type == Type::four ? 4 : type == Type::two ? 2 : 1);
    return field;
}

TiffField TiffField::of(Type type, std::string bytes) {
    const auto count = static_cast<std::uint32_t>(bytes.size());
    return {static_cast<std::uint16_t>(type), count, std::move(bytes)};
}

std::string tiffHead(int width, int height, TiffMetadata metadata) {
    const auto w = static_cast<std::uint32_t>(width), h = static_cast<std::uint32_t>(height);
    describePixels(metadata, w, h);
    auto& image = metadata.image;
    // Pointers first: they change no sizes once they are there.
    std::vector<std::uint32_t> offsets((h + stripRows - 1) / stripRows);
    set(image, stripOffsets, four, offsets);
    if (!metadata.exif.empty()) set(image, exifPointer, four, {0});
    if (!metadata.gps.empty()) set(image, gpsPointer, four, {0});
    const std::uint32_t exifAt = headerBytes + sizeOf(image);
    const std::uint32_t gpsAt = exifAt + (metadata.exif.empty() ? 0 : sizeOf(metadata.exif));
    const std::uint32_t pixelsAt = (gpsAt + (metadata.gps.empty() ? 0 : sizeOf(metadata.gps)) + 15) / 16 * 16;
    for (std::uint32_t strip = 0; strip < offsets.size(); ++strip)
        offsets[strip] = pixelsAt + strip * stripRows * 8 * w;
    set(image, stripOffsets, four, offsets);
    if (!metadata.exif.empty()) set(image, exifPointer, four, {exifAt});
    if (!metadata.gps.empty()) set(image, gpsPointer, four, {gpsAt});

    std::string head("II*\0", 4);
    append(head, headerBytes, 4);
    head += encode(image, headerBytes);
    if (!metadata.exif.empty()) head += encode(metadata.exif, exifAt);
    if (!metadata.gps.empty()) head += encode(metadata.gps, gpsAt);
    head.resize(pixelsAt);
    return head;
}

} // namespace lumisort::images
