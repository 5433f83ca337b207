#pragma once

#include "library/Photo.h"
#include "organize/EarlierCopies.h"
#include "organize/OrganizePlan.h"
#include "organize/OrganizeReport.h"
#include "platform/files/FileSystem.h"
#include "platform/files/Uuid.h"
#include "platform/time/Clock.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace lumisort::organize {

/// What a run is asked for.
struct CopyOptions {
    bool skipDuplicates = true;
    std::shared_ptr<const EarlierCopies> leaveOut;  ///< none: nothing is left out
    std::shared_ptr<const KeptPhotos> withSidecars; ///< none: no copy gets a sidecar (Sidecar.h)
};

/// What became of a run that went on.
struct ResumedRun {
    OrganizeReport report;                         ///< of the whole run
    std::int64_t present = 0;                      ///< copies that were there
    std::int64_t added = 0, changed = 0, gone = 0; ///< see RunResumption
    std::vector<std::string> remarks;
};

/// Copies photos into a new dated folder tree, each copy verified, the originals only read.
///
/// Problems with single photos become failure lines: the source's path, ": ", and what went wrong. Cancelling
/// is such a problem too, not an outcome of its own: the photo at hand and all that are left get the line
/// "… The operation was cancelled.", which takes no time, and no partial file stays.
///
/// Stateless beside what it was made with; one run at a time works on the calling thread, and calls
/// `progress` there.
class OrganizeEngine {
public:
    /// `fraction` 0…1 of the whole, and what is being done.
    using Progress = std::function<void(double fraction, const std::string& text)>;
    /// The item being worked on, counted from 1, and the number of items.
    using CopyProgress = std::function<void(std::int64_t done, std::int64_t total)>;

    explicit OrganizeEngine(files::FileSystem& system = files::FileSystem::real(),
                            time::Clock clock = time::Clock::system(),
                            std::function<std::string()> newUuid = files::randomUuid)
        : system_(system), clock_(std::move(clock)), newUuid_(std::move(newUuid)) {}

    /// Decides what is copied and where to. Writes nothing; reads every photo in full, 1 MiB at a time. The
    /// root is "Lumisort-" + local time + "-" + eight digits of a random UUID inside `destination`. With
    /// `skipDuplicates`, a photo whose contents an earlier one had is counted and left out; so is one with
    /// contents that `leaveOut` holds.
    /// Progress runs from 0 to 0.4: "Checking i of n…".
    OrganizePlan plan(std::span<const library::Photo> photos, const files::FileUrl& destination,
                      const CopyOptions& options, const Progress& progress,
                      const std::stop_token& stop) const;

    /// Carries a plan out. The destination must exist and have room for the items (FreeSpace.h), the root
    /// must not exist yet.
    ///
    /// Per item: the source is digested again, copied to a hidden ".<UUID>.partial" file in the root, the
    /// copy flushed, read back from the medium (not from memory) and digested, and moved to its destination,
    /// where nothing is overwritten; then the folders are flushed, and the item is entered into the report
    /// and SHA256SUMS, both flushed before the next item begins. So after a crash at any instant every file
    /// under its final name is whole (FileSystem::moveWithoutOverwrite names the one exception, on file
    /// systems that lack exclusive renaming), and the report is whole JSON that names only such files. A
    /// photo with a failure line has no file in the tree, except where the line is about SHA256SUMS or a
    /// sidecar: such a copy is in the report, its digest too.
    ///
    /// An item costs three reads (two of the source, one of the copy), one write and five flushes: copy,
    /// folder, report, root, SHA256SUMS. Of SHA256SUMS and the report only what an item adds is written, so n
    /// photos cost n such pieces and not n reports: see DoubleBufferedFile, also for the file systems where
    /// the report is written in full each time (350 bytes per photo, 50,000 photos 17 MB). Failure lines
    /// stand behind the copies in the report, so each copy also rewrites the lines that there are. The
    /// report's text stays in memory. After a cancellation it is saved once, at the end.
    ///
    /// A name that the destination's file system does not allow (":" or "?" on FAT) is a failure line, never
    /// a changed name: copy and original are known by the same one.
    ///
    /// Throws files::FileError when the run as a whole fails: too little space (the message names both
    /// figures) or no root, and nothing was created; the report not writable, and the copies made so far
    /// stay. Throws std::invalid_argument when a destination lies outside the root.
    OrganizeReport execute(const OrganizePlan& plan, const CopyProgress& progress,
                           const std::stop_token& stop) const;

    /// Plans and executes. With nothing to copy the report has no log and nothing is created. Throws what
    /// `execute` throws; too little space mostly before any photo is read. Progress of the copying runs from
    /// 0.4 to 1: "Copying i of n…".
    OrganizeReport copy(std::span<const library::Photo> photos, const files::FileUrl& destination,
                        const CopyOptions& options, const Progress& progress,
                        const std::stop_token& stop) const;

    /// Goes on with an unfinished run (SavedPlan.h) for the photos chosen now: removes its partial files,
    /// plans the rest (RunResumption.h) with the run's own choice about duplicates, and carries that out as
    /// `execute` does. Throws files::FileError where the folder is a symbolic link, another program is
    /// copying into it, its plan or report cannot be read, or as `execute` does. Progress of the copying runs
    /// from 0.4 to 1.
    ResumedRun resume(std::span<const library::Photo> photos, const files::FileUrl& run,
                      std::shared_ptr<const KeptPhotos> withSidecars, const Progress& progress,
                      const std::stop_token& stop) const;

private:
    files::FileSystem& system_;
    time::Clock clock_;
    std::function<std::string()> newUuid_;
};

} // namespace lumisort::organize
