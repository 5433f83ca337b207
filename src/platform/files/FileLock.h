#pragma once

#include <optional>
#include <string>

namespace lumisort::files {

/// An exclusive lock on a file, against other programs and other locks of this one, until the object is
/// destroyed: flock(2), so that a killed program leaves no lock behind. The file itself stays and holds the
/// holder's process number.
class FileLock {
public:
    /// Locks `path`, creating the file and the folders above it as needed; none while another holds it. Where
    /// the file system knows no locks, it is granted. Throws FileError when the file cannot be opened.
    static std::optional<FileLock> tryLock(const std::string& path);

    /// The process that holds or last held the lock; none when that is not known.
    static std::optional<int> holder(const std::string& path);

    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    ~FileLock();

private:
    explicit FileLock(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

} // namespace lumisort::files
