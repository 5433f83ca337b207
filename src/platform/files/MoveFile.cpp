#include "platform/files/MoveFile.h"

#include "platform/files/Descriptor.h"
#include "platform/files/FileError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace lumisort::files {

namespace {

bool meansUnsupported(int code) {
    return code == EINVAL || code == ENOSYS || code == EOPNOTSUPP;
}

/// The failure lies with the target's name when that is taken, with the source otherwise.
[[noreturn]] void throwMoveError(const std::string& from, const std::string& to, int code) {
    if (code == EEXIST) throw FileError("create", to, code);
    throw FileError("move", from, code);
}

} // namespace

bool moveByExclusiveRename(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (meansUnsupported(errno)) return false;
    throwMoveError(from, to, errno);
}

bool moveByLink(const std::string& from, const std::string& to) {
    if (::link(from.c_str(), to.c_str()) != 0) {
        // EPERM: no hard links on this file system. EMLINK: no further one for this file.
        if (meansUnsupported(errno) || errno == EPERM || errno == EMLINK) return false;
        throwMoveError(from, to, errno);
    }
    if (::unlink(from.c_str()) == 0) return true;
    const int code = errno;
    ::unlink(to.c_str());
    throwMoveError(from, to, code);
}

void moveByPlaceholder(const std::string& from, const std::string& to) {
    Descriptor placeholder;
    try {
        placeholder = createExclusively(to, S_IRUSR | S_IWUSR);
    } catch (const FileError& error) {
        throwMoveError(from, to, error.code());
    }
    const auto created = statusOf(placeholder, to);
    closeReporting(placeholder, to);
    if (::rename(from.c_str(), to.c_str()) == 0) return;
    const int code = errno;
    // Only what was put there goes away again.
    struct stat present{};
    if (::lstat(to.c_str(), &present) == 0 && present.st_ino == created.inode && present.st_size == 0)
        ::unlink(to.c_str());
    throwMoveError(from, to, code);
}

void moveFileWithoutOverwrite(const std::string& from, const std::string& to) {
    if (moveByExclusiveRename(from, to) || moveByLink(from, to)) return;
    moveByPlaceholder(from, to);
}

} // namespace lumisort::files
