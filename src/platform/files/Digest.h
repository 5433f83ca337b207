#pragma once

#include "platform/files/FileSystem.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace lumisort::files {

/// Bytes that a digest reads at once.
inline constexpr std::size_t digestChunkBytes = 1'048'576;

/// SHA-256 (FIPS 180-4) over OpenSSL EVP, which uses the processor's SHA instructions.
class Sha256 {
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void update(std::span<const std::byte> bytes);
    /// The digest of all bytes so far: 64 lower-case hexadecimal digits. More may follow.
    std::string soFar() const;
    /// The same; the object is of no use afterwards.
    std::string finish();

private:
    struct Context;
    Context* context_;
};

/// The digest of a whole file, read in pieces of 1 MiB, one held at a time. Looks at `stop` before the first
/// and after every piece. Throws FileError or tasks::Cancelled; the file is closed on every way out.
std::string sha256(FileSystem& system, const std::string& path, const std::stop_token& stop);

} // namespace lumisort::files
