#include "platform/files/AtomicFile.h"

#include "platform/files/Digest.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <random>
#include <span>
#include <utility>
#include <vector>

namespace lumisort::files {

namespace {

constexpr int mostLinks = 40; // as many as the kernel follows

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::optional<FileStatus> statusIfPresent(FileSystem& system, const std::string& path) {
    try {
        return system.status(path, Links::doNotFollow);
    } catch (const FileError& error) {
        if (error.code() != ENOENT) throw;
        return std::nullopt;
    }
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// What the names of all temporary files for `path` begin with. Of fixed length: the file's own name in it
/// could exceed the 255 bytes that file systems take.
std::string temporaryPrefix(const std::string& path) {
    constexpr std::size_t digits = 16;
    const auto name = nameOf(path);
    Sha256 digest;
    digest.update(std::as_bytes(std::span(name)));
    return ".lumisort-" + digest.finish().substr(0, digits) + '-';
}

constexpr std::string_view temporaryEnding = ".tmp";

/// The file that a write to `path` replaces: `path` itself or what the symbolic links there lead to, and its
/// status where it is there.
struct Target {
    std::string path;
    std::optional<FileStatus> present;
};

Target targetOf(FileSystem& system, const std::string& path) {
    Target target{path, statusIfPresent(system, path)};
    for (int links = 0; target.present && target.present->kind == FileKind::symbolicLink; ++links) {
        if (links == mostLinks) throw FileError("write", path, ELOOP);
        const auto next = system.readLink(target.path);
        target.path = next.starts_with('/') ? next : folderOf(target.path) + '/' + next;
        target.present = statusIfPresent(system, target.path);
    }
    return target;
}

void removeLeftoversBeside(FileSystem& system, const std::string& path) {
    const auto folder = folderOf(path), prefix = temporaryPrefix(path);
    std::vector<std::string> leftovers;
    system.eachEntry(folder, Links::follow, [&](std::string_view name, FileKind kind) {
        if (kind == FileKind::regular && name.starts_with(prefix) && name.ends_with(temporaryEnding))
            leftovers.emplace_back(name);
        return true;
    });
    for (const auto& name : leftovers) system.remove(folder + '/' + name);
}

using Contents = std::function<void(OpenFile&)>;

void writeTemporary(FileSystem& system, const std::string& path, const Contents& write,
                    const std::optional<FileStatus>& replaced) {
    const auto file = system.create(path);
    // Before the contents, which must not be readable for others at any instant when the old ones were not.
    if (replaced) file->setPermissions(replaced->permissions);
    write(*file);
    file->flush();
    file->close();
}

void replaceTarget(FileSystem& system, const std::string& target, const std::optional<FileStatus>& replaced,
                   const Contents& write) {
    const auto folder = folderOf(target);
    const auto temporary = temporaryPath(target);
    try {
        writeTemporary(system, temporary, write, replaced);
        system.replace(temporary, target);
    } catch (...) {
        try {
            system.remove(temporary);
        } catch (const FileError&) { // NOLINT(bugprone-empty-catch): the first failure is the one to report
        }
        throw;
    }
    system.flushDirectory(folder);
}

} // namespace

void replaceFile(FileSystem& system, const std::string& path, std::string_view contents) {
    replaceFile(system, path, [&](OpenFile& file) { file.write(std::as_bytes(std::span(contents))); });
}

void replaceFile(FileSystem& system, const std::string& path, const Contents& write) {
    try {
        const auto [target, present] = targetOf(system, path);
        if (present && present->kind == FileKind::directory) throw FileError("write", path, EISDIR);
        if (present && present->kind != FileKind::regular)
            throw FileError("write", path, "It is not a regular file");
        replaceTarget(system, target, present, write);
    } catch (const FileError& error) {
        if (error.path() == path || error.code() == 0) throw;
        // The temporary file's name would tell the user nothing.
        throw FileError("write", path, error.code());
    }
}

std::string temporaryPath(const std::string& path) {
    static constexpr char hex[] = "0123456789abcdef";
    std::random_device random;
    auto temporary = folderOf(path);
    if (!temporary.ends_with('/')) temporary += '/';
    temporary += temporaryPrefix(path);
    for (int word = 0; word < 2; ++word)
        for (auto bits = random(), digit = 0U; digit < 8; ++digit, bits >>= 4) temporary += hex[bits & 15];
    return temporary.append(temporaryEnding);
}

void removeLeftovers(FileSystem& system, const std::string& path) {
    try {
        removeLeftoversBeside(system, path);
        const auto target = targetOf(system, path).path;
        if (target != path) removeLeftoversBeside(system, target);
    } catch (const FileError&) { // NOLINT(bugprone-empty-catch): what cannot be removed harms nothing
    }
}

std::string readFile(FileSystem& system, const std::string& path, std::int64_t limitBytes) {
    const auto file = system.open(path, Links::follow);
    const auto expected = file->status().size;
    if (expected > limitBytes) throw FileError("read", path, EFBIG);
    // One byte more than expected tells the end without another read; files may grow and /proc says 0.
    std::string contents(static_cast<std::size_t>(expected) + 1, '\0');
    std::size_t used = 0;
    while (true) {
        const auto count = file->read(std::as_writable_bytes(std::span(contents).subspan(used)));
        if (count == 0) break;
        used += count;
        if (std::cmp_greater(used, limitBytes)) throw FileError("read", path, EFBIG);
        if (used == contents.size()) contents.resize(contents.size() * 2);
    }
    contents.resize(used);
    return contents;
}

} // namespace lumisort::files
