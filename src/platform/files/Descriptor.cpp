#include "platform/files/Descriptor.h"

#include "platform/files/FileError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace lumisort::files {

namespace {

FileKind kindOf(unsigned mode) {
    if (S_ISREG(mode)) return FileKind::regular;
    if (S_ISDIR(mode)) return FileKind::directory;
    if (S_ISLNK(mode)) return FileKind::symbolicLink;
    return FileKind::other;
}

FileTime timeOf(const statx_timestamp& stamp) {
    return {.seconds = stamp.tv_sec, .nanoseconds = stamp.tv_nsec};
}

} // namespace

Descriptor openForReading(const std::string& path, int furtherFlags) {
    // Without O_NONBLOCK the open of a pipe would wait for a writer; on regular files the flag means nothing.
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | furtherFlags;
    Descriptor descriptor(uninterrupted([&] { return ::open(path.c_str(), flags); }));
    if (!descriptor.isOpen()) throw FileError("open", path, errno);
    const auto kind = statusOf(descriptor, path).kind;
    if (kind == FileKind::directory) throw FileError("open", path, EISDIR);
    if (kind != FileKind::regular) throw FileError("open", path, "It is not a regular file");
    return descriptor;
}

Descriptor createExclusively(const std::string& path, mode_t permissions) {
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY;
    Descriptor descriptor(uninterrupted([&] { return ::open(path.c_str(), flags, permissions); }));
    if (!descriptor.isOpen()) throw FileError("create", path, errno);
    return descriptor;
}

FileStatus statusAt(int directory, const char* name, int flags, const std::string& path) {
    struct statx record{};
    const unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    if (uninterrupted([&] { return ::statx(directory, name, flags, wanted, &record); }) != 0)
        throw FileError("read the attributes of", path, errno);
    FileStatus status{.kind = kindOf(record.stx_mode),
                      .device = gnu_dev_makedev(record.stx_dev_major, record.stx_dev_minor),
                      .inode = record.stx_ino,
                      .size = static_cast<std::int64_t>(record.stx_size),
                      .permissions = record.stx_mode & 07777U,
                      .modified = timeOf(record.stx_mtime),
                      .changed = timeOf(record.stx_ctime),
                      .created = std::nullopt};
    if (record.stx_mask & STATX_BTIME) status.created = timeOf(record.stx_btime);
    return status;
}

FileStatus statusOf(const Descriptor& descriptor, const std::string& path) {
    return statusAt(descriptor.number(), "", AT_EMPTY_PATH, path);
}

std::size_t readSome(const Descriptor& descriptor, const std::string& path, void* buffer, std::size_t bytes) {
    const auto count = uninterrupted([&] { return ::read(descriptor.number(), buffer, bytes); });
    if (count < 0) throw FileError("read", path, errno);
    return static_cast<std::size_t>(count);
}

void writeAll(const Descriptor& descriptor, const std::string& path, const void* bytes, std::size_t count) {
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const auto written = uninterrupted([&] { return ::write(descriptor.number(), next, count); });
        if (written < 0) throw FileError("write", path, errno);
        if (written == 0) throw FileError("write", path, EIO);
        next += written;
        count -= static_cast<std::size_t>(written);
    }
}

void setPermissionBits(const Descriptor& descriptor, const std::string& path, mode_t permissions) {
    if (::fchmod(descriptor.number(), permissions) == 0) return;
    // File systems such as FAT hold no such bits.
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
        throw FileError("set the permissions of", path, errno);
}

void flushToMedium(const Descriptor& descriptor, const std::string& path) {
    if (uninterrupted([&] { return ::fsync(descriptor.number()); }) == 0) return;
    if (errno != EINVAL && errno != EOPNOTSUPP && errno != ENOSYS) throw FileError("flush", path, errno);
}

void closeReporting(Descriptor& descriptor, const std::string& path) {
    if (!descriptor.isOpen()) return;
    // Linux frees the descriptor even when a signal interrupts the call: never again.
    if (::close(descriptor.release()) != 0 && errno != EINTR) throw FileError("write", path, errno);
}

} // namespace lumisort::files
