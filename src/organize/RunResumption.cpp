#include "organize/RunResumption.h"

#include "organize/DestinationNames.h"
#include "organize/FailureLine.h"
#include "organize/OrganizeReport.h"
#include "organize/RunFolder.h"
#include "organize/SavedPlan.h"
#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace lumisort::organize {

namespace {

using files::FileUrl;

class Planner {
public:
    Planner(files::FileSystem& system, FileUrl run, const ResumptionProgress& progress,
            const std::stop_token& stop)
        : system_(system), run_(std::move(run)), progress_(progress), stop_(stop), names_(run_) {}

    /// Digests the copies that the report names.
    void verify(const std::vector<OrganizeItem>& reported, const FileUrl& then) {
        std::int64_t index = 0;
        for (const auto& item : reported) {
            progress_("Checking copy", ++index, std::ssize(reported));
            const auto place = placeNow(item.destination, then, run_);
            if (!place) {
                remark(item.destination, "The report names it, and it lies outside the run's folder");
                continue;
            }
            if (const auto difference = differenceFrom(item, *place); !difference.empty()) {
                remark(*place, difference);
                continue;
            }
            names_.reserve(*place);
            byDigest_.emplace(item.digest, copies_.size());
            copies_.push_back({item.source, *place, item.digest, item.bytes});
        }
    }

    /// Plans the photos as OrganizeEngine::plan does.
    void plan(std::span<const library::Photo> photos, const OrganizePlan& saved) {
        result_.plan.root = run_;
        result_.plan.skipDuplicates = saved.skipDuplicates;
        for (const auto& item : saved.items) savedDigests_.emplace(item.source, item.digest);
        std::int64_t index = 0;
        for (const auto& photo : photos) {
            progress_("Checking", ++index, std::ssize(photos));
            try {
                plan(photo);
            } catch (const files::FileError& error) {
                result_.plan.failures.push_back(failureLine(photo.url, error));
            }
        }
        result_.gone = std::ssize(savedDigests_); // what no photo took out
        for (std::size_t i = 0; i < copies_.size(); ++i)
            if (!used_.contains(i)) result_.present.push_back(copies_[i]);
    }

    RunResumption take() { return std::move(result_); }

private:
    void remark(const FileUrl& file, const std::string& line) {
        result_.remarks.push_back(file.path() + ": " + line);
    }

    /// Why the file at `place` is not the copy that `item` names, "" where it is.
    std::string differenceFrom(const OrganizeItem& item, const FileUrl& place) {
        try {
            if (!isReachedThroughFolders(system_, place, run_)) return "A folder above it is a symbolic link";
            requireRegularFile(system_, place.path());
            return isCopy(place, item.digest, item.bytes) ? "" : "It is not the copy that the report names";
        } catch (const files::FileError& error) {
            return error.isMissing() ? "The report names it, and it is not there" : error.description();
        }
    }

    bool isCopy(const FileUrl& file, const std::string& digest, std::int64_t bytes) {
        return system_.status(file.path(), files::Links::doNotFollow).size == bytes &&
               files::sha256(system_, file.path(), stop_) == digest;
    }

    void plan(const library::Photo& photo) {
        const auto saved = savedDigests_.extract(photo.url);
        if (!saved) ++result_.added;
        auto digest = files::sha256(system_, photo.url.path(), stop_);
        if (saved && saved.mapped() != digest) ++result_.changed;
        if (result_.plan.skipDuplicates && seen_.contains(digest)) {
            ++result_.plan.duplicates;
            return;
        }
        const auto bytes = system_.status(photo.url.path(), files::Links::follow).size;
        seen_.insert(digest);
        if (const auto copy = takeCopy(photo.url, digest)) {
            result_.present.push_back({photo.url, copies_[*copy].destination, std::move(digest), bytes});
            return;
        }
        bool isThere = false;
        auto place = freePlace(photo, digest, bytes, isThere);
        auto& list = isThere ? result_.present : result_.plan.items;
        list.push_back({photo.url, std::move(place), std::move(digest), bytes});
    }

    /// A copy with these contents that no photo has yet, the one made of this photo before others.
    std::optional<std::size_t> takeCopy(const FileUrl& source, const std::string& digest) {
        std::optional<std::size_t> best;
        const auto [first, last] = byDigest_.equal_range(digest);
        for (auto entry = first; entry != last; ++entry) {
            const auto index = entry->second;
            if (used_.contains(index)) continue;
            const bool own = copies_[index].source == source;
            if (!best || own || (copies_[*best].source != source && index < *best)) best = index;
            if (own) break;
        }
        if (best) used_.insert(*best);
        return best;
    }

    /// The first place of the photo that is free, or holds the photo's copy already.
    FileUrl freePlace(const library::Photo& photo, const std::string& digest, std::int64_t bytes,
                      bool& isThere) {
        while (true) {
            auto place = names_.place(photo.url, photo.date);
            if (!isReachedThroughFolders(system_, place, run_))
                throw files::FileError("create", place.path(),
                                       "A symbolic link or a file is in the place of its folder");
            try {
                const auto status = system_.status(place.path(), files::Links::doNotFollow);
                isThere = status.kind == files::FileKind::regular && isCopy(place, digest, bytes);
            } catch (const files::FileError& error) {
                if (!error.isMissing()) throw;
                return place;
            }
            if (isThere) return place;
        }
    }

    files::FileSystem& system_;
    const FileUrl run_;
    const ResumptionProgress& progress_;
    const std::stop_token& stop_;
    DestinationNames names_;
    std::vector<OrganizeItem> copies_; ///< verified
    std::unordered_multimap<std::string, std::size_t> byDigest_;
    std::unordered_set<std::size_t> used_; ///< of copies_
    std::unordered_set<std::string> seen_; ///< digests of photos
    std::unordered_map<FileUrl, std::string> savedDigests_;
    RunResumption result_;
};

} // namespace

RunResumption planResumption(files::FileSystem& system, std::span<const library::Photo> photos,
                             const FileUrl& run, const ResumptionProgress& progress,
                             const std::stop_token& stop) {
    const auto saved = savedPlan(system, run);
    const auto reportUrl = run.child(reportFileName);
    requireRegularFile(system, reportUrl.path());
    const auto report = readReport(system, reportUrl);
    Planner planner(system, run, progress, stop);
    planner.verify(report.copied, saved.root);
    planner.plan(photos, saved);
    return planner.take();
}

} // namespace lumisort::organize
