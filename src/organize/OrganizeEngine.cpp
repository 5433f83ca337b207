#include "organize/OrganizeEngine.h"

#include "organize/AbandonedFiles.h"
#include "organize/DestinationNames.h"
#include "organize/FailureLine.h"
#include "organize/FreeSpace.h"
#include "organize/OrganizeRun.h"
#include "organize/RunFolder.h"
#include "organize/RunResumption.h"
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

/// Tells `progress` of the copying, the second part of a run.
OrganizeEngine::CopyProgress copying(const OrganizeEngine::Progress& progress) {
    return [&progress](std::int64_t done, std::int64_t total) {
        const double share =
            static_cast<double>(done) / static_cast<double>(std::max<std::int64_t>(total, 1));
        progress(planningShare + (1 - planningShare) * share, step("Copying", done, total));
    };
}

} // namespace

OrganizePlan OrganizeEngine::plan(std::span<const library::Photo> photos, const files::FileUrl& destination,
                                  const CopyOptions& options, const Progress& progress,
                                  const std::stop_token& stop) const {
    OrganizePlan plan;
    plan.skipDuplicates = options.skipDuplicates;
    plan.withSidecars = options.withSidecars;
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
            if (options.leaveOut && options.leaveOut->holds(digest)) {
                ++plan.alreadyThere;
                continue;
            }
            if (options.skipDuplicates && seen.contains(digest)) {
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
                                    const CopyOptions& options, const Progress& progress,
                                    const std::stop_token& stop) const {
    // Which photos are left out is known only once they are read.
    if (!options.leaveOut)
        requireFreeSpace(system_, destination.path(), photos, options.skipDuplicates, stop);
    OrganizePlan plan = this->plan(photos, destination, options, progress, stop);
    if (plan.items.empty())
        return {.copied = {},
                .duplicates = plan.duplicates,
                .failures = std::move(plan.failures),
                .alreadyThere = plan.alreadyThere,
                .logURL = {}};
    return execute(plan, copying(progress), stop);
}

ResumedRun OrganizeEngine::resume(std::span<const library::Photo> photos, const files::FileUrl& folder,
                                  std::shared_ptr<const KeptPhotos> withSidecars, const Progress& progress,
                                  const std::stop_token& stop) const {
    const auto run = files::FileUrl::fromPath(folder.path());
    if (system_.status(run.path(), files::Links::doNotFollow).kind != files::FileKind::directory)
        throw files::FileError("resume", run.path(), "It is no folder of its own");
    if (isUnderWay(system_, run))
        throw files::FileError("resume", run.path(), "Another program is copying into it");
    const auto lock = system_.tryLockFolder(run.path()); // null where folders cannot be locked
    removePartialFiles(system_, run.path());
    auto resumption = planResumption(
        system_, photos, run,
        [&](const char* verb, std::int64_t done, std::int64_t total) {
            progress(planningShare * static_cast<double>(done) / static_cast<double>(total),
                     step(verb, done, total));
        },
        stop);
    resumption.plan.withSidecars = std::move(withSidecars);
    OrganizeRun continued(system_, newUuid_, resumption, stop);
    const auto note = copying(progress);
    std::int64_t index = 0;
    for (const auto& item : resumption.plan.items) {
        note(++index, std::ssize(resumption.plan.items));
        continued.process(item);
    }
    return {.report = continued.finish(),
            .present = std::ssize(resumption.present),
            .added = resumption.added,
            .changed = resumption.changed,
            .gone = resumption.gone,
            .remarks = resumption.remarks};
}

} // namespace lumisort::organize
