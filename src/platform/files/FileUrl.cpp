#include "platform/files/FileUrl.h"

#include <array>
#include <filesystem>
#include <stdexcept>

namespace lumisort::files {

namespace {

constexpr std::string_view scheme = "file://";
constexpr std::string_view localHost = "localhost";

/// Which bytes stand for themselves, by value.
constexpr auto staysPlain = [] {
    std::array<bool, 256> plain{};
    for (const unsigned char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                                  "0123456789/-._~!$&'()*+,=:@"))
        plain[c] = true;
    return plain;
}();

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = hexValue(text[i + 1]);
        const int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return bytes;
}

} // namespace

FileUrl FileUrl::fromPath(std::string_view path) {
    if (path.empty()) throw std::invalid_argument("a file path must not be empty");
    if (path.find('\0') != std::string_view::npos)
        throw std::invalid_argument("a file path must not hold a NUL character");
    std::string absolute;
    if (path.front() != '/') {
        absolute = std::filesystem::current_path().string();
        if (absolute.back() != '/') absolute += '/';
    }
    absolute += path;
    const bool slash = absolute.size() > 1 && absolute.back() == '/';
    while (absolute.size() > 1 && absolute.back() == '/') absolute.pop_back();
    return FileUrl(std::move(absolute), slash);
}

std::optional<FileUrl> FileUrl::fromString(std::string_view url) {
    if (!url.starts_with(scheme)) return std::nullopt;
    url.remove_prefix(scheme.size());
    if (url.starts_with(localHost)) url.remove_prefix(localHost.size());
    if (!url.starts_with('/') || url.find_first_of("?#") != std::string_view::npos) return std::nullopt;
    const auto path = percentDecoded(url);
    if (!path || path->find('\0') != std::string::npos) return std::nullopt;
    return fromPath(*path);
}

const std::string& FileUrl::emptyPath() {
    static const std::string empty;
    return empty;
}

std::string FileUrl::string() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string url(scheme);
    url.reserve(scheme.size() + path().size() + 8);
    for (const char character : path()) {
        const auto byte = static_cast<unsigned char>(character);
        if (staysPlain[byte]) {
            url += character;
        } else {
            url += '%';
            url += digits[byte >> 4];
            url += digits[byte & 15];
        }
    }
    if (endsInSlash_) url += '/';
    return url;
}

std::string_view FileUrl::name() const {
    const std::string_view whole = path();
    const auto slash = whole.rfind('/');
    return slash == std::string_view::npos ? whole : whole.substr(slash + 1);
}

std::string_view FileUrl::extension() const {
    const auto whole = name();
    const auto dot = whole.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    const auto extension = whole.substr(dot + 1);
    return extension.find(' ') == std::string_view::npos ? extension : std::string_view();
}

std::string_view FileUrl::stem() const {
    const auto whole = name();
    const auto suffix = extension();
    return suffix.empty() ? whole : whole.substr(0, whole.size() - suffix.size() - 1);
}

FileUrl FileUrl::parent() const {
    const auto slash = path().rfind('/');
    if (slash == 0 || slash == std::string::npos) return FileUrl("/", false);
    return FileUrl(path().substr(0, slash), true);
}

FileUrl FileUrl::child(std::string_view name) const {
    return fromPath(path() == "/" ? "/" + std::string(name) : path() + '/' + std::string(name));
}

} // namespace lumisort::files
