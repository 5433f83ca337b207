#include "platform/images/decoding/Container.h"

#include "platform/images/decoding/TiffTags.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumisort::images {
namespace {

using namespace std::string_view_literals;

struct Mark {
    std::size_t at;
    std::string_view bytes;
    Container container;
};

// Camera marks as LibRaw and the makers' documents have them, without those that are TIFF inside out.
constexpr std::array marks{
    Mark{0, "\xff\xd8\xff"sv, Container::jpeg},
    Mark{0, "\x89PNG\r\n\x1a\n"sv, Container::png},
    Mark{0, "II+\0"sv, Container::tiff}, // BigTIFF, which no camera writes
    Mark{0, "MM\0+"sv, Container::tiff},
    Mark{0, "IIU\0"sv, Container::raw}, // Panasonic and Leica
    Mark{0, "IIRO"sv, Container::raw},  // Olympus
    Mark{0, "IIRS"sv, Container::raw},
    Mark{0, "MMOR"sv, Container::raw},
    Mark{0, "IIII"sv, Container::raw}, // Phase One
    Mark{0, "MMMM"sv, Container::raw},
    Mark{0, "FUJIFILMCCD-RAW"sv, Container::raw},
    Mark{0, "FOVb"sv, Container::raw},     // Sigma
    Mark{0, "\0MRM"sv, Container::raw},    // Minolta
    Mark{4, "ftypcrx "sv, Container::raw}, // Canon
    Mark{0, "GIF8"sv, Container::foreign},
    Mark{0, "BM"sv, Container::foreign},
    Mark{0, "RIFF"sv, Container::foreign}, // WebP, films
    Mark{0, "8BPS"sv, Container::foreign},
    Mark{0, "\x1f\x8b"sv, Container::foreign},
    Mark{0, "PK\x03\x04"sv, Container::foreign},
    Mark{0,
         "\x7f"
         "ELF"sv,
         Container::foreign},
    Mark{0, "\0\0\0\x0cjP  "sv, Container::foreign},
    Mark{0, "\xff\x4f\xff\x51"sv, Container::foreign},
    Mark{0, "\xff\x0a"sv, Container::foreign},
};

/// Brands of HEVC stills in the file-type box (ISO/IEC 23008-12, annex B). "mif1" and "msf1" name the
/// structure alone, so they need one of the others beside them.
Container identifyFileType(std::string_view head) {
    constexpr std::array hevc{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv, "hevx"sv, "hevm"sv, "hevs"sv};
    const std::size_t length = std::min<std::size_t>(
        head.size(), static_cast<std::size_t>(static_cast<unsigned char>(head[0])) << 24 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[1])) << 16 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[2])) << 8 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[3])));
    for (std::size_t at = 8; at + 4 <= length; at += 4)
        if (at != 12 && std::ranges::find(hevc, head.substr(at, 4)) != hevc.end()) return Container::heif;
    return Container::foreign;
}

bool isText(std::string_view head) {
    return std::ranges::all_of(head, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= 32 && byte < 127) || byte == '\n' || byte == '\r' || byte == '\t';
    });
}

} // namespace

Container identifyContainer(const ByteSource& bytes) {
    std::array<std::uint8_t, 256> buffer{};
    const std::size_t count = bytes.read(0, buffer);
    const std::string_view head(reinterpret_cast<const char*>(buffer.data()), count);
    if (count < 16) return Container::foreign;
    if (head.starts_with("II*\0"sv) || head.starts_with("MM\0*"sv))
        return holdsSensorData(bytes) ? Container::raw : Container::tiff;
    for (const Mark& mark : marks)
        if (head.substr(mark.at).starts_with(mark.bytes)) return mark.container;
    if (head.substr(4).starts_with("ftyp")) return identifyFileType(head);
    return isText(head.substr(0, 8)) ? Container::foreign : Container::unknown;
}

} // namespace lumisort::images
