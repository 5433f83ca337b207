#include "app/commandline/Text.h"

#include "platform/text/Collation.h"

#include <array>
#include <cstdio>

namespace lumisort::app {

namespace {

/// Bytes of the UTF-8 sequence that `text` starts with, 0 when it starts with none.
std::size_t sequenceLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    return length && length <= text.size() && text::isUtf8(text.substr(0, length)) ? length : 0;
}

bool isControl(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence[0]);
    if (sequence.size() == 1) return first < 0x20 || first == 0x7F;
    if (sequence.size() == 2) return first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
    // Directional overrides and isolates (U+202A…202E, U+2066…2069) reorder what stands behind them.
    return (sequence >= "\u202A" && sequence <= "\u202E") || (sequence >= "\u2066" && sequence <= "\u2069");
}

void appendEscaped(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) {
        std::array<char, 8> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\x%02x", static_cast<unsigned char>(byte));
        out += escaped.data();
    }
}

} // namespace

std::string printable(std::string_view path) {
    std::string out;
    out.reserve(path.size());
    while (!path.empty()) {
        const std::size_t length = sequenceLength(path);
        const auto piece = path.substr(0, length ? length : 1);
        if (length && !isControl(piece))
            out += piece;
        else
            appendEscaped(out, piece);
        path.remove_prefix(piece.size());
    }
    return out;
}

std::string counted(std::int64_t count, std::string_view noun) {
    std::string digits = std::to_string(count);
    for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
    digits += ' ';
    digits += noun;
    if (count != 1) digits += 's';
    return digits;
}

} // namespace lumisort::app
