#pragma once

#include "platform/files/FileUrl.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lumisort::images {

/// Bytes that can be read from any position: a file, or a block of metadata that a library handed out.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t size() const = 0;
    /// Fills as much of `into` as there are bytes from `offset` on; returns how many that were.
    virtual std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) const = 0;

    /// Fills all of `into`; false when the source ends before.
    bool readExactly(std::uint64_t offset, std::span<std::uint8_t> into) const {
        return read(offset, into) == into.size();
    }
};

/// A regular file, held open. Reads carry their own position, so the object has no state to share.
class FileBytes final : public ByteSource {
public:
    /// Throws ImageError when the file cannot be opened or is no regular file.
    explicit FileBytes(const files::FileUrl& url);
    ~FileBytes() override;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    std::uint64_t size() const override { return size_; }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) const override;
    /// For libraries that take a path themselves.
    const std::string& path() const { return path_; }

private:
    std::string path_;
    int descriptor_ = -1;
    std::uint64_t size_ = 0;
};

/// Bytes that somebody else keeps for as long as this object lives.
class MemoryBytes final : public ByteSource {
public:
    explicit MemoryBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint64_t size() const override { return bytes_.size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) const override;

private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace lumisort::images
