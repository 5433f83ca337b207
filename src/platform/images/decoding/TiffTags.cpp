#include "platform/images/decoding/TiffTags.h"

#include <algorithm>
#include <array>
#include <set>

namespace lumisort::images {
namespace {

constexpr std::uint16_t orientationTag = 0x0112, compressionTag = 0x0103, photometricTag = 0x0106,
                        extraSamplesTag = 0x0152, subDirectoriesTag = 0x014a, exifDirectoryTag = 0x8769,
                        dateTimeOriginalTag = 0x9003, filterPatternDimensionsTag = 0x828d,
                        filterPatternTag = 0x828e, dngVersionTag = 0xc612;
// A directory of a real file has some dozens of entries, a file some ten directories.
constexpr std::size_t mostEntries = 1024, mostDirectories = 32, mostText = 64;

struct Entry {
    std::uint16_t tag = 0, type = 0;
    std::uint32_t count = 0;
    std::uint64_t valueAt = 0; ///< where the value's bytes start
};

struct Directory {
    std::vector<Entry> entries;
    std::uint32_t next = 0; ///< 0 for none

    const Entry* find(std::uint16_t tag) const {
        const auto found = std::ranges::find(entries, tag, &Entry::tag);
        return found == entries.end() ? nullptr : &*found;
    }
};

class Reader {
public:
    /// None when the bytes do not start like a classic TIFF.
    static std::optional<Reader> open(const ByteSource& bytes) {
        std::array<std::uint8_t, 8> head{};
        if (!bytes.readExactly(0, head)) return std::nullopt;
        const bool big = head[0] == 'M' && head[1] == 'M';
        if (!big && !(head[0] == 'I' && head[1] == 'I')) return std::nullopt;
        Reader reader(bytes, big);
        if (reader.number16(&head[2]) != 42) return std::nullopt;
        reader.first_ = reader.number32(&head[4]);
        return reader;
    }

    std::uint32_t first() const { return first_; }

    Directory directory(std::uint32_t at) const {
        Directory result;
        std::array<std::uint8_t, 2> head{};
        if (at == 0 || !bytes_->readExactly(at, head)) return result;
        const std::size_t count = number16(head.data());
        std::vector<std::uint8_t> body(std::min(count, mostEntries) * 12 + (count > mostEntries ? 0 : 4));
        body.resize(bytes_->read(std::uint64_t{at} + 2, body));
        for (std::size_t i = 0; i < std::min(count, mostEntries) && (i + 1) * 12 <= body.size(); ++i)
            result.entries.push_back(entry(&body[i * 12], std::uint64_t{at} + 2 + i * 12));
        if (count <= mostEntries && body.size() == count * 12 + 4) result.next = number32(&body[count * 12]);
        return result;
    }

    /// The value at `index`; none unless the entry holds whole numbers and that many of them.
    std::optional<std::uint32_t> number(const Entry* entry, std::uint32_t index = 0) const {
        if (!entry || index >= entry->count) return std::nullopt;
        const std::size_t size = sizeOf(entry->type);
        std::array<std::uint8_t, 4> bytes{};
        if (size == 0 || size > 4 || entry->type == 2) return std::nullopt;
        if (!bytes_->readExactly(entry->valueAt + index * size, std::span(bytes).first(size)))
            return std::nullopt;
        return size == 1 ? bytes[0] : size == 2 ? number16(bytes.data()) : number32(bytes.data());
    }

    std::string text(const Entry* entry) const {
        if (!entry || entry->type != 2) return {};
        std::vector<std::uint8_t> bytes(std::min<std::size_t>(entry->count, mostText));
        bytes.resize(bytes_->read(entry->valueAt, bytes));
        return {bytes.begin(), std::ranges::find(bytes, 0)};
    }

private:
    Reader(const ByteSource& bytes, bool big) : bytes_(&bytes), big_(big) {}

