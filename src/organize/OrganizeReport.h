#pragma once

#include "organize/OrganizePlan.h"
#include "platform/files/FileSystem.h"

#include <optional>
#include <string_view>

namespace lumisort::organize {

/// The report's name inside a run's folder.
inline constexpr std::string_view reportFileName = "Lumisort-report.json";

/// The outcome of a run.
struct OrganizeReport {
    std::vector<OrganizeItem> copied;  ///< copied and verified, in the order of the plan
    std::int64_t duplicates = 0;       ///< photos left out as exact duplicates
    std::vector<std::string> failures; ///< one line per photo that failed: those of planning, then of copying
    std::int64_t alreadyThere = 0;     ///< photos left out because an earlier run copied their contents
    std::optional<files::FileUrl>
        logURL; ///< where the report lies on disk; none when there was nothing to copy

    friend bool operator==(const OrganizeReport&, const OrganizeReport&) = default;
};

/// Compact JSON with the keys "copied", "duplicates", "failures", "logURL" (left out when there is none) and
/// "alreadyThere" (left out when there are none);
/// each copy with "source", "destination", "digest" and "bytes", its URLs as absolute file URL strings. Bytes
/// of a failure line that are no UTF-8 become U+FFFD; paths lose nothing.
std::string toJson(const OrganizeReport& report);

/// Reads what `toJson` and a run wrote. Unknown keys are passed over. Throws json::FormatError.
OrganizeReport reportFromJson(std::string json);

/// The report at `url`. Throws files::FileError, also where the contents are no report.
OrganizeReport readReport(files::FileSystem& system, const files::FileUrl& url);

} // namespace lumisort::organize
