#include "support/MemoryFileSystem.h"

#include "platform/files/FileError.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lumisort::test {

using files::FileError;
using files::FileKind;
using files::Links;

class MemoryFileSystem::File : public files::OpenFile {
public:
    File(MemoryFileSystem& system, std::string path, MemoryNode::Pointer node, bool writable)
        : system_(system), path_(std::move(path)), node_(std::move(node)), writable_(writable) {}

    std::size_t read(std::span<std::byte> buffer) override {
        const auto lock = begin("read");
        system_.failIfUnreadable(path_);
        const auto& contents = node_->contents;
        const auto start = std::min(position_, contents.size());
        const auto count = std::min(buffer.size(), contents.size() - start);
        std::ranges::copy(std::as_bytes(std::span(contents).subspan(start, count)), buffer.begin());
        position_ = start + count;
        return count;
    }
    void write(std::span<const std::byte> bytes) override {
        const auto lock = begin("write");
        if (!writable_) throw FileError("write", path_, EBADF);
        system_.writeAt(*node_, position_, path_,
                        {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        position_ += bytes.size();
    }
    void seek(std::int64_t position) override {
        const auto lock = begin("seek");
        position_ = static_cast<std::size_t>(position);
    }
    files::FileStatus status() override {
        const auto lock = begin("status");
        return system_.statusOf(*node_);
    }
    void setPermissions(std::uint32_t permissions) override {
        const auto lock = begin("setPermissions");
        node_->status.permissions = permissions;
    }
    void flush() override {
        const auto lock = begin("flush");
        node_->contentsOnMedium = node_->contents;
    }
    void dropCache() override { begin("dropCache"); }
    void close() override {
        if (!std::exchange(closed_, true)) begin("close");
    }

private:
    std::unique_lock<std::mutex> begin(std::string_view operation) { return system_.begin(operation, path_); }

    MemoryFileSystem& system_;
    std::string path_;
    MemoryNode::Pointer node_;
    std::size_t position_ = 0;
    bool writable_;
    bool closed_ = false;
};

class MemoryFileSystem::Lock : public files::FolderLock {
public:
    Lock(MemoryFileSystem& system, MemoryNode::Pointer folder) : system_(system), folder_(std::move(folder)) {
        folder_->isLocked = true;
    }
    ~Lock() override {
        const std::scoped_lock lock(system_.mutex_);
        folder_->isLocked = false;
    }

private:
    MemoryFileSystem& system_;
    MemoryNode::Pointer folder_;
};

MemoryFileSystem::MemoryFileSystem() : root_(newNode(FileKind::directory)) {}

std::unique_lock<std::mutex> MemoryFileSystem::begin(std::string_view operation, const std::string& path) {
    if (before) before(operation, path);
    std::unique_lock lock(mutex_);
    if (down_) throw Crashed();
    if (operations_++ != faultAt_) return lock;
    faultMet_ = true;
    if (faultCode_ != 0) throw FileError(operation, path, faultCode_);
    down_ = true;
    throw Crashed();
}

MemoryPlace MemoryFileSystem::find(std::string_view action, const std::string& path, Links links) const {
    return findInMemory(root_, action, path, links);
}

MemoryNode::Pointer MemoryFileSystem::existing(std::string_view action, const std::string& path,
                                               Links links) const {
    auto place = find(action, path, links);
    if (!place.node) throw FileError(action, path, ENOENT);
    return place.node;
}

MemoryNode::Pointer MemoryFileSystem::newNode(FileKind kind) {
    auto node = std::make_shared<MemoryNode>();
    node->status.kind = kind;
    node->status.device = 1;
    node->status.inode = ++lastInode_;
    node->status.permissions = kind == FileKind::directory ? 0755 : 0644;
    touch(*node);
    node->status.created = node->status.modified;
    return node;
}

MemoryNode::Pointer MemoryFileSystem::addFile(const std::string& path) {
    const auto place = find("create", path, Links::doNotFollow);
    if (place.node) throw FileError("create", path, EEXIST);
    return place.folder->entries[place.name] = newNode(FileKind::regular);
}

void MemoryFileSystem::touch(MemoryNode& node) {
    ++ticks_;
    node.status.size = static_cast<std::int64_t>(node.contents.size());
    node.status.modified = node.status.changed = {.seconds = 1'700'000'000 + ticks_, .nanoseconds = ticks_};
}

void MemoryFileSystem::writeAt(MemoryNode& node, std::size_t position, const std::string& path,
                               std::string_view bytes) {
    const auto present = std::min(node.contents.size() - position, bytes.size());
    const auto grown = std::min<std::int64_t>(freeBytes_, static_cast<std::int64_t>(bytes.size() - present));
    const auto fits = present + static_cast<std::size_t>(grown);
    node.contents.replace(position, present, bytes.substr(0, fits));
    freeBytes_ -= grown;
    touch(node);
    if (fits < bytes.size()) throw FileError("write", path, ENOSPC);
}

void MemoryFileSystem::failIfUnreadable(const std::string& path) const {
    if (const auto failure = readFailures_.find(path); failure != readFailures_.end())
        throw FileError("read", path, failure->second);
}

// Set-up and inspection

MemoryNode::Pointer MemoryFileSystem::put(const std::string& path, FileKind kind) {
    auto node = root_;
    for (std::size_t start = 1; start < path.size();) {
        const auto end = std::min(path.find('/', start), path.size());
        const auto name = path.substr(start, end - start);
        auto& entry = node->entries[name];
        if (!entry) entry = newNode(end == path.size() ? kind : FileKind::directory);
        node->entriesOnMedium[name] = entry;
        node = entry;
        start = end + 1;
    }
    return node;
}

void MemoryFileSystem::write(const std::string& path, std::string_view contents) {
    const std::scoped_lock lock(mutex_);
    const auto node = put(path, FileKind::regular);
    node->contents = node->contentsOnMedium = contents;
    touch(*node);
}

void MemoryFileSystem::makeFolder(const std::string& path) {
    const std::scoped_lock lock(mutex_);
    put(path, FileKind::directory);
}

void MemoryFileSystem::makeLink(const std::string& path, const std::string& target) {
    const std::scoped_lock lock(mutex_);
    const auto node = put(path, FileKind::symbolicLink);
    node->contents = node->contentsOnMedium = target;
}

void MemoryFileSystem::setPermissions(const std::string& path, std::uint32_t permissions) {
    const std::scoped_lock lock(mutex_);
    existing("set the permissions of", path, Links::follow)->status.permissions = permissions;
}

std::optional<std::string> MemoryFileSystem::contents(const std::string& path) const {
    const std::scoped_lock lock(mutex_);
    try {
        const auto node = existing("read", path, Links::follow);
        return node->isFolder() ? std::nullopt : std::optional(node->contents);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

std::vector<std::string> MemoryFileSystem::filesBelow(const std::string& folder) const {
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> paths;
    collectFiles(*existing("list", folder, Links::follow), folder == "/" ? "/" : folder + '/', paths);
    std::ranges::sort(paths);
    return paths;
}

// Faults

void MemoryFileSystem::failAt(std::size_t n, int code) {
    const std::scoped_lock lock(mutex_);
    faultAt_ = operations_ + n;
    faultCode_ = code;
    faultMet_ = false;
}

void MemoryFileSystem::crashAt(std::size_t n) {
    failAt(n, 0);
}

bool MemoryFileSystem::faultMet() const {
    const std::scoped_lock lock(mutex_);
    return faultMet_;
}

void MemoryFileSystem::failReads(const std::string& path, int code) {
    const std::scoped_lock lock(mutex_);
    if (code == 0)
        readFailures_.erase(path);
    else
        readFailures_[path] = code;
}

void MemoryFileSystem::setFreeBytes(std::int64_t bytes) {
    const std::scoped_lock lock(mutex_);
    freeBytes_ = bytes;
}

void MemoryFileSystem::restart(UnflushedEntries entries) {
    const std::scoped_lock lock(mutex_);
    down_ = false;
    faultAt_.reset();
    forgetUnflushed(*root_, entries == UnflushedEntries::kept);
}

// files::FileSystem

files::FileStatus MemoryFileSystem::status(const std::string& path, Links links) {
    const auto lock = begin("status", path);
    return statusOf(*existing("read the attributes of", path, links));
}

std::string MemoryFileSystem::readLink(const std::string& path) {
    const auto lock = begin("readLink", path);
    const auto node = existing("follow", path, Links::doNotFollow);
    if (node->status.kind != FileKind::symbolicLink) throw FileError("follow", path, EINVAL);
    return node->contents;
}

std::unique_ptr<files::OpenFile> MemoryFileSystem::open(const std::string& path, Links links) {
    const auto lock = begin("open", path);
    auto node = existing("open", path, links);
    if (node->isFolder()) throw FileError("open", path, EISDIR);
    if (node->status.kind == FileKind::symbolicLink) throw FileError("open", path, ELOOP);
    return std::make_unique<File>(*this, path, std::move(node), false);
}

std::unique_ptr<files::OpenFile> MemoryFileSystem::create(const std::string& path) {
    const auto lock = begin("create", path);
    return std::make_unique<File>(*this, path, addFile(path), true);
}

void MemoryFileSystem::copy(const std::string& from, const std::string& to, const std::stop_token& stop) {
    auto lock = begin("copy", from);
    tasks::checkCancelled(stop);
    const auto source = existing("open", from, Links::follow);
    if (source->isFolder()) throw FileError("open", from, EISDIR);
    const auto status = source->status;
    const auto target = addFile(to);
    writeAt(*target, target->contents.size(), to,
            std::string_view(source->contents).substr(0, source->contents.size() / 2));
    lock.unlock();
    lock = begin("copy", from);
    tasks::checkCancelled(stop);
    failIfUnreadable(from);
    if (source->status != status) throw FileError("copy", from, "It changed while it was copied");
    writeAt(*target, target->contents.size(), to,
            std::string_view(source->contents).substr(target->contents.size()));
    target->status.permissions = status.permissions & 0777U;
    target->status.modified = status.modified;
}

void MemoryFileSystem::move(std::string_view action, const std::string& from, const std::string& to,
                            bool overwrite) {
    const auto source = find(action, from, Links::doNotFollow);
    const auto target = find(action, to, Links::doNotFollow);
    if (!source.node) throw FileError(action, from, ENOENT);
    if (target.node && !overwrite) throw FileError("create", to, EEXIST);
    if (target.node && target.node->isFolder()) throw FileError(action, to, EISDIR);
    source.folder->entries.erase(source.name);
    target.folder->entries[target.name] = source.node;
}

void MemoryFileSystem::replace(const std::string& from, const std::string& to) {
    const auto lock = begin("replace", from);
    move("replace", from, to, true);
}

bool MemoryFileSystem::exchange(const std::string& a, const std::string& b) {
    const auto lock = begin("exchange", a);
    const auto first = find("exchange", a, Links::doNotFollow);
    const auto second = find("exchange", b, Links::doNotFollow);
    if (!first.node || !second.node) throw FileError("exchange", first.node ? b : a, ENOENT);
    if (canExchange_) std::swap(first.folder->entries[first.name], second.folder->entries[second.name]);
    return canExchange_;
}

void MemoryFileSystem::moveWithoutOverwrite(const std::string& from, const std::string& to) {
    const auto lock = begin("moveWithoutOverwrite", from);
    move("move", from, to, false);
}

void MemoryFileSystem::remove(const std::string& path) {
    const auto lock = begin("remove", path);
    const auto place = find("remove", path, Links::doNotFollow);
    if (!place.node) throw FileError("remove", path, ENOENT);
    if (!place.node->entries.empty()) throw FileError("remove", path, ENOTEMPTY);
    place.folder->entries.erase(place.name);
}

void MemoryFileSystem::createDirectory(const std::string& path) {
    const auto lock = begin("createDirectory", path);
    const auto place = find("create the folder", path, Links::doNotFollow);
    if (place.node) throw FileError("create the folder", path, EEXIST);
    place.folder->entries[place.name] = newNode(FileKind::directory);
}

void MemoryFileSystem::createDirectories(const std::string& path) {
    const auto lock = begin("createDirectories", path);
    for (std::size_t end = 0; end < path.size();) {
        end = std::min(path.find('/', end + 1), path.size());
        const auto place = find("create the folder", path.substr(0, end), Links::follow);
        if (place.node && !place.node->isFolder()) throw FileError("create the folder", path, ENOTDIR);
        if (!place.node) place.folder->entries[place.name] = newNode(FileKind::directory);
    }
}

void MemoryFileSystem::flushDirectory(const std::string& path) {
    const auto lock = begin("flushDirectory", path);
    const auto node = existing("flush the folder", path, Links::follow);
    if (!node->isFolder()) throw FileError("flush the folder", path, ENOTDIR);
    node->entriesOnMedium = node->entries;
}

bool MemoryFileSystem::isReadable(const std::string& path) {
    try {
        const auto lock = begin("isReadable", path);
        return (existing("read", path, Links::follow)->status.permissions & 0444u) != 0;
    } catch (const FileError&) {
        return false;
    }
}

files::FileStatus MemoryFileSystem::statusOf(const MemoryNode& node) {
    auto status = node.status;
    if (!keepsInodes_) status.inode = ++lastInode_;
    return status;
}

void MemoryFileSystem::eachEntry(const std::string& path, Links links, const files::EntryVisitor& visit) {
    std::map<std::string, MemoryNode::Pointer> entries;
    {
        const auto lock = begin("eachEntry", path);
        const auto node = existing("open", path, links);
        if (!node->isFolder()) throw FileError("open", path, ENOTDIR);
        entries = node->entries;
    }
    for (const auto& [name, node] : entries)
        if (!visit(name, node->status.kind)) return;
}

std::unique_ptr<files::FolderLock> MemoryFileSystem::tryLockFolder(const std::string& path) {
    const auto lock = begin("tryLockFolder", path);
    auto node = existing("lock the folder", path, Links::follow);
    if (!node->isFolder()) throw FileError("lock the folder", path, ENOTDIR);
    if (node->isLocked) return nullptr;
    return std::make_unique<Lock>(*this, std::move(node));
}

files::VolumeFacts MemoryFileSystem::volumeFacts(const std::string& path) {
    const auto lock = begin("volumeFacts", path);
    existing("find the free space around", path, Links::follow);
    files::VolumeFacts facts{
        .availableBytes = {}, .keepsInodes = keepsInodes_, .sharesBlocks = sharesBlocks_};
    if (countsSpace_) facts.availableBytes = freeBytes_;
    return facts;
}

} // namespace lumisort::test