    std::uint16_t number16(const std::uint8_t* p) const {
        return static_cast<std::uint16_t>(big_ ? p[0] << 8 | p[1] : p[1] << 8 | p[0]);
    }
    std::uint32_t number32(const std::uint8_t* p) const {
        const std::uint32_t a = number16(p), b = number16(p + 2);
        return big_ ? a << 16 | b : b << 16 | a;
    }
    /// Bytes per value of a field type; 0 for one that nothing here asks for.
    static std::size_t sizeOf(std::uint16_t type) {
        constexpr std::array<std::uint8_t, 14> sizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
        return type < sizes.size() ? sizes[type] : 0;
    }
    Entry entry(const std::uint8_t* p, std::uint64_t at) const {
        Entry result{
            .tag = number16(p), .type = number16(p + 2), .count = number32(p + 4), .valueAt = at + 8};
        if (sizeOf(result.type) * std::uint64_t{result.count} > 4) result.valueAt = number32(p + 8);
        return result;
    }

    const ByteSource* bytes_;
    bool big_;
    std::uint32_t first_ = 0;
};

bool describesSensorData(const Reader& reader, const Directory& directory) {
    // TIFF/EP (ISO 12234-2): colour filter array; DNG: linear raw.
    const auto photometric = reader.number(directory.find(photometricTag));
    if (photometric == 32803 || photometric == 34892) return true;
    if (directory.find(dngVersionTag) || directory.find(filterPatternTag) ||
        directory.find(filterPatternDimensionsTag))
        return true;
    // Sony, Kodak, Samsung, Nikon, Kodak DCR, Pentax.
    constexpr std::array<std::uint32_t, 7> makers{32767, 32867, 32770, 32772, 34713, 65000, 65535};
    const auto compression = reader.number(directory.find(compressionTag));
    return compression && std::ranges::find(makers, *compression) != makers.end();
}

} // namespace

ExifFields readExifFields(const ByteSource& tiff) {
    ExifFields fields;
    const auto reader = Reader::open(tiff);
    if (!reader) return fields;
    const Directory main = reader->directory(reader->first());
    const auto orientation = reader->number(main.find(orientationTag)).value_or(0);
    fields.orientation = orientationOfExif(orientation);
    if (const auto at = reader->number(main.find(exifDirectoryTag)))
        fields.dateTimeOriginal = reader->text(reader->directory(*at).find(dateTimeOriginalTag));
    return fields;
}

ExifFields readExifFields(std::span<const std::uint8_t> block) {
    constexpr std::array<std::uint8_t, 6> mark{'E', 'x', 'i', 'f', 0, 0};
    if (block.size() >= mark.size() && std::ranges::equal(block.first(mark.size()), mark))
        block = block.subspan(mark.size());
    return readExifFields(MemoryBytes(block));
}

std::optional<std::uint32_t> readExtraSample(const ByteSource& tiff) {
    const auto reader = Reader::open(tiff);
    if (!reader) return std::nullopt;
    return reader->number(reader->directory(reader->first()).find(extraSamplesTag));
}

bool holdsSensorData(const ByteSource& tiff) {
    const auto reader = Reader::open(tiff);
    if (!reader) return false;
    // Behind the TIFF head: Canon's mark, or Phase One's own structure.
    std::array<std::uint8_t, 4> mark{};
    if (tiff.readExactly(8, mark)) {
        const std::string_view seen(reinterpret_cast<const char*>(mark.data()), mark.size());
        if (seen.starts_with("CR\x02") || seen == "IIII" || seen == "MMMM") return true;
    }
    std::vector<std::uint32_t> waiting{reader->first()};
    std::set<std::uint32_t> seen;
    while (!waiting.empty() && seen.size() < mostDirectories) {
        const auto at = waiting.back();
        waiting.pop_back();
        if (at == 0 || !seen.insert(at).second) continue;
        const Directory directory = reader->directory(at);
        if (describesSensorData(*reader, directory)) return true;
        waiting.push_back(directory.next);
        const Entry* children = directory.find(subDirectoriesTag);
        for (std::uint32_t i = 0; i < mostDirectories; ++i) {
            const auto child = reader->number(children, i);
            if (!child) break;
            waiting.push_back(*child);
        }
    }
    return false;
}

} // namespace lumisort::images
