#pragma once

#include <string>
#include <string_view>

namespace lumisort::similarity {

/// Any bytes as UTF-8 text for HTML content and quoted attributes. What a page cannot show or would obey
/// (bytes that are no UTF-8, control characters, marks that turn the direction of writing) becomes visible,
/// as \xE9 or \u202E; a backslash stays a backslash.
std::string htmlText(std::string_view bytes);

/// RFC 4648, section 4, with padding and without line breaks.
std::string base64(std::string_view bytes);

} // namespace lumisort::similarity
