#include "organize/EarlierCopies.h"

#include "organize/OrganizeReport.h"
#include "organize/RunFolder.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>

namespace lumisort::organize {

namespace {

/// Where the run's folder was when the report was written.
files::FileUrl folderThen(const OrganizeReport& report, const files::FileUrl& now) {
    return report.logURL ? files::FileUrl::fromPath(report.logURL->parent().path()) : now;
}

bool isThere(files::FileSystem& system, const files::FileUrl& file, std::int64_t bytes) {
    try {
        const auto status = system.status(file.path(), files::Links::doNotFollow);
        return status.kind == files::FileKind::regular && status.size == bytes;
    } catch (const files::FileError&) {
        return false;
    }
}

} // namespace

EarlierCopies EarlierCopies::at(files::FileSystem& system, const files::FileUrl& destination,
                                const std::stop_token& stop) {
    EarlierCopies found;
    for (const auto& run : runFolders(system, destination)) {
        OrganizeReport report;
        try {
            const auto url = run.child(reportFileName);
            requireRegularFile(system, url.path());
            report = readReport(system, url);
        } catch (const files::FileError&) {
            continue;
        }
        const auto then = folderThen(report, run);
        for (const auto& item : report.copied) {
            tasks::checkCancelled(stop);
            const auto place = placeNow(item.destination, then, run);
            if (!place || !isThere(system, *place, item.bytes)) continue;
            found.digests_.insert(item.digest);
            found.bytesOfSource_.insert_or_assign(item.source, item.bytes);
        }
    }
    return found;
}

std::int64_t EarlierCopies::likely(std::span<const library::Photo> photos) const {
    return std::ranges::count_if(photos, [&](const library::Photo& photo) {
        const auto found = bytesOfSource_.find(photo.url);
        return found != bytesOfSource_.end() && found->second == photo.bytes;
    });
}

} // namespace lumisort::organize
