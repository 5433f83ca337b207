#pragma once

#include "organize/OrganizePlan.h"
#include "platform/files/FileSystem.h"

#include <string_view>

namespace lumisort::organize {

/// The name of the file in a run's folder that holds its plan for as long as the run has not ended: a folder
/// with it can be resumed.
inline constexpr std::string_view savedPlanName = ".Lumisort-plan.json";

/// Writes the plan into its root, replacing an earlier one; it is on the medium when this returns. Throws
/// files::FileError.
void savePlan(files::FileSystem& system, const OrganizePlan& plan);

/// The plan in a run's folder, wherever that was when it was written. Throws files::FileError where there is
/// none, where it cannot be read, and where it is no regular file.
OrganizePlan savedPlan(files::FileSystem& system, const files::FileUrl& run);

/// A run's folder that the run did not come to the end of.
struct UnfinishedRun {
    files::FileUrl folder;
    std::int64_t planned = 0; ///< photos to copy
    std::int64_t copied = 0;  ///< of them, as its report says

    friend bool operator==(const UnfinishedRun&, const UnfinishedRun&) = default;
};

/// The unfinished runs in `destination`, the latest first, without those that another program is at. What
/// cannot be read is passed over.
std::vector<UnfinishedRun> unfinishedRuns(files::FileSystem& system, const files::FileUrl& destination);

} // namespace lumisort::organize
