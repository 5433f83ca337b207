#include "platform/images/decoding/ByteSource.h"

#include "platform/images/Decoder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace lumisort::images {

FileBytes::FileBytes(const files::FileUrl& url) : path_(url.path()) {
    // Non-blocking, or opening a pipe would wait for a writer.
    descriptor_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor_ < 0)
        throw ImageError("The file cannot be opened: " + std::generic_category().message(errno) + ".");
    struct stat status{};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor_);
        throw ImageError("The item is not a regular file.");
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
}

FileBytes::~FileBytes() {
    ::close(descriptor_);
}

std::size_t FileBytes::read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const auto count =
            ::pread(descriptor_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::size_t MemoryBytes::read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    if (offset >= bytes_.size()) return 0;
    const auto count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
    std::copy_n(bytes_.data() + offset, count, into.data());
    return count;
}

} // namespace lumisort::images
