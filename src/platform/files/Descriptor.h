#pragma once

#include "platform/files/FileStatus.h"

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <utility>

namespace lumisort::files {

/// Repeats a system call that a signal interrupts.
template <typename Call>
auto uninterrupted(Call call) {
    while (true) {
        const auto result = call();
        if (result != -1 || errno != EINTR) return result;
    }
}

/// Owns a file descriptor; -1 when empty.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    /// Gives the descriptor up without closing it.
    int release() { return std::exchange(number_, -1); }

private:
    int number_ = -1;
};

// The steps that the real file system is made of. All throw FileError naming `path`.

Descriptor openForReading(const std::string& path, int furtherFlags);
Descriptor createExclusively(const std::string& path, mode_t permissions);
/// What statx reports of `name` in the folder `directory` (AT_FDCWD for absolute paths).
FileStatus statusAt(int directory, const char* name, int flags, const std::string& path);
FileStatus statusOf(const Descriptor& descriptor, const std::string& path);
std::size_t readSome(const Descriptor& descriptor, const std::string& path, void* buffer, std::size_t bytes);
void writeAll(const Descriptor& descriptor, const std::string& path, const void* bytes, std::size_t count);
void setPermissionBits(const Descriptor& descriptor, const std::string& path, mode_t permissions);
/// Returns when the file (or the folder's entries) is on the medium, or where the file system cannot tell.
void flushToMedium(const Descriptor& descriptor, const std::string& path);
/// Closes and reports what the system kept for the end.
void closeReporting(Descriptor& descriptor, const std::string& path);

} // namespace lumisort::files
