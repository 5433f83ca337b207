#pragma once

#include "organize/ArchivePlan.h"
#include "organize/ArchiveReport.h"
#include "organize/ChecksumList.h"
#include "organize/ReportFile.h"

#include <functional>
#include <memory>
#include <set>
#include <stop_token>
#include <string>

namespace lumisort::organize {

/// One run of a plan, item by item. ArchiveEngine::execute says what it promises. Used by one thread;
/// the plan, the file system and the stop token outlive it.
class ArchiveRun {
public:
    /// Checks the free space, removes what killed runs left at the destination, creates the root and writes
    /// the first report. Throws files::FileError.
    ArchiveRun(files::FileSystem& system, std::function<std::string()> newUuid, const ArchivePlan& plan,
               std::stop_token stop);

    /// Copies one item and saves the outcome. Throws files::FileError only when the report cannot be saved.
    void process(const ArchiveItem& item);

    ArchiveReport finish();

private:
    void transfer(const ArchiveItem& item);
    void addChecksum(const ArchiveItem& item);
    void makeVerifiedCopy(const ArchiveItem& item, const std::string& partial);
    void moveIntoPlace(const std::string& partial, const std::string& destination);
    void flushFolders(const std::string& folder);

    files::FileSystem& system_;
    std::function<std::string()> newUuid_;
    std::stop_token stop_;
    std::string root_;
    std::unique_ptr<files::FolderLock> lock_; ///< on the root; none where folders cannot be locked
    ReportFile report_;
    ChecksumList checksums_;
    std::set<std::string> settled_; ///< folders below the root whose own entries are on the medium
};

} // namespace lumisort::organize
