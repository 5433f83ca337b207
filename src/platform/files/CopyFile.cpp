#include "platform/files/CopyFile.h"

#include "platform/files/FileError.h"
#include "platform/tasks/Cancellation.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
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

std::int64_t copyInsideKernel(const Descriptor& source, const Descriptor& target, const std::string& to,
                              const std::stop_token& stop) {
    std::int64_t total = 0;
    while (true) {
        tasks::checkCancelled(stop);
        const auto count = uninterrupted([&] {
            return ::copy_file_range(source.number(), nullptr, target.number(), nullptr, kernelPieceBytes, 0);
        });
        // Zero may mean the end or, on generated files, that the size is not known beforehand. The caller's
        // reads tell which.
        if (count == 0 || (count < 0 && meansUnsupported(errno))) return total;
        if (count < 0) throw FileError("write", to, errno);
        total += count;
    }
}

std::int64_t copyThroughMemory(const Descriptor& source, const std::string& from, const Descriptor& target,
                               const std::string& to, const std::stop_token& stop) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(memoryPieceBytes);
    std::int64_t total = 0;
    while (true) {
        tasks::checkCancelled(stop);
        const auto count = readSome(source, from, buffer.get(), memoryPieceBytes);
        if (count == 0) return total;
        writeAll(target, to, buffer.get(), count);
        total += static_cast<std::int64_t>(count);
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

void copyTimes(const Descriptor& source, const std::string& from, const Descriptor& target,
               const std::string& to) {
    struct stat record{};
    if (::fstat(source.number(), &record) != 0) throw FileError("read the attributes of", from, errno);
    const timespec times[2] = {record.st_atim, record.st_mtim};
    if (::futimens(target.number(), times) != 0 && errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
        throw FileError("set the times of", to, errno);
}

} // namespace

std::int64_t copyContents(const Descriptor& source, const std::string& from, const Descriptor& target,
                          const std::string& to, CopyMethod first, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    if (first == CopyMethod::sharedBlocks && ::ioctl(target.number(), FICLONE, source.number()) == 0)
        return statusOf(target, to).size;
    std::int64_t total = 0;
    if (first != CopyMethod::throughMemory) total = copyInsideKernel(source, target, to, stop);
    // Both positions stand behind what is copied by now.
    return total + copyThroughMemory(source, from, target, to, stop);
}

void copyFile(const std::string& from, const std::string& to, const std::stop_token& stop) {
    const auto source = openForReading(from, 0);
    const auto before = statusOf(source, from);
    auto target = createExclusively(to, S_IRUSR | S_IWUSR);
    const auto copied = copyContents(source, from, target, to, CopyMethod::sharedBlocks, stop);
    const auto after = statusOf(source, from);
    // Generated files (/proc) have contents and the size 0.
    const bool allThere = copied == before.size || before.size == 0;
    if (!allThere || after.size != before.size || after.modified != before.modified)
        throw FileError("copy", from, "It changed while it was copied");
    // Attributes first: a file without write permission takes none.
    copyUserAttributes(source, target);
    setPermissionBits(target, to, before.permissions & 0777U);
    copyTimes(source, from, target, to);
    closeReporting(target, to);
}

} // namespace lumisort::files
