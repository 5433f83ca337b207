#include "platform/files/CopyFile.h"
#include "platform/files/Descriptor.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FolderListing.h"
#include "platform/files/MoveFile.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <utility>

namespace lumisort::files {

namespace {

constexpr std::uint32_t bcachefsMagic = 0xca451a4e; // not in linux/magic.h of this age

/// File systems whose inode numbers are the driver's invention, or may be the server's.
constexpr std::array<std::uint32_t, 5> inodeInventors{MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, FUSE_SUPER_MAGIC,
                                                      CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC};
/// File systems that know FICLONE.
constexpr std::array<std::uint32_t, 4> blockSharers{BTRFS_SUPER_MAGIC, XFS_SUPER_MAGIC, bcachefsMagic,
                                                    OCFS2_SUPER_MAGIC};

bool isOneOf(std::span<const std::uint32_t> types, std::uint32_t type) {
    return std::ranges::find(types, type) != types.end();
}

class RealFolderLock : public FolderLock {
public:
    explicit RealFolderLock(Descriptor folder) : folder_(std::move(folder)) {}

private:
    Descriptor folder_;
};

class RealFile : public OpenFile {
public:
    RealFile(std::string path, Descriptor descriptor)
        : path_(std::move(path)), descriptor_(std::move(descriptor)) {}

    std::size_t read(std::span<std::byte> buffer) override {
        return readSome(descriptor_, path_, buffer.data(), buffer.size());
    }
    void write(std::span<const std::byte> bytes) override {
        writeAll(descriptor_, path_, bytes.data(), bytes.size());
    }
    void seek(std::int64_t position) override {
        if (::lseek(descriptor_.number(), position, SEEK_SET) < 0) throw FileError("read", path_, errno);
    }
    FileStatus status() override { return statusOf(descriptor_, path_); }
    void setPermissions(std::uint32_t permissions) override {
        setPermissionBits(descriptor_, path_, permissions);
    }
    void flush() override { flushToMedium(descriptor_, path_); }
    void dropCache() override { ::posix_fadvise(descriptor_.number(), 0, 0, POSIX_FADV_DONTNEED); }
    void close() override { closeReporting(descriptor_, path_); }

private:
    std::string path_;
    Descriptor descriptor_;
};

class RealFileSystem : public FileSystem {
public:
    FileStatus status(const std::string& path, Links links) override {
        return statusAt(AT_FDCWD, path.c_str(), links == Links::follow ? 0 : AT_SYMLINK_NOFOLLOW, path);
    }

    std::string readLink(const std::string& path) override {
        std::string target(256, '\0');
        while (true) {
            const auto length = ::readlink(path.c_str(), target.data(), target.size());
            if (length < 0) throw FileError("follow", path, errno);
            const auto whole = static_cast<std::size_t>(length) < target.size();
            target.resize(whole ? static_cast<std::size_t>(length) : target.size() * 2);
            if (whole) return target;
        }
    }

    std::unique_ptr<OpenFile> open(const std::string& path, Links links) override {
        return std::make_unique<RealFile>(path,
                                          openForReading(path, links == Links::follow ? 0 : O_NOFOLLOW));
    }

    std::unique_ptr<OpenFile> create(const std::string& path) override {
        return std::make_unique<RealFile>(path, createExclusively(path, 0666));
    }

    void copy(const std::string& from, const std::string& to, const std::stop_token& stop) override {
        copyFile(from, to, stop);
    }

    void replace(const std::string& from, const std::string& to) override {
        if (::rename(from.c_str(), to.c_str()) != 0) throw FileError("replace", to, errno);
    }

    bool exchange(const std::string& a, const std::string& b) override {
        if (::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0) return true;
        if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) return false;
        throw FileError("exchange", a, errno);
    }

    void moveWithoutOverwrite(const std::string& from, const std::string& to) override {
        moveFileWithoutOverwrite(from, to);
    }

    void remove(const std::string& path) override {
        if (::remove(path.c_str()) != 0) throw FileError("remove", path, errno);
    }

    void createDirectory(const std::string& path) override {
        if (::mkdir(path.c_str(), 0777) != 0) throw FileError("create the folder", path, errno);
    }

    void createDirectories(const std::string& path) override {
        if (::mkdir(path.c_str(), 0777) == 0) return;
        if (errno == ENOENT) {
            const auto end = path.find_last_not_of('/');
            const auto slash = path.rfind('/', end);
            if (end == std::string::npos || slash == std::string::npos || slash == 0)
                throw FileError("create the folder", path, ENOENT);
            createDirectories(path.substr(0, slash));
            if (::mkdir(path.c_str(), 0777) == 0) return;
        }
        const int code = errno;
        // On a read-only medium a folder that is there gives EROFS in place of EEXIST.
        struct stat present{};
        if (::stat(path.c_str(), &present) == 0) {
            if (S_ISDIR(present.st_mode)) return;
            throw FileError("create the folder", path, ENOTDIR);
        }
        throw FileError("create the folder", path, code);
    }

    void flushDirectory(const std::string& path) override {
        const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
        const Descriptor folder(uninterrupted([&] { return ::open(path.c_str(), flags); }));
        if (!folder.isOpen()) throw FileError("flush the folder", path, errno);
        flushToMedium(folder, path);
    }

    bool isReadable(const std::string& path) override {
        return ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
    }

    void eachEntry(const std::string& path, Links links, const EntryVisitor& visit) override {
        listFolder(path, links, visit);
    }

    std::unique_ptr<FolderLock> tryLockFolder(const std::string& path) override {
        const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
        Descriptor folder(uninterrupted([&] { return ::open(path.c_str(), flags); }));
        if (!folder.isOpen()) throw FileError("lock the folder", path, errno);
        if (uninterrupted([&] { return ::flock(folder.number(), LOCK_EX | LOCK_NB); }) != 0) return nullptr;
        return std::make_unique<RealFolderLock>(std::move(folder));
    }

    VolumeFacts volumeFacts(const std::string& path) override {
        struct statfs record{};
        if (uninterrupted([&] { return ::statfs(path.c_str(), &record); }) != 0)
            throw FileError("find the free space around", path, errno);
        const auto type = static_cast<std::uint32_t>(record.f_type);
        VolumeFacts facts{.availableBytes = {},
                          .keepsInodes = !isOneOf(inodeInventors, type),
                          .sharesBlocks = isOneOf(blockSharers, type)};
        if (record.f_blocks == 0) return facts; // no total: the file system does not count
        std::int64_t bytes = 0;
        if (__builtin_mul_overflow(record.f_bavail, record.f_frsize, &bytes))
            bytes = std::numeric_limits<std::int64_t>::max();
        facts.availableBytes = bytes;
        return facts;
    }
};

} // namespace

FileSystem& FileSystem::real() {
    static RealFileSystem system;
    return system;
}

} // namespace lumisort::files
