#pragma once

#include "organize/ChecksumList.h"
#include "organize/OrganizePlan.h"
#include "organize/OrganizeReport.h"
#include "organize/ReportFile.h"
#include "organize/RunResumption.h"

#include <functional>
#include <memory>
#include <set>
#include <stop_token>
#include <string>

namespace lumisort::organize {

/// One run of a plan, item by item. OrganizeEngine::execute says what it promises. Used by one thread;
/// the plan, the file system and the stop token outlive it.
class OrganizeRun {
public:
    /// Checks the free space, removes what killed runs left at the destination, creates the root and writes
    /// the first report. Throws files::FileError.
    OrganizeRun(files::FileSystem& system, std::function<std::string()> newUuid, const OrganizePlan& plan,
                std::stop_token stop);

    /// Goes on with the run of a folder that is there and whose lock the caller holds, without its partial
    /// files: `present` are the copies that it has. A report or list of sums that holds anything else than
    /// these is kept under another name. Throws files::FileError.
    OrganizeRun(files::FileSystem& system, std::function<std::string()> newUuid,
                const RunResumption& resumption, std::stop_token stop);

    /// Copies one item and saves the outcome. Throws files::FileError only when the report cannot be saved.
    void process(const OrganizeItem& item);

    /// Also removes the saved plan, unless the run was stopped.
    OrganizeReport finish();

private:
    void keepForeignSums(const RunResumption& resumption);
    std::string checksumLineOf(const OrganizeItem& item) const;
    void transfer(const OrganizeItem& item);
    void addChecksum(const OrganizeItem& item);
    void addSidecar(const OrganizeItem& item);
    void makeVerifiedCopy(const OrganizeItem& item, const std::string& partial);
    void moveIntoPlace(const std::string& partial, const std::string& destination);
    void flushFolders(const std::string& folder);

    files::FileSystem& system_;
    std::function<std::string()> newUuid_;
    std::stop_token stop_;
    std::string root_;
    std::shared_ptr<const KeptPhotos> withSidecars_;
    std::unique_ptr<files::FolderLock> lock_; ///< on the root; none where folders cannot be locked
    ReportFile report_;
    ChecksumList checksums_;
    std::set<std::string> settled_; ///< folders below the root whose own entries are on the medium
};

} // namespace lumisort::organize
