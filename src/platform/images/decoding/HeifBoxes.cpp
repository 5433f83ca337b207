#include "platform/images/decoding/HeifBoxes.h"

#include "platform/images/decoding/Upright.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace lumisort::images {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// Reads big-endian numbers off the front; past the end it gives zeros and says so.
class Cursor {
public:
    explicit Cursor(Bytes bytes) : bytes_(bytes) {}

    std::uint64_t number(std::size_t size) {
        std::uint64_t value = 0;
        for (const auto byte : take(size)) value = value << 8 | byte;
        return value;
    }
    Bytes take(std::size_t size) {
        if (size > bytes_.size()) {
            intact_ = false;
            size = bytes_.size();
        }
        const Bytes taken = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return taken;
    }
    Bytes rest() const { return bytes_; }
    bool intact() const { return intact_; }
    bool atEnd() const { return bytes_.empty() || !intact_; }

private:
    Bytes bytes_;
    bool intact_ = true;
};

constexpr std::uint32_t code(const char (&name)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<std::uint8_t>(name[i]);
    return value;
}

struct Box {
    std::uint32_t type = 0;
    Bytes body;
};

/// The boxes inside `bytes`, in order, up to the first damaged one.
std::vector<Box> boxes(Bytes bytes) {
    std::vector<Box> result;
    Cursor cursor(bytes);
    while (cursor.rest().size() >= 8) {
        std::uint64_t size = cursor.number(4);
        Box box{.type = static_cast<std::uint32_t>(cursor.number(4)), .body = {}};
        std::uint64_t head = 8;
        if (size == 1) {
            size = cursor.number(8);
            head = 16;
        }
        if (size == 0) size = head + cursor.rest().size();
        if (size < head || size - head > cursor.rest().size()) break;
        box.body = cursor.take(static_cast<std::size_t>(size - head));
        result.push_back(box);
    }
    return result;
}

Bytes find(const std::vector<Box>& among, std::uint32_t type) {
    const auto found = std::ranges::find(among, type, &Box::type);
    return found == among.end() ? Bytes{} : found->body;
}

/// The body of the file's meta box; empty where there is none of a sensible size.
std::vector<std::uint8_t> readMeta(const ByteSource& file) {
    constexpr std::uint64_t mostBytes = 16 << 20; // Real ones have some kilobytes.
    std::uint64_t at = 0;
    for (int i = 0; i < 64; ++i) {
        std::array<std::uint8_t, 16> head{};
        if (file.read(at, head) < 8) break;
        Cursor cursor(head);
        std::uint64_t size = cursor.number(4);
        const auto type = cursor.number(4);
        const std::uint64_t headSize = size == 1 ? 16 : 8;
        if (size == 1) size = cursor.number(8);
        if (size == 0) size = file.size() - at;
        if (size < headSize || size > file.size() - at) break;
        if (type == code("meta")) {
            if (size - headSize > mostBytes) break;
            std::vector<std::uint8_t> body(size - headSize);
            if (!file.readExactly(at + headSize, body)) body.clear();
            return body;
        }
        at += size;
    }
    return {};
}

/// The coding of each item.
std::map<std::uint64_t, std::uint64_t> readItemTypes(Bytes iinf) {
    std::map<std::uint64_t, std::uint64_t> types;
    Cursor cursor(iinf);
    const auto version = cursor.number(1);
    cursor.take(3);
    cursor.take(version == 0 ? 2 : 4);
    for (const Box& entry : boxes(cursor.rest())) {
        if (entry.type != code("infe")) continue;
        Cursor item(entry.body);
        const auto entryVersion = item.number(1);
        if (entryVersion < 2) continue;
        item.take(3);
        const auto id = item.number(entryVersion == 2 ? 2 : 4);
        item.take(2);
        types.emplace(id, item.number(4));
    }
    return types;
}

