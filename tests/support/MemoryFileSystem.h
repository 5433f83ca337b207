#pragma once

#include "platform/files/FileSystem.h"
#include "support/MemoryTree.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::test {

/// What the program meets at the operation named to `crashAt` and at all that follow: the power is gone. No
/// FileError, so that no handler of failures mistakes it for one.
class Crashed : public std::exception {
public:
    const char* what() const noexcept override { return "the machine stopped"; }
};

/// A file system in memory that knows what is on the medium and what only in the cache, and that fails on
/// demand. Every call of the interface, and every read, write, flush and so on of an open file, is one
/// operation; `copy` is two, with half of the contents written in between. Functions under "set-up" are no
/// operations, cannot fail and are on the medium at once. Thread-safe, but for `before`.
///
/// To walk through every failure of a run:
///
///     for (std::size_t n = 0;; ++n) {
///         MemoryFileSystem system;
///         system.write("/a", "old");
///         system.failAt(n, EIO);
///         try { run(system); } catch (const FileError&) {}
///         if (!system.faultMet()) break; // n is past the last operation
///         …
///     }
class MemoryFileSystem : public files::FileSystem {
public:
    MemoryFileSystem();

    // Set-up and inspection.

    /// Creates a file or replaces its contents, with the folders above it. The modification time moves on.
    void write(const std::string& path, std::string_view contents);
    void makeFolder(const std::string& path);
    void makeLink(const std::string& path, const std::string& target);
    void setPermissions(const std::string& path, std::uint32_t permissions);
    /// None where no file is at `path`.
    std::optional<std::string> contents(const std::string& path) const;
    /// Paths of all files and links below `folder`, sorted.
    std::vector<std::string> filesBelow(const std::string& folder) const;

    // Faults.

    /// Called before every operation with its name ("open", "read", "write", "flush", "status",
    /// "setPermissions", "dropCache", "close", "readLink", "create", "copy", "replace",
    /// "exchange", "seek", "moveWithoutOverwrite", "remove", "createDirectory", "createDirectories",
    /// "flushDirectory", "isReadable", "eachEntry", "tryLockFolder", "volumeFacts") and its path (the source
    /// of those that have two). It may use the set-up functions, to change a file in the middle of a run, or
    /// request a stop; it may also throw.
    std::function<void(std::string_view operation, const std::string& path)> before;
    /// The n-th operation from now (0 is the next one) fails with `code`, once.
    void failAt(std::size_t n, int code);
    /// The n-th operation from now throws Crashed, and so do all later ones until `restart`.
    void crashAt(std::size_t n);
    /// Whether the operation named to failAt or crashAt was reached.
    bool faultMet() const;
    /// Every read of the file at `path` fails with `code`; 0 ends that.
    void failReads(const std::string& path, int code);
    /// Bytes that may still be written; the write that exceeds them writes what fits and fails with ENOSPC.
    void setFreeBytes(std::int64_t bytes);
    /// Whether `exchange` works, as on ext4, or does not, as on exFAT.
    void setCanExchange(bool can) { canExchange_ = can; }
    /// Whether inode numbers stay, as on ext4, or every look at a file gives another, as FAT may.
    void setKeepsInodes(bool keeps) { keepsInodes_ = keeps; }
    /// Whether the number of free bytes is known, and whether copies share blocks.
    void setVolume(bool countsSpace, bool sharesBlocks) {
        countsSpace_ = countsSpace;
        sharesBlocks_ = sharesBlocks;
    }

    /// What a crash makes of folder entries that were not flushed: the system may have lost them, or have
    /// written them on its own in the meantime. Both are possible after every crash.
    enum class UnflushedEntries { lost, kept };
    /// The machine starts anew. Contents that were not flushed are gone (a new file is empty, a rewritten one
    /// as it was); open files are of no use any more.
    void restart(UnflushedEntries entries);

    // files::FileSystem

    files::FileStatus status(const std::string& path, files::Links links) override;
    std::string readLink(const std::string& path) override;
    std::unique_ptr<files::OpenFile> open(const std::string& path, files::Links links) override;
    std::unique_ptr<files::OpenFile> create(const std::string& path) override;
    void copy(const std::string& from, const std::string& to, const std::stop_token& stop) override;
    void replace(const std::string& from, const std::string& to) override;
    bool exchange(const std::string& a, const std::string& b) override;
    void moveWithoutOverwrite(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void createDirectory(const std::string& path) override;
    void createDirectories(const std::string& path) override;
    void flushDirectory(const std::string& path) override;
    bool isReadable(const std::string& path) override;
    void eachEntry(const std::string& path, files::Links links, const files::EntryVisitor& visit) override;
    std::unique_ptr<files::FolderLock> tryLockFolder(const std::string& path) override;
    files::VolumeFacts volumeFacts(const std::string& path) override;

private:
    class File;
    class Lock;

    /// Counts the operation, fails or crashes if it is the one, and locks.
    std::unique_lock<std::mutex> begin(std::string_view operation, const std::string& path);
    MemoryPlace find(std::string_view action, const std::string& path, files::Links links) const;
    MemoryNode::Pointer existing(std::string_view action, const std::string& path, files::Links links) const;
    MemoryNode::Pointer newNode(files::FileKind kind);
    MemoryNode::Pointer addFile(const std::string& path);
    MemoryNode::Pointer put(const std::string& path, files::FileKind kind);
    void move(std::string_view action, const std::string& from, const std::string& to, bool overwrite);
    void writeAt(MemoryNode& node, std::size_t position, const std::string& path, std::string_view bytes);
    void touch(MemoryNode& node);
    files::FileStatus statusOf(const MemoryNode& node);
    void failIfUnreadable(const std::string& path) const;

    mutable std::mutex mutex_; // guards all below
    MemoryNode::Pointer root_;
    std::map<std::string, int> readFailures_;
    std::int64_t freeBytes_ = std::numeric_limits<std::int64_t>::max();
    std::uint64_t lastInode_ = 1;
    std::int64_t ticks_ = 0;
    std::size_t operations_ = 0;
    std::optional<std::size_t> faultAt_;
    int faultCode_ = 0; // 0: a crash
    bool faultMet_ = false;
    bool down_ = false;
    bool canExchange_ = true, keepsInodes_ = true, countsSpace_ = true, sharesBlocks_ = false;
};

} // namespace lumisort::test
