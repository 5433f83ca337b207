#pragma once

#include "library/Photo.h"
#include "organize/OrganizePlan.h"
#include "platform/files/FileSystem.h"

#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace lumisort::organize {

/// What of an unfinished run is there, and what is left to do.
struct RunResumption {
    OrganizePlan plan;                 ///< of what is left; its root is the run's folder
    std::vector<OrganizeItem> present; ///< copies that are there, each digested now
    std::int64_t added = 0;            ///< photos that the run was not going to copy
    std::int64_t changed = 0;          ///< photos whose contents are others than then
    std::int64_t gone = 0;             ///< photos of the run that are not chosen now; a copy of one stays
    /// One line for each file of the folder that is not what report or sums say. It stays as it is.
    std::vector<std::string> remarks;
};

/// Called with the number of the copy or photo at hand, counted from 1, and how many there are.
using ResumptionProgress = std::function<void(const char* verb, std::int64_t done, std::int64_t total)>;

/// Plans the rest of the run in `run` for the photos chosen now. Reads each copy and each photo once and
/// writes nothing. A copy counts where it has the digest that the report names, and so does a file at the
/// place that a photo would get whose digest is the photo's: it was moved there right before the run ended.
/// The folder may be at another path than when the run began. Nothing in it is trusted: what the report
/// places outside of it, and what lies behind a symbolic link, is a remark, and names that are taken are
/// never used again.
///
/// Throws files::FileError where plan or report cannot be read, and tasks::Cancelled.
RunResumption planResumption(files::FileSystem& system, std::span<const library::Photo> photos,
                             const files::FileUrl& run, const ResumptionProgress& progress,
                             const std::stop_token& stop);

} // namespace lumisort::organize
