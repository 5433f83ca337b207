#include "platform/files/FolderListing.h"

#include "platform/files/Descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <memory>

namespace lumisort::files {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// How much of `path` the next system call takes: all of it, or whole components below PATH_MAX.
std::size_t pieceLength(std::string_view path) {
    if (path.size() < PATH_MAX) return path.size();
    const auto slash = path.rfind('/', PATH_MAX - 2);
    return slash == 0 || slash == std::string_view::npos ? path.size() : slash;
}

Descriptor openFolder(const std::string& path, Links links) {
    Descriptor folder;
    std::string_view rest = path;
    do {
        const std::string piece(rest.substr(0, pieceLength(rest)));
        rest.remove_prefix(piece.size());
        while (rest.starts_with('/')) rest.remove_prefix(1);
        int flags = O_DIRECTORY | O_CLOEXEC;
        flags |= rest.empty() ? O_RDONLY | O_NONBLOCK : O_PATH;
        if (rest.empty() && links == Links::doNotFollow) flags |= O_NOFOLLOW;
        const int above = folder.isOpen() ? folder.number() : AT_FDCWD;
        Descriptor next(uninterrupted([&] { return openat(above, piece.c_str(), flags); }));
        if (!next.isOpen()) throw FileError("open", path, errno);
        folder = std::move(next);
    } while (!rest.empty());
    return folder;
}

FileKind kindOfMode(mode_t mode) {
    if (S_ISREG(mode)) return FileKind::regular;
    if (S_ISDIR(mode)) return FileKind::directory;
    return S_ISLNK(mode) ? FileKind::symbolicLink : FileKind::other;
}

FileKind kindOf(DIR* folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return kindOfMode(DTTOIF(entry.d_type));
    struct stat status{};
    if (fstatat(dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return FileKind::other;
    return kindOfMode(status.st_mode);
}

} // namespace

void listFolder(const std::string& path, Links links, const EntryVisitor& visit) {
    Descriptor descriptor = openFolder(path, links);
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor.number()));
    if (!folder) throw FileError("open", path, errno);
    descriptor.release();
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(folder.get()); // NOLINT(concurrency-mt-unsafe): one stream, one thread
        if (!entry) {
            if (errno != 0) throw FileError("read", path, errno);
            return;
        }
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (!visit(name, kindOf(folder.get(), *entry))) return;
    }
}

} // namespace lumisort::files
