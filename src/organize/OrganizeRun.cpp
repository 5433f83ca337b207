#include "organize/OrganizeRun.h"

#include "organize/AbandonedFiles.h"
#include "organize/FailureLine.h"
#include "organize/FreeSpace.h"
#include "organize/SavedPlan.h"
#include "organize/Sidecar.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"

#include <cerrno>
#include <stdexcept>
#include <string_view>
#include <unordered_set>

namespace lumisort::organize {

namespace {

/// "NAME.before-resume", with a number behind it where that is taken.
std::string freeName(files::FileSystem& system, const std::string& path) {
    for (int number = 1;; ++number) {
        auto name = path + ".before-resume" + (number == 1 ? "" : "-" + std::to_string(number));
        try {
            system.status(name, files::Links::doNotFollow);
        } catch (const files::FileError& error) {
            if (error.isMissing()) return name;
            throw;
        }
    }
}

void requireInside(const std::string& root, const OrganizePlan& plan) {
    for (const auto& item : plan.items)
        if (!item.destination.path().starts_with(root + "/"))
            throw std::invalid_argument("organize: a destination lies outside the root");
}

void removeIfThere(files::FileSystem& system, const std::string& path) {
    try {
        system.remove(path);
    } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): the failure before it counts
    }
}

/// Keeps later runs from taking the files of this one for those of a killed run. A run goes on without it.
std::unique_ptr<files::FolderLock> lockIfPossible(files::FileSystem& system, const std::string& folder) {
    try {
        return system.tryLockFolder(folder);
    } catch (const files::FileError&) {
        return nullptr;
    }
}

/// So that the digest that follows is of what the medium holds, not of what is still in memory.
void settleOnMedium(files::FileSystem& system, const std::string& path) {
    const auto file = system.open(path, files::Links::doNotFollow);
    file->flush();
    file->dropCache();
    file->close();
}

} // namespace

OrganizeRun::OrganizeRun(files::FileSystem& system, std::function<std::string()> newUuid,
                         const OrganizePlan& plan, std::stop_token stop)
    : system_(system), newUuid_(std::move(newUuid)), stop_(std::move(stop)), root_(plan.root.path()),
      withSidecars_(plan.withSidecars), report_(system, {.copied = {},
                                                         .duplicates = plan.duplicates,
                                                         .failures = plan.failures,
                                                         .alreadyThere = plan.alreadyThere,
                                                         .logURL = plan.root.child(reportFileName)}),
      checksums_(system, root_) {
    const std::string destination = plan.root.parent().path();
    requireInside(root_, plan);
    requireFreeSpace(system_, destination, plan);
    removeAbandonedFiles(system_, destination);
    system_.createDirectory(root_);
    lock_ = lockIfPossible(system_, root_);
    system_.flushDirectory(destination);
    savePlan(system_, plan);
    report_.save();
}

OrganizeRun::OrganizeRun(files::FileSystem& system, std::function<std::string()> newUuid,
                         const RunResumption& resumption, std::stop_token stop)
    : system_(system), newUuid_(std::move(newUuid)), stop_(std::move(stop)),
      root_(resumption.plan.root.path()), withSidecars_(resumption.plan.withSidecars),
      report_(system, {.copied = resumption.present,
                       .duplicates = resumption.plan.duplicates,
                       .failures = resumption.plan.failures,
                       .alreadyThere = 0,
                       .logURL = resumption.plan.root.child(reportFileName)}),
      checksums_(system, root_) {
    requireInside(root_, resumption.plan);
    requireFreeSpace(system_, resumption.plan.root.parent().path(), resumption.plan);
    keepForeignSums(resumption);
    const auto reportPath = root_ + "/" + std::string(reportFileName);
    if (!resumption.remarks.empty()) system_.copy(reportPath, freeName(system_, reportPath), stop_);
    auto whole = resumption.plan;
    whole.items.insert(whole.items.begin(), resumption.present.begin(), resumption.present.end());
    savePlan(system_, whole);
    report_.save();
    std::string lines;
    for (const auto& item : resumption.present) lines += checksumLineOf(item);
    if (!lines.empty()) checksums_.begin(lines, "." + newUuid_() + ".partial");
    for (const auto& item : resumption.present) addSidecar(item);
}

std::string OrganizeRun::checksumLineOf(const OrganizeItem& item) const {
    return checksumLine(item.digest, std::string_view(item.destination.path()).substr(root_.size() + 1));
}

