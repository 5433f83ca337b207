#include "platform/images/decoding/FileSignature.h"

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
    FileSignature signature;
};

// Signatures of camera formats are those of LibRaw and of the makers' documents. Formats built on TIFF are
// missing here: holdsSensorData() tells them by their tags.
constexpr std::array marks{
    Mark{0, "\xff\xd8\xff"sv, FileSignature::jpeg},
    Mark{0, "\x89PNG\r\n\x1a\n"sv, FileSignature::png},
    Mark{0, "II+\0"sv, FileSignature::tiff}, // BigTIFF, which no camera writes
    Mark{0, "MM\0+"sv, FileSignature::tiff},
    Mark{0, "IIU\0"sv, FileSignature::raw}, // Panasonic and Leica
    Mark{0, "IIRO"sv, FileSignature::raw},  // Olympus
    Mark{0, "IIRS"sv, FileSignature::raw},
    Mark{0, "MMOR"sv, FileSignature::raw},
    Mark{0, "IIII"sv, FileSignature::raw}, // Phase One
    Mark{0, "MMMM"sv, FileSignature::raw},
    Mark{0, "FUJIFILMCCD-RAW"sv, FileSignature::raw},
    Mark{0, "FOVb"sv, FileSignature::raw},     // Sigma
    Mark{0, "\0MRM"sv, FileSignature::raw},    // Minolta
    Mark{4, "ftypcrx "sv, FileSignature::raw}, // Canon
    Mark{0, "GIF8"sv, FileSignature::foreign},
    Mark{0, "BM"sv, FileSignature::foreign},
    Mark{0, "RIFF"sv, FileSignature::foreign}, // WebP, films
    Mark{0, "8BPS"sv, FileSignature::foreign},
    Mark{0, "\x1f\x8b"sv, FileSignature::foreign},
    Mark{0, "PK\x03\x04"sv, FileSignature::foreign},
    Mark{0,
         "\x7f"
         "ELF"sv,
         FileSignature::foreign},
    Mark{0, "\0\0\0\x0cjP  "sv, FileSignature::foreign},
    Mark{0, "\xff\x4f\xff\x51"sv, FileSignature::foreign},
    Mark{0, "\xff\x0a"sv, FileSignature::foreign},
};

/// Brands of HEVC stills in the file-type box (ISO/IEC 23008-12, annex B). "mif1" and "msf1" name the
/// structure alone, so they need one of the others beside them.
FileSignature identifyFileType(std::string_view head) {
    constexpr std::array hevc{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv, "hevx"sv, "hevm"sv, "hevs"sv};
    const std::size_t length = std::min<std::size_t>(
        head.size(), static_cast<std::size_t>(static_cast<unsigned char>(head[0])) << 24 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[1])) << 16 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[2])) << 8 |
                         static_cast<std::size_t>(static_cast<unsigned char>(head[3])));
    for (std::size_t at = 8; at + 4 <= length; at += 4)
        if (at != 12 && std::ranges::find(hevc, head.substr(at, 4)) != hevc.end()) return FileSignature::heif;
    return FileSignature::foreign;
}

bool isText(std::string_view head) {
    return std::ranges::all_of(head, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= 32 && byte < 127) || byte == '\n' || byte == '\r' || byte == '\t';
    });
}

} // namespace

FileSignature readSignature(const ByteSource& bytes) {
    std::array<std::uint8_t, 256> buffer{};
    const std::size_t count = bytes.read(0, buffer);
    const std::string_view head(reinterpret_cast<const char*>(buffer.data()), count);
    if (count < 16) return FileSignature::foreign;
    if (head.starts_with("II*\0"sv) || head.starts_with("MM\0*"sv))
        return holdsSensorData(bytes) ? FileSignature::raw : FileSignature::tiff;
    for (const Mark& mark : marks)
        if (head.substr(mark.at).starts_with(mark.bytes)) return mark.signature;
    if (head.substr(4).starts_with("ftyp")) return identifyFileType(head);
    return isText(head.substr(0, 8)) ? FileSignature::foreign : FileSignature::none;
}

} // namespace lumisort::images
