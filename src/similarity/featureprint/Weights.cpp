#include "similarity/featureprint/Weights.h"

#include "platform/files/Digest.h"
#include "platform/files/FileError.h"
#include "platform/files/FileSystem.h"
#include "similarity/featureprint/Architecture.h"
#include "similarity/featureprint/FeaturePrintModel.h"

#include <bit>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace lumisort::similarity {

namespace {

constexpr std::string_view magic{"LUMIFPW", 8};
constexpr std::uint32_t formatVersion = 1;
constexpr std::size_t nameBytes = 48;
constexpr std::size_t shapeBytes = 8;
constexpr std::size_t digestBytes = 32;

[[noreturn]] void refuse(const std::filesystem::path& path, const std::string& reason) {
    throw FeaturePrintError(FeaturePrintFailure::unsupported, "Visual similarity needs the file \"" +
                                                                  path.string() + "\", which " + reason +
                                                                  ". Install Lumisort again to restore it.");
}

std::vector<LayerShape> expectedShapes() {
    std::vector<LayerShape> shapes;
    const auto add = [&](LayerKind kind, int in, int out, int stride) {
        shapes.push_back({kind, static_cast<std::uint16_t>(in), static_cast<std::uint16_t>(out),
                          static_cast<std::uint16_t>(stride)});
    };
    for (const architecture::Block& block : architecture::blocks) {
        const bool first = &block == &architecture::blocks.front();
        add(first ? LayerKind::full3x3 : LayerKind::pointwise, block.in, block.hidden, first ? 2 : 1);
        add(LayerKind::depthwise3x3, block.hidden, block.hidden, block.stride);
        add(LayerKind::pointwise, block.hidden, block.out, 1);
    }
    return shapes;
}

/// IEEE 754 binary16; the file holds no infinities and no NaN. Exponent and fraction move to their places in
/// a float, and the factor makes up for the two exponents' biases, 127 - 15, exactly.
float fromHalf(std::uint16_t half) {
    const float magnitude = std::bit_cast<float>(std::uint32_t{half} << 13 & 0x0FFFE000U) * 0x1p112F;
    return half & 0x8000 ? -magnitude : magnitude;
}

/// Takes little-endian numbers from the front of what is left.
class Cursor {
public:
    explicit Cursor(std::span<const std::byte> left) : left_(left) {}

    std::string text(std::size_t count) {
        const auto bytes = take(count);
        return {reinterpret_cast<const char*>(bytes.data()), count};
    }
    std::uint32_t u32() { return u16() | static_cast<std::uint32_t>(u16()) << 16; }
    std::uint16_t u16() { return join(take(2).data()); }
    LayerShape shape() {
        const auto kind = static_cast<LayerKind>(u16());
        const std::uint16_t in = u16(), out = u16(), stride = u16();
        return {kind, in, out, stride};
    }
    std::vector<float> halves(std::size_t count) {
        const auto bytes = take(2 * count);
        std::vector<float> values(count);
        for (std::size_t i = 0; i < count; ++i) values[i] = fromHalf(join(bytes.data() + 2 * i));
        return values;
    }

private:
    static std::uint16_t join(const std::byte* bytes) {
        return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[0]) |
                                          std::to_integer<unsigned>(bytes[1]) << 8);
    }
    std::span<const std::byte> take(std::size_t count) {
        const auto taken = left_.first(count);
        left_ = left_.subspan(count);
        return taken;
    }
    std::span<const std::byte> left_;
};

std::string hexadecimal(std::span<const std::byte> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        text += digits[std::to_integer<unsigned>(byte) >> 4];
        text += digits[std::to_integer<unsigned>(byte) & 15];
    }
    return text;
}

std::vector<std::byte> readBytes(const std::filesystem::path& path, std::size_t expectedSize) {
    try {
        const auto file = files::FileSystem::real().open(path.string(), files::Links::follow);
        if (file->status().size != static_cast<std::int64_t>(expectedSize))
            refuse(path, "is damaged (its size is wrong)");
        std::vector<std::byte> bytes(expectedSize);
        std::size_t done = 0;
        while (done < expectedSize) {
            const std::size_t read = file->read(std::span(bytes).subspan(done));
            if (read == 0) refuse(path, "is damaged (it ends too early)");
            done += read;
        }
        return bytes;
    } catch (const files::FileError& error) {
        refuse(path, std::string("cannot be read (") + error.what() + ")");
    }
}

} // namespace

std::size_t LayerShape::weightCount() const {
    switch (kind) {
    case LayerKind::full3x3:
        return std::size_t{9} * in * out;
    case LayerKind::depthwise3x3:
        return std::size_t{9} * out;
    case LayerKind::pointwise:
        return std::size_t{in} * out;
    }
    std::unreachable();
}

Weights readWeights(const std::filesystem::path& path) {
    const std::vector<LayerShape> expected = expectedShapes();
    std::size_t size = magic.size() + 2 * sizeof(std::uint32_t) + nameBytes + digestBytes;
    for (const LayerShape& shape : expected) size += shapeBytes + 2 * (shape.weightCount() + shape.out);

    const std::vector<std::byte> bytes = readBytes(path, size);
    const auto contents = std::span(bytes).first(size - digestBytes);
    files::Sha256 digest;
    digest.update(contents);
    Weights weights;
    weights.sha256 = digest.finish();
    if (weights.sha256 != hexadecimal(std::span(bytes).last(digestBytes)))
        refuse(path, "is damaged (its checksum is wrong)");

    Cursor cursor(contents);
    if (cursor.text(magic.size()) != magic) refuse(path, "holds something else");
    if (cursor.u32() != formatVersion) refuse(path, "belongs to another version of Lumisort");
    if (cursor.u32() != expected.size()) refuse(path, "holds another network");
    weights.name = cursor.text(nameBytes).c_str(); // filled up with NUL
    for (const LayerShape& shape : expected) {
        if (cursor.shape() != shape) refuse(path, "holds another network");
        weights.layers.push_back({shape, {}, {}});
    }
    for (Layer& layer : weights.layers) {
        layer.weights = cursor.halves(layer.shape.weightCount());
        layer.bias = cursor.halves(layer.shape.out);
    }
    return weights;
}

} // namespace lumisort::similarity
