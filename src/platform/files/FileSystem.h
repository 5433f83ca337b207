#pragma once

#include "platform/files/FileError.h"
#include "platform/files/FileStatus.h"
#include "platform/files/VolumeFacts.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>

namespace lumisort::files {

enum class Links { follow, doNotFollow };

/// An open file. Closed by the destructor; used by one thread at a time. Every operation throws FileError.
class OpenFile {
public:
    virtual ~OpenFile() = default;
    /// Reads up to buffer.size() bytes from the current position; 0 means the end of the file.
    virtual std::size_t read(std::span<std::byte> buffer) = 0;
    /// Writes all bytes at the current position.
    virtual void write(std::span<const std::byte> bytes) = 0;
    /// Moves the current position, in bytes from the start; at most the file's size.
    virtual void seek(std::int64_t position) = 0;
    virtual FileStatus status() = 0;
    /// Sets the permission bits of a file opened for writing, as far as the file system can hold them.
    virtual void setPermissions(std::uint32_t permissions) = 0;
    /// Returns when the contents and the size are on the medium.
    virtual void flush() = 0;
    /// Asks the system to forget its cached copy of the contents, so that the next read comes from the
    /// medium. Advice only: it never fails.
    virtual void dropCache() = 0;
    /// Closes, reporting what the system kept for the end (network file systems do). Later calls do nothing.
    virtual void close() = 0;
};

/// Called with the name and kind of a folder's entry (of a symbolic link: the link itself); returns whether
/// to go on.
using EntryVisitor = std::function<bool(std::string_view name, FileKind kind)>;

/// A folder locked against other programs until the object is destroyed.
class FolderLock {
public:
    virtual ~FolderLock() = default;
};

/// Every effect that the program has on files goes through this interface, so that a full disk, a lost flush
/// and a crash are ordinary tests. Paths are absolute, byte for byte. All operations throw FileError (with
/// the path that was the matter) and may be called from any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual FileStatus status(const std::string& path, Links links) = 0;
    /// The path that the symbolic link at `path` holds, as it stands there. EINVAL where it is no link.
    virtual std::string readLink(const std::string& path) = 0;
    /// Opens a regular file for reading; anything else fails, without blocking on a pipe or device. With
    /// Links::doNotFollow a symbolic link at the end of the path fails with ELOOP.
    virtual std::unique_ptr<OpenFile> open(const std::string& path, Links links) = 0;
    /// Creates a file that must not exist yet (permissions 0666 less the umask) and opens it for writing.
    virtual std::unique_ptr<OpenFile> create(const std::string& path) = 0;
    /// Copies a regular file's contents to `to`, which must not exist yet, then its user extended attributes,
    /// permissions and access and modification times (as far as the target's file system can hold them).
    /// Shares blocks or copies inside the kernel where possible. A source that changes meanwhile is a
    /// failure. Looks at `stop` between pieces of at most 16 MiB and throws tasks::Cancelled. What was
    /// written when it fails stays at `to` for the caller to remove. The copy is not flushed.
    virtual void copy(const std::string& from, const std::string& to, const std::stop_token& stop) = 0;
    /// Renames, replacing a file at `to` in one step.
    virtual void replace(const std::string& from, const std::string& to) = 0;
    /// Lets two files of one folder swap their names, in one step. False where the file system cannot (exFAT,
    /// most network ones); nothing has happened then.
    virtual bool exchange(const std::string& a, const std::string& b) = 0;
    /// Renames a file; fails with EEXIST when anything is at `to`, also on file systems whose rename cannot
    /// promise that. Cut short there, it leaves `from` whole, and at `to` the file itself or an empty one.
    virtual void moveWithoutOverwrite(const std::string& from, const std::string& to) = 0;
    /// Removes a file, a link or an empty folder.
    virtual void remove(const std::string& path) = 0;
    /// Creates one folder; fails with EEXIST when anything is at `path`.
    virtual void createDirectory(const std::string& path) = 0;
    /// Creates a folder and all that are missing above it; a folder that is there is no failure.
    virtual void createDirectories(const std::string& path) = 0;
    /// Returns when the folder's entries (creations, renames, removals) are on the medium.
    virtual void flushDirectory(const std::string& path) = 0;
    /// Whether this user may read the file or list the folder at `path` (of a link, what it points at); false
    /// where nothing is there. Never throws.
    virtual bool isReadable(const std::string& path) = 0;
    /// Visits every entry of the folder at `path` except "." and "..", in the order in which the file system
    /// keeps them. With Links::doNotFollow a symbolic link at `path` fails. Paths longer than the system
    /// takes at once (PATH_MAX) are walked piece by piece.
    virtual void eachEntry(const std::string& path, Links links, const EntryVisitor& visit) = 0;
    /// Locks the folder at `path` (flock(2): a killed program leaves no lock behind). Null while another
    /// program, or another lock of this one, holds it, and where the file system cannot lock folders.
    virtual std::unique_ptr<FolderLock> tryLockFolder(const std::string& path) = 0;
    virtual VolumeFacts volumeFacts(const std::string& path) = 0;

    /// The machine's file system; lives as long as the process.
    static FileSystem& real();
};

} // namespace lumisort::files
