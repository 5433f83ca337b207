#include "similarity/ExactCopies.h"

#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/PathOrder.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

namespace lumisort::similarity {

namespace {

using Photos = std::vector<library::Photo>;

/// A photo together with the stamp of its file from before anything was read.
struct Candidate {
    library::Photo photo;
    PreciseFileStamp stamp;
};

/// A file that is read step by step.
struct Reading {
    Candidate candidate;
    std::unique_ptr<files::OpenFile> file; ///< none between steps where too many would be open
    files::Sha256 digest;                  ///< of the bytes read so far
    std::int64_t total = 0;                ///< their number

    bool isComplete() const { return total == candidate.stamp.size; }
};

/// Files that hold the same bytes as far as they were read.
using EqualSoFar = std::vector<std::unique_ptr<Reading>>;

/// Bytes of the first step. Most photos of one size differ here, and a page is what a disk reads anyway.
constexpr std::size_t firstStepBytes = 4096;
constexpr std::size_t mostOpenFiles = 64;

/// One run. Throws tasks::Cancelled; a files::FileError is one file's failure and is counted.
class Search {
public:
    Search(files::FileSystem& system, const ReadObserver& didReadChunk, const std::stop_token& stop)
        : system_(system), didReadChunk_(didReadChunk), stop_(stop), buffer_(files::digestChunkBytes) {}

    ExactCopies run(std::span<const library::Photo> photos) {
        for (auto& [size, candidates] : bySize(photos))
            if (candidates.size() > 1) readInStep(std::move(candidates));
        return {.groups = confirmed(), .failed = failed_};
    }

private:
    using SizeBuckets = std::unordered_map<std::int64_t, std::vector<Candidate>>;

    SizeBuckets bySize(std::span<const library::Photo> photos) {
        SizeBuckets buckets;
        for (const auto& photo : photos)
            attempt([&] {
                const auto stamp = stampOfPath(photo.url);
                buckets[stamp.size].push_back({photo, stamp});
            });
        return buckets;
    }

    /// Reads files of one size a step at a time and takes those apart that differ, until each is read to its
    /// end or differs from all others.
    void readInStep(std::vector<Candidate> candidates) {
        std::vector<EqualSoFar> unfinished(1);
        for (auto& candidate : candidates) {
            unfinished.back().push_back(std::make_unique<Reading>());
            unfinished.back().back()->candidate = std::move(candidate);
        }
        while (!unfinished.empty()) {
            auto files = std::move(unfinished.back());
            unfinished.pop_back();
            for (auto& [digest, equal] : afterOneStep(std::move(files))) {
                if (equal.size() > 1 && !equal.front()->isComplete())
                    unfinished.push_back(std::move(equal));
                else
                    settle(std::move(equal));
            }
        }
    }

    std::unordered_map<std::string, EqualSoFar> afterOneStep(EqualSoFar files) {
        const bool keepOpen = files.size() <= mostOpenFiles;
        std::unordered_map<std::string, EqualSoFar> byDigest;
        for (auto& file : files)
            attempt([&] {
                readStep(*file);
                if (!keepOpen) file->file.reset();
                byDigest[file->digest.soFar()].push_back(std::move(file));
            });
        return byDigest;
    }

    void readStep(Reading& reading) {
        const auto& [photo, stamp] = reading.candidate;
        if (!reading.file) open(reading);
        tasks::checkCancelled(stop_);
        const auto end = std::min(stamp.size, reading.total + static_cast<std::int64_t>(stepBytes(reading)));
        while (reading.total < end) {
            const auto wanted = static_cast<std::size_t>(end - reading.total);
            const auto count = reading.file->read(std::span(buffer_).first(wanted));
            if (count == 0) throwChanged(photo.url);
            reading.digest.update(std::span(buffer_).first(count));
            reading.total += static_cast<std::int64_t>(count);
            if (didReadChunk_) didReadChunk_(photo.url, reading.total);
            tasks::checkCancelled(stop_);
        }
        if (!reading.isComplete()) return;
        if (reading.file->read(std::span(buffer_).first(1)) != 0) throwChanged(photo.url);
        requireUnchanged(stampOfOpen(*reading.file, photo.url), stamp, photo.url);
        requireUnchanged(stampOfPath(photo.url), stamp, photo.url);
        reading.file.reset();
    }

    static std::size_t stepBytes(const Reading& reading) {
        return reading.total == 0 ? firstStepBytes : files::digestChunkBytes;
    }

    void open(Reading& reading) {
        const auto& [photo, stamp] = reading.candidate;
        reading.file = system_.open(photo.url.path(), files::Links::doNotFollow);
        requireUnchanged(stampOfOpen(*reading.file, photo.url), stamp, photo.url);
        if (reading.total > 0) reading.file->seek(reading.total);
    }

    void settle(EqualSoFar files) {
        auto& equal = settled_.emplace_back();
        for (auto& file : files) equal.push_back(std::move(file->candidate));
    }

    /// The groups of files that are still as they were when the run began. Files without a copy are looked at
    /// as well: one that changed is a failure.
    std::vector<Photos> confirmed() {
        std::multimap<std::string, Photos> groups; // by the path of the first photo
        for (auto& candidates : settled_) {
            Photos group;
            for (auto& [photo, stamp] : candidates)
                attempt([&] {
                    requireUnchanged(stampOfPath(photo.url), stamp, photo.url);
                    group.push_back(std::move(photo));
                });
            if (group.size() < 2) continue;
            group = sortedByPath(std::move(group));
            auto key = pathKey(group.front().url);
            groups.emplace(std::move(key), std::move(group));
        }
        std::vector<Photos> sorted;
        for (auto& [key, group] : groups) sorted.push_back(std::move(group));
        return sorted;
    }

    template <class Step>
    void attempt(Step step) {
        tasks::checkCancelled(stop_);
        try {
            step();
        } catch (const files::FileError&) {
            ++failed_;
        }
    }

    PreciseFileStamp stampOfPath(const files::FileUrl& url) {
        return stampOf(system_.status(url.path(), files::Links::doNotFollow), url);
    }

    PreciseFileStamp stampOfOpen(files::OpenFile& file, const files::FileUrl& url) {
        return stampOf(file.status(), url);
    }

    PreciseFileStamp stampOf(const files::FileStatus& status, const files::FileUrl& url) {
        auto stamp = PreciseFileStamp::of(status, url);
        auto known = keepsInodes_.find(status.device);
        if (known == keepsInodes_.end())
            known = keepsInodes_.emplace(status.device, system_.volumeFacts(url.path()).keepsInodes).first;
        if (!known->second) stamp.inode = 0;
        return stamp;
    }

    static void requireUnchanged(const PreciseFileStamp& now, const PreciseFileStamp& before,
                                 const files::FileUrl& url) {
        if (now != before) throwChanged(url);
    }

    [[noreturn]] static void throwChanged(const files::FileUrl& url) {
        throw files::FileError("read", url.path(), std::string("It changed meanwhile"));
    }

    files::FileSystem& system_;
    const ReadObserver& didReadChunk_;
    const std::stop_token& stop_;
    std::vector<std::byte> buffer_;
    std::unordered_map<std::uint64_t, bool> keepsInodes_; ///< by device
    std::vector<std::vector<Candidate>> settled_;         ///< files of the same bytes, or one without a copy
    std::size_t failed_ = 0;
};

} // namespace

ExactCopies findExactCopies(files::FileSystem& system, std::span<const library::Photo> photos,
                            const ReadObserver& didReadChunk, const std::stop_token& stop) {
    return Search(system, didReadChunk, stop).run(photos);
}

} // namespace lumisort::similarity
