#pragma once

#include "platform/files/FileUrl.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace lumisort::organize {

/// One copy: planned, or made and verified.
struct OrganizeItem {
    files::FileUrl source;      ///< the photo's file in the library
    files::FileUrl destination; ///< where the copy is placed
    std::string digest;         ///< SHA-256 of the source when planned, 64 lower-case hexadecimal digits
    std::int64_t bytes = 0;     ///< size of the source when planned

    friend bool operator==(const OrganizeItem&, const OrganizeItem&) = default;
};

/// Sources of photos whose copies get a sidecar.
using KeptPhotos = std::unordered_set<files::FileUrl>;

/// What a run is going to do. A value: making it writes nothing anywhere.
struct OrganizePlan {
    files::FileUrl root;               ///< the run's own new folder inside the destination
    std::vector<OrganizeItem> items;   ///< in the order of the photos; all destinations lie inside `root`
    std::int64_t duplicates = 0;       ///< photos left out because an earlier one has the same contents
    std::vector<std::string> failures; ///< one line per photo that could not be planned
    std::int64_t alreadyThere = 0;     ///< photos left out because an earlier run copied their contents
    bool skipDuplicates = true;        ///< what was asked for
    std::shared_ptr<const KeptPhotos> withSidecars; ///< none: no copy gets one

    friend bool operator==(const OrganizePlan&, const OrganizePlan&) = default;
};

/// Compact JSON with the keys "root", "items", "duplicates", "failures" and, where there are some,
/// "alreadyThere"; the items as in the report.
std::string toJson(const OrganizePlan& plan);

} // namespace lumisort::organize
