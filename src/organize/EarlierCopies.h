#pragma once

#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace lumisort::organize {

/// The copies that earlier runs made in a destination, as their reports say, of those whose file is there
/// and has its size. A plain value.
class EarlierCopies {
public:
    EarlierCopies() = default;
    /// Reads the reports of all runs in `destination`; one that cannot be read counts nothing. Blocks; any
    /// thread. Throws tasks::Cancelled.
    static EarlierCopies at(files::FileSystem& system, const files::FileUrl& destination,
                            const std::stop_token& stop);

    /// Whether a copy has these contents.
    bool holds(const std::string& digest) const { return digests_.contains(digest); }
    /// How many of the photos seem to have a copy, by their path and size: nothing is read.
    std::int64_t likely(std::span<const library::Photo> photos) const;

private:
    std::unordered_set<std::string> digests_;
    std::unordered_map<files::FileUrl, std::int64_t> bytesOfSource_;
};

} // namespace lumisort::organize