/// Moves a list of sums aside that is no list of these copies; one may miss the last lines.
void OrganizeRun::keepForeignSums(const RunResumption& resumption) {
    const auto list = root_ + "/" + std::string(checksumFileName);
    std::unordered_set<std::string> known;
    std::size_t longest = 0;
    for (const auto& item : resumption.present) {
        const auto line = checksumLineOf(item);
        longest += line.size();
        known.insert(line);
    }
    try {
        if (system_.status(list, files::Links::doNotFollow).kind == files::FileKind::regular) {
            const auto text = files::readFile(system_, list, static_cast<std::int64_t>(longest) + 4096);
            std::size_t start = 0, end = 0;
            while ((end = text.find('\n', start)) != std::string::npos &&
                   known.contains(text.substr(start, end + 1 - start)))
                start = end + 1;
            // Behind the last whole line a power cut can leave part of one, or zeros.
            if (end == std::string::npos) return;
        }
    } catch (const files::FileError& error) {
        if (error.isMissing()) return;
        if (error.code() != EFBIG) throw;
    }
    system_.moveWithoutOverwrite(list, freeName(system_, list));
}

void OrganizeRun::process(const OrganizeItem& item) {
    try {
        tasks::checkCancelled(stop_);
        transfer(item);
    } catch (const files::FileError& error) {
        report_.addFailure(failureLine(item.source, error));
        return report_.save();
    } catch (const tasks::Cancelled&) {
        return report_.addFailure(cancelledLine(item.source));
    }
    report_.addCopied(item);
    report_.save();
    addChecksum(item);
    addSidecar(item);
}

void OrganizeRun::addChecksum(const OrganizeItem& item) {
    try {
        checksums_.add(item.digest, std::string_view(item.destination.path()).substr(root_.size() + 1));
    } catch (const files::FileError& error) {
        report_.addFailure(failureLine(item.source, error));
        report_.save();
    }
}

void OrganizeRun::addSidecar(const OrganizeItem& item) {
    if (!withSidecars_ || !withSidecars_->contains(item.source)) return;
    try {
        writeKeptSidecar(system_, item.destination, root_ + "/." + newUuid_() + ".partial");
    } catch (const files::FileError& error) {
        report_.addFailure(failureLine(item.source, error));
        report_.save();
    }
}

void OrganizeRun::transfer(const OrganizeItem& item) {
    const std::string& destination = item.destination.path();
    const std::string partial = root_ + "/." + newUuid_() + ".partial";
    std::string current = partial; // where the copy is, if anywhere
    try {
        makeVerifiedCopy(item, partial);
        moveIntoPlace(partial, destination);
        current = destination;
        flushFolders(item.destination.parent().path());
    } catch (...) {
        removeIfThere(system_, current);
        throw;
    }
}

void OrganizeRun::makeVerifiedCopy(const OrganizeItem& item, const std::string& partial) {
    const std::string& source = item.source.path();
    if (files::sha256(system_, source, stop_) != item.digest)
        throw files::FileError("copy", source, "It has changed since it was checked");
    system_.createDirectories(item.destination.parent().path());
    system_.copy(source, partial, stop_);
    settleOnMedium(system_, partial);
    if (files::sha256(system_, partial, stop_) != item.digest)
        throw files::FileError("verify the copy", item.destination.path(), "It differs from the original");
}

void OrganizeRun::moveIntoPlace(const std::string& partial, const std::string& destination) {
    try {
        system_.moveWithoutOverwrite(partial, destination);
    } catch (const files::FileError& error) {
        // The partial file's name means nothing to anyone.
        if (error.code() == EINVAL)
            throw files::FileError("create", destination, "The file system there does not allow this name");
        if (error.code() != 0) throw files::FileError("create", destination, error.code());
        throw;
    }
}

/// Flushes the folder and those above it whose entries were not flushed yet, up to the root.
void OrganizeRun::flushFolders(const std::string& folder) {
    system_.flushDirectory(folder);
    if (folder == root_ || settled_.contains(folder)) return;
    flushFolders(folder.substr(0, folder.rfind('/')));
    settled_.insert(folder);
}

OrganizeReport OrganizeRun::finish() {
    report_.save();
    if (!stop_.stop_requested()) removeIfThere(system_, root_ + "/" + std::string(savedPlanName));
    return report_.report();
}

} // namespace lumisort::organize
