#include "organize/OrganizeEngine.h"

#include "organize/DestinationNames.h"
#include "organize/FailureLine.h"
#include "organize/FreeSpace.h"
#include "organize/OrganizeRun.h"
#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"
#include "platform/time/LocalTime.h"

#include <algorithm>
#include <unordered_set>

namespace lumisort::organize {

namespace {

/// The share of the progress that planning takes.
constexpr double planningShare = 0.4;

std::string step(const char* verb, std::int64_t index, std::int64_t total) {
    return verb + (" " + std::to_string(index)) + " of " + std::to_string(total) + "…";
}

} // namespace

OrganizePlan OrganizeEngine::plan(std::span<const library::Photo> photos, const files::FileUrl& destination,
                                  bool skipDuplicates, const Progress& progress,
                                  const std::stop_token& stop) const {
    OrganizePlan plan;
    plan.root =
        destination.child("Lumisort-" + time::folderStamp(clock_.now()) + "-" + newUuid_().substr(0, 8));
    DestinationNames names(plan.root);
    std::unordered_set<std::string> seen;
    const auto total = static_cast<std::int64_t>(photos.size());
    std::int64_t index = 0;
    for (const auto& photo : photos) {
        ++index;
        progress(planningShare * static_cast<double>(index) / static_cast<double>(total),
                 step("Checking", index, total));
        try {
            std::string digest = files::sha256(system_, photo.url.path(), stop);
            if (skipDuplicates && seen.contains(digest)) {
                ++plan.duplicates;
                continue;
            }
            const std::int64_t bytes = system_.status(photo.url.path(), files::Links::follow).size;
            seen.insert(digest);
            plan.items.push_back({photo.url, names.place(photo.url, photo.date), std::move(digest), bytes});
        } catch (const files::FileError& error) {
            plan.failures.push_back(failureLine(photo.url, error));
        } catch (const tasks::Cancelled&) {
            plan.failures.push_back(cancelledLine(photo.url));
        }
    }
    return plan;
}

OrganizeReport OrganizeEngine::execute(const OrganizePlan& plan, const CopyProgress& progress,
                                       const std::stop_token& stop) const {
    OrganizeRun run(system_, newUuid_, plan, stop);
    const auto total = static_cast<std::int64_t>(plan.items.size());
    std::int64_t index = 0;
    for (const auto& item : plan.items) {
        progress(++index, total);
        run.process(item);
    }
    return run.finish();
}

OrganizeReport OrganizeEngine::copy(std::span<const library::Photo> photos, const files::FileUrl& destination,
                                    bool skipDuplicates, const Progress& progress,
                                    const std::stop_token& stop) const {
    requireFreeSpace(system_, destination.path(), photos, skipDuplicates, stop);
    OrganizePlan plan = this->plan(photos, destination, skipDuplicates, progress, stop);
    if (plan.items.empty())
        return {
            .copied = {}, .duplicates = plan.duplicates, .failures = std::move(plan.failures), .logURL = {}};
    return execute(
        plan,
        [&progress](std::int64_t done, std::int64_t total) {
            const double share =
                static_cast<double>(done) / static_cast<double>(std::max<std::int64_t>(total, 1));
            progress(planningShare + (1 - planningShare) * share, step("Copying", done, total));
        },
        stop);
}

} // namespace lumisort::organize
