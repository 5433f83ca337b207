#include "similarity/report/HtmlText.h"

#include <openssl/evp.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdio>

namespace lumisort::similarity {
namespace {

/// Controls, and formats such as direction marks; line and paragraph separators.
bool isInvisible(UChar32 character) {
    constexpr auto mask = U_GC_CC_MASK | U_GC_CF_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    constexpr UChar32 joiner = 0x200D; // joins emoji and the letters of several scripts
    return (U_GET_GC_MASK(character) & mask) != 0 && character != joiner;
}

std::string escaped(const char* form, unsigned value) {
    char text[16];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, form, value))};
}

std::string_view entity(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return {};
    }
}

} // namespace

std::string htmlText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    for (std::size_t begin = 0, end = 0; begin < bytes.size(); begin = end) {
        UChar32 character = 0;
        U8_NEXT(data, end, bytes.size(), character);
        if (character < 0) {
            for (; begin < end; ++begin) text += escaped("\\x%02X", data[begin]);
        } else if (isInvisible(character)) {
            text += escaped(character < 0x80 ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(character));
        } else if (const auto replacement = entity(bytes[begin]); !replacement.empty()) {
            text += replacement;
        } else {
            text += bytes.substr(begin, end - begin);
        }
    }
    return text;
}

std::string base64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0'); // the library ends it with a NUL
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                    reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    text.pop_back();
    return text;
}

} // namespace lumisort::similarity
