#include "platform/files/FileError.h"

#include "platform/text/Collation.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace lumisort::files {

namespace {

std::string reasonFor(int code) {
    // The English text: unlike strerror's it is constant and independent of the locale.
    const char* text = strerrordesc_np(code);
    return text ? text : "error " + std::to_string(code);
}

/// The bytes of the well-formed character at the start of `text`, 0 where there is none.
std::size_t characterLength(std::string_view text) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(text.size(), 4); ++length)
        if (text::isUtf8(text.substr(0, length))) return length;
    return 0;
}

std::string shown(std::string_view path) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string text;
    while (!path.empty()) {
        const auto byte = static_cast<unsigned char>(path.front());
        const auto length = characterLength(path);
        if (length == 0 || byte < 0x20 || byte == 0x7f) {
            text += {'\\', 'x', hex[byte >> 4], hex[byte & 15]};
            path.remove_prefix(1);
        } else {
            text += path.substr(0, length);
            path.remove_prefix(length);
        }
    }
    return text;
}

std::string sentence(std::string_view action, std::string_view path, std::string_view reason) {
    return "Could not " + std::string(action) + " “" + shown(path) + "”: " + std::string(reason);
}

} // namespace

FileError::FileError(std::string_view action, std::string path, int code)
    : FileError(action, std::move(path), reasonFor(code)) {
    code_ = code;
}

FileError::FileError(std::string_view action, std::string path, std::string reason)
    : std::runtime_error(sentence(action, path, reason)), path_(std::move(path)),
      description_("Could not " + std::string(action) + (action.ends_with("the folder") ? "" : " the file") +
                   ": " + reason) {}

bool FileError::isMissing() const {
    return code_ == ENOENT || code_ == ENOTDIR;
}

} // namespace lumisort::files