/// The items that a derived one is made of.
std::vector<std::uint64_t> readParts(Bytes iref, std::uint64_t derived) {
    Cursor cursor(iref);
    const std::size_t idSize = cursor.number(1) == 0 ? 2 : 4;
    cursor.take(3);
    std::vector<std::uint64_t> parts;
    for (const Box& reference : boxes(cursor.rest())) {
        Cursor body(reference.body);
        if (reference.type != code("dimg") || body.number(idSize) != derived) continue;
        const auto count = body.number(2);
        for (std::uint64_t i = 0; i < count && !body.atEnd(); ++i) parts.push_back(body.number(idSize));
    }
    return parts;
}

/// Whether the primary item, or all that it is derived from, is coded in HEVC.
bool isHevc(const std::vector<Box>& meta, std::uint64_t primary) {
    const auto types = readItemTypes(find(meta, code("iinf")));
    const auto isType = [&types](std::uint64_t item, std::uint32_t type) {
        const auto found = types.find(item);
        return found != types.end() && found->second == type;
    };
    if (isType(primary, code("hvc1"))) return true;
    if (!isType(primary, code("grid")) && !isType(primary, code("iovl")) && !isType(primary, code("iden")))
        return false;
    const auto parts = readParts(find(meta, code("iref")), primary);
    return !parts.empty() &&
           std::ranges::all_of(parts, [&](auto part) { return isType(part, code("hvc1")); });
}

/// 1-based indices of the primary item's properties, in the order in which they apply.
std::vector<std::size_t> readAssociations(Bytes ipma, std::uint64_t primary) {
    Cursor cursor(ipma);
    const auto version = cursor.number(1);
    const bool wide = (cursor.number(3) & 1) != 0;
    const auto entries = cursor.number(4);
    for (std::uint64_t i = 0; i < entries && !cursor.atEnd(); ++i) {
        const auto id = cursor.number(version == 0 ? 2 : 4);
        const auto count = cursor.number(1);
        std::vector<std::size_t> indices;
        for (std::uint64_t k = 0; k < count; ++k) // The top bit says whether the property is essential.
            indices.push_back(wide ? cursor.number(2) & 0x7fff : cursor.number(1) & 0x7f);
        if (id == primary && cursor.intact()) return indices;
    }
    return {};
}

std::optional<Orientation> readOrientation(Bytes iprp, std::uint64_t primary) {
    const auto children = boxes(iprp);
    const auto properties = boxes(find(children, code("ipco")));
    std::optional<Orientation> orientation;
    const auto add = [&](Orientation next) {
        orientation = compose(orientation.value_or(Orientation::unchanged), next);
    };
    for (const std::size_t index : readAssociations(find(children, code("ipma")), primary)) {
        if (index < 1 || index > properties.size() || properties[index - 1].body.empty()) continue;
        const Box& property = properties[index - 1];
        const auto value = property.body[0];
        if (property.type == code("irot")) { // quarter turns against the clock
            constexpr std::array turns{Orientation::unchanged, Orientation::quarterTurnCounterClockwise,
                                       Orientation::halfTurn, Orientation::quarterTurnClockwise};
            add(turns[value & 3]);
        } else if (property.type == code("imir")) { // 0: top to bottom, 1: left to right
            add((value & 1) != 0 ? Orientation::mirrorLeftRight : Orientation::mirrorTopBottom);
        }
    }
    return orientation;
}

} // namespace

std::optional<HeifPrimary> readHeifPrimary(const ByteSource& file) {
    const auto meta = readMeta(file);
    if (meta.size() < 4) return std::nullopt;
    const auto children = boxes(Bytes(meta).subspan(4));
    Cursor pitm(find(children, code("pitm")));
    const auto version = pitm.number(1);
    pitm.take(3);
    const auto primary = pitm.number(version == 0 ? 2 : 4);
    if (!pitm.intact()) return std::nullopt;
    return HeifPrimary{.hevc = isHevc(children, primary),
                       .orientation = readOrientation(find(children, code("iprp")), primary)};
}

} // namespace lumisort::images
