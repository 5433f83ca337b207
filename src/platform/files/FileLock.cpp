#include "platform/files/FileLock.h"

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <utility>

namespace lumisort::files {

std::optional<FileLock> FileLock::tryLock(const std::string& path) {
    FileSystem::real().createDirectories(FileUrl::fromPath(path).parent().path());
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0644);
    if (descriptor < 0) throw FileError("lock", path, errno);
    FileLock lock(descriptor);
    int result = 0;
    while ((result = flock(descriptor, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) {
    }
    if (result != 0 && errno == EWOULDBLOCK) return std::nullopt;
    // The number is for people; a lock without it is a lock.
    const std::string pid = std::to_string(getpid()) + '\n';
    if (ftruncate(descriptor, 0) == 0 && pwrite(descriptor, pid.data(), pid.size(), 0) < 0) errno = 0;
    return lock;
}

std::optional<int> FileLock::holder(const std::string& path) {
    int pid = 0;
    return std::ifstream(path) >> pid && pid > 0 ? std::optional(pid) : std::nullopt;
}

FileLock::FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileLock::~FileLock() {
    if (descriptor_ >= 0) close(descriptor_);
}

} // namespace lumisort::files
