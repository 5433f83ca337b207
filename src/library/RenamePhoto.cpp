#include "library/RenamePhoto.h"

#include "platform/text/Collation.h"

#include <algorithm>
#include <cerrno>
#include <string>

namespace lumisort::library {

namespace {

constexpr auto invalidName = "Enter a valid filename without / or :.";
constexpr auto nameTaken = "A file with this name already exists.";

/// White space of Unicode (property White_Space) in UTF-8.
constexpr std::string_view whiteSpace[] = {
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

std::string_view trimmed(std::string_view text) {
    for (bool again = true; again;) {
        again = false;
        for (const auto space : whiteSpace) {
            if (text.starts_with(space)) text.remove_prefix(space.size()), again = true;
            if (text.ends_with(space)) text.remove_suffix(space.size()), again = true;
        }
    }
    return text;
}

/// The control characters of Unicode (category Cc): U+0000…001F, U+007F…009F.
bool holdsControlCharacter(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) return true;
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0)
            return true;
    }
    return false;
}

bool isValid(std::string_view name) {
    return !name.empty() && name.front() != '.' && name.find_first_of("/:") == std::string_view::npos &&
           !holdsControlCharacter(name) && text::isUtf8(name);
}

} // namespace

Photo renamePhoto(files::FileSystem& system, const Photo& photo, std::string_view stem) {
    const auto name = trimmed(stem);
    if (!isValid(name)) throw RenameError(invalidName);
    std::string whole(name);
    if (const auto extension = photo.url.extension(); !extension.empty()) (whole += '.') += extension;

    Photo renamed = photo;
    renamed.url = photo.url.parent().child(whole);
    if (renamed.url == photo.url) return photo;
    try {
        // One step of the file system checks and moves, so that no other program slips in between.
        system.moveWithoutOverwrite(photo.url.path(), renamed.url.path());
    } catch (const files::FileError& error) {
        if (error.code() == EEXIST) throw RenameError(nameTaken);
        throw;
    }
    return renamed;
}

} // namespace lumisort::library
