#include "platform/files/CopyFile.h"

#include "platform/files/FileError.h"
#include "platform/tasks/Cancellation.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace lumisort::files {

namespace {

/// Bytes between two looks at the stop token.
constexpr std::size_t kernelPieceBytes = 16 << 20;
constexpr std::size_t memoryPieceBytes = 1 << 20;

/// Whether copy_file_range refuses these two files, rather than having met a fault of the medium.
bool meansUnsupported(int code) {
    return code == EXDEV || code == EINVAL || code == EOPNOTSUPP || code == ENOSYS || code == EPERM;
}

void checkUnchanged(const CopyJob& job) {
    const auto now = statusOf(job.source, job.from);
    if (now.size != job.before.size || now.modified != job.before.modified)
        throw FileError("copy", job.from, "It changed while it was copied");
}

/// Returns the bytes copied, which are all or as many as the file systems were willing to.
std::int64_t copyInsideKernel(const CopyJob& job, const std::stop_token& stop) {
    const int source = job.source.number();
    const int target = job.target.number();
    std::int64_t total = 0;
    while (true) {
        tasks::checkCancelled(stop);
        const auto count = uninterrupted(
            [&] { return ::copy_file_range(source, nullptr, target, nullptr, kernelPieceBytes, 0); });
        // Zero may mean the end or, on generated files, that the size is not known beforehand. The reads that
        // follow tell which.
        if (count == 0 || (count < 0 && meansUnsupported(errno))) return total;
        if (count < 0) throw FileError("write", job.to, errno);
        total += count;
        checkUnchanged(job);
    }
}

std::int64_t copyThroughMemory(const CopyJob& job, const std::stop_token& stop) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(memoryPieceBytes);
    std::int64_t total = 0;
    while (true) {
        tasks::checkCancelled(stop);
        const auto count = readSome(job.source, job.from, buffer.get(), memoryPieceBytes);
        if (count == 0) return total;
        writeAll(job.target, job.to, buffer.get(), count);
        total += static_cast<std::int64_t>(count);
        checkUnchanged(job);
    }
}

/// The names of all extended attributes; none where the file system has no such thing.
std::vector<std::string> attributeNames(const Descriptor& file) {
    std::string list;
    ssize_t length = 0;
    do { // The list may grow between the two calls.
        length = ::flistxattr(file.number(), nullptr, 0);
        if (length <= 0) return {};
        list.resize(static_cast<std::size_t>(length));
        length = ::flistxattr(file.number(), list.data(), list.size());
    } while (length < 0 && errno == ERANGE);
    if (length <= 0) return {};
    list.resize(static_cast<std::size_t>(length));
    std::vector<std::string> names;
    for (std::size_t start = 0; start < list.size();) {
        names.emplace_back(list.c_str() + start);
        start += names.back().size() + 1;
    }
    return names;
}

/// Tags, ratings and comments that file browsers keep. What the target cannot hold stays behind: a photo that
/// arrives without its tags is better than one that does not arrive.
void copyUserAttributes(const Descriptor& source, const Descriptor& target) {
    for (const auto& name : attributeNames(source)) {
        if (!name.starts_with("user.")) continue;
        const auto length = ::fgetxattr(source.number(), name.c_str(), nullptr, 0);
        if (length < 0) continue;
        std::string value(static_cast<std::size_t>(length), '\0');
        const auto count = ::fgetxattr(source.number(), name.c_str(), value.data(), value.size());
        if (count >= 0)
            ::fsetxattr(target.number(), name.c_str(), value.data(), static_cast<std::size_t>(count), 0);
    }
}

/// Access, then modification.
std::array<timespec, 2> timesOf(const Descriptor& file, const std::string& path) {
    struct stat record{};
    if (::fstat(file.number(), &record) != 0) throw FileError("read the attributes of", path, errno);
    return {record.st_atim, record.st_mtim};
}

void setTimes(const Descriptor& file, const std::string& path, const std::array<timespec, 2>& times) {
    if (::futimens(file.number(), times.data()) != 0 && errno != EPERM && errno != EOPNOTSUPP &&
        errno != ENOSYS)
        throw FileError("set the times of", path, errno);
}

} // namespace

void copyContents(const CopyJob& job, CopyMethod first, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    std::int64_t copied = 0;
    if (first == CopyMethod::sharedBlocks &&
        ::ioctl(job.target.number(), FICLONE, job.source.number()) == 0) {
        copied = statusOf(job.target, job.to).size;
    } else {
        if (first != CopyMethod::throughMemory) copied = copyInsideKernel(job, stop);
        // Both positions stand behind what is copied by now.
        copied += copyThroughMemory(job, stop);
    }
    checkUnchanged(job);
    // Generated files (/proc) have the size 0 and contents all the same.
    if (copied != job.before.size && job.before.size != 0)
        throw FileError("copy", job.from, "It ended before its size was reached");
}

void copyFile(const std::string& from, const std::string& to, const std::stop_token& stop) {
    const auto source = openForReading(from, 0);
    const auto before = statusOf(source, from);
    const auto times = timesOf(source, from); // before reading moves the access time on
    auto target = createExclusively(to, S_IRUSR | S_IWUSR);
    copyContents({.source = source, .target = target, .from = from, .to = to, .before = before},
                 CopyMethod::sharedBlocks, stop);
    // Attributes first: a file without write permission takes none.
    copyUserAttributes(source, target);
    setPermissionBits(target, to, before.permissions & 0777U);
    setTimes(target, to, times);
    closeReporting(target, to);
}

} // namespace lumisort::files
