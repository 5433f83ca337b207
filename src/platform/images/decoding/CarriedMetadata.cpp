#include "platform/images/decoding/CarriedMetadata.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <mutex>
#include <utility>

namespace lumisort::images {
namespace {

constexpr long mostFieldBytes = 65'536;

/// Tags of a TIFF directory that say something of the photo rather than of its pixels.
constexpr std::array<std::uint16_t, 11> descriptions{
    269,   // document name
    270,   // image description
    271,   // make
    272,   // model
    282,   // horizontal resolution
    283,   // vertical resolution
    296,   // unit of the resolutions
    305,   // software
    306,   // date and time
    315,   // artist
    33432, // copyright
};
constexpr std::uint16_t makerNote = 0x927C, interoperability = 0xA005, iptcTag = 33723, xmpTag = 700;

void add(TiffDirectory& directory, const Exiv2::Exifdatum& datum) {
    const auto type = static_cast<int>(datum.typeId());
    if (type < 1 || type > 12 || datum.size() <= 0 || datum.size() > mostFieldBytes || datum.count() <= 0)
        return;
    TiffField field{static_cast<std::uint16_t>(type), static_cast<std::uint32_t>(datum.count()),
                    std::string(static_cast<std::size_t>(datum.size()), '\0')};
    datum.copy(reinterpret_cast<Exiv2::byte*>(field.bytes.data()), Exiv2::littleEndian);
    directory.insert_or_assign(datum.tag(), std::move(field));
}

void addExif(TiffMetadata& metadata, const Exiv2::ExifData& exif) {
    for (const auto& datum : exif) {
        const std::string group = datum.groupName();
        if (group == "Image" && std::ranges::find(descriptions, datum.tag()) != descriptions.end())
            add(metadata.image, datum);
        else if (group == "Photo" && datum.tag() != makerNote && datum.tag() != interoperability)
            add(metadata.exif, datum);
        else if (group == "GPSInfo")
            add(metadata.gps, datum);
    }
}

void addIptc(TiffMetadata& metadata, const Exiv2::IptcData& iptc) {
    if (iptc.empty()) return;
    const auto block = Exiv2::IptcParser::encode(iptc);
    if (block.size_ <= 0 || block.size_ > mostFieldBytes) return;
    metadata.image[iptcTag] =
        TiffField::of(TiffField::Type::undefined, std::string(reinterpret_cast<const char*>(block.pData_),
                                                              static_cast<std::size_t>(block.size_)));
}

void addLens(TiffMetadata& metadata, const Exiv2::XmpData& xmp) {
    Exiv2::XmpData lens;
    for (const auto& datum : xmp)
        if (datum.groupName() == "aux" && datum.size() <= mostFieldBytes) lens.add(datum);
    std::string packet;
    if (lens.empty() || Exiv2::XmpParser::encode(packet, lens, Exiv2::XmpParser::useCompactFormat) != 0)
        return;
    if (std::cmp_less(packet.size(), mostFieldBytes))
        metadata.image[xmpTag] = TiffField::of(TiffField::Type::byte, std::move(packet));
}

} // namespace

TiffMetadata carriedMetadata(const FileBytes& photo) {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    });
    TiffMetadata metadata;
    try {
        const auto image = Exiv2::ImageFactory::open(photo.path());
        image->readMetadata();
        addExif(metadata, image->exifData());
        addIptc(metadata, image->iptcData());
        addLens(metadata, image->xmpData());
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): what was read until then is carried
    }
    return metadata;
}

} // namespace lumisort::images
