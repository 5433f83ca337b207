#include "platform/files/AtomicFile.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <random>
#include <span>
#include <utility>

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

/// A name of fixed length: one made from the file's own could exceed the 255 bytes that file systems take.
std::string temporaryPath(const std::string& folder) {
    static constexpr char hex[] = "0123456789abcdef";
    std::random_device random;
    std::string path = folder == "/" ? "/.lumisort-" : folder + "/.lumisort-";
    for (int word = 0; word < 4; ++word)
        for (auto bits = random(), digit = 0U; digit < 8; ++digit, bits >>= 4) path += hex[bits & 15];
    return path + ".tmp";
}

using Contents = std::function<void(OpenFile&)>;

void writeTemporary(FileSystem& system, const std::string& path, const Contents& write,
                    const std::optional<FileStatus>& replaced) {
    const auto file = system.create(path);
    // Before the contents: what was private is so at no instant less.
    if (replaced) file->setPermissions(replaced->permissions);
    write(*file);
    file->flush();
    file->close();
}

void replaceTarget(FileSystem& system, const std::string& target, const std::optional<FileStatus>& replaced,
                   const Contents& write) {
    const auto folder = folderOf(target);
    const auto temporary = temporaryPath(folder);
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
        std::string target = path;
        auto present = statusIfPresent(system, target);
        for (int links = 0; present && present->kind == FileKind::symbolicLink; ++links) {
            if (links == mostLinks) throw FileError("write", path, ELOOP);
            const auto next = system.readLink(target);
            target = next.starts_with('/') ? next : folderOf(target) + '/' + next;
            present = statusIfPresent(system, target);
        }
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
