#pragma once

#include <compare>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lumisort::files {

/// The identity of a file: an absolute path kept byte for byte (a Linux path need not be UTF-8), written in
/// documents as a percent-encoded file URL. Nothing is normalised: "." and "..", doubled slashes and letter
/// case stay as they are. A folder's URL may end in a slash; that difference is kept and counts in
/// comparisons, while `path()` never ends in one (except the root itself).
///
/// A copy shares the text, so that a library of a million photos can be handed to a worker, or kept in
/// several lists, without copying a million paths.
class FileUrl {
public:
    FileUrl() = default;

    /// From a path. A relative one is put behind the current directory, without touching the file system
    /// otherwise. Throws std::invalid_argument on an empty path or one with a NUL.
    static FileUrl fromPath(std::string_view path);

    /// From "file:///…" or "file://localhost/…". None for another scheme or host, a malformed escape, a
    /// relative path or an encoded NUL.
    static std::optional<FileUrl> fromString(std::string_view url);

    /// The plain path, as system calls take it.
    const std::string& path() const { return path_ ? *path_ : emptyPath(); }
    /// "file://" and the percent-encoded path. Unreserved and sub-delimiter characters other than ";" stay
    /// as they are (RFC 3986 pchar), all other bytes become %XX in upper case.
    std::string string() const;
    bool endsInSlash() const { return endsInSlash_; }
    bool empty() const { return path().empty(); }

    /// The last component, "" for the root.
    std::string_view name() const;
    /// What follows the last dot of the name, without the dot; "" where there is no dot, where the dot is the
    /// name's first or last character, or where what follows holds a space.
    std::string_view extension() const;
    /// The name without its extension and that extension's dot.
    std::string_view stem() const;
    /// The folder that holds this file, ending in a slash.
    FileUrl parent() const;
    /// The item `name` inside this folder. `name` may hold slashes.
    FileUrl child(std::string_view name) const;

    friend bool operator==(const FileUrl& a, const FileUrl& b) {
        return (a.path_ == b.path_ || a.path() == b.path()) && a.endsInSlash_ == b.endsInSlash_;
    }
    friend std::strong_ordering operator<=>(const FileUrl& a, const FileUrl& b) {
        const auto paths = a.path() <=> b.path();
        return paths != 0 ? paths : a.endsInSlash_ <=> b.endsInSlash_;
    }

private:
    FileUrl(std::string path, bool endsInSlash)
        : path_(std::make_shared<const std::string>(std::move(path))), endsInSlash_(endsInSlash) {}

    static const std::string& emptyPath();

    std::shared_ptr<const std::string> path_; ///< none for the empty URL
    bool endsInSlash_ = false;
};

} // namespace lumisort::files

template <>
struct std::hash<lumisort::files::FileUrl> {
    std::size_t operator()(const lumisort::files::FileUrl& url) const noexcept {
        return std::hash<std::string>()(url.path()) ^ static_cast<std::size_t>(url.endsInSlash());
    }
};
