#include "similarity/ExactCopies.h"

#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/PathOrder.h"

#include <exception>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

namespace lumisort::similarity {

namespace {

using Photos = std::vector<library::Photo>;
using SizeBuckets = std::unordered_map<std::int64_t, std::vector<ExactCandidate>>;
using DigestBuckets = std::unordered_map<std::string, std::vector<ExactCandidate>>;

/// One run. Its passes throw tasks::Cancelled; every other failure is one file's and is counted.
class Search {
public:
    Search(files::FileSystem& system, const ReadObserver& didReadChunk, const std::stop_token& stop)
        : system_(system), didReadChunk_(didReadChunk), stop_(stop), buffer_(files::digestChunkBytes) {}

    SizeBuckets bySize(std::span<const library::Photo> photos) {
        SizeBuckets buckets;
        for (const auto& photo : photos)
            attempt([&] {
                const auto stamp = ExactFileStamp::read(system_, photo.url);
                buckets[stamp.size].push_back({photo, stamp});
            });
        return buckets;
    }

    DigestBuckets byDigest(SizeBuckets sizes) {
        DigestBuckets buckets;
        for (auto& [size, candidates] : sizes) {
            if (candidates.size() < 2) continue;
            for (auto& candidate : candidates)
                attempt([&] { buckets[digest(candidate)].push_back(std::move(candidate)); });
        }
        return buckets;
    }

    std::vector<Photos> confirmed(DigestBuckets digests) {
        std::multimap<std::string, Photos> groups; // by the path of the first photo
        for (auto& [digest, candidates] : digests) {
            Photos group;
            for (auto& [photo, stamp] : candidates)
                attempt([&] {
                    requireUnchanged(ExactFileStamp::read(system_, photo.url), stamp, photo.url);
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

    std::size_t failed() const { return failed_; }

private:
    template <class Step>
    void attempt(Step step) {
        tasks::checkCancelled(stop_);
        try {
            step();
        } catch (const std::exception&) {
            ++failed_;
        }
    }

    std::string digest(const ExactCandidate& candidate) {
        const auto& [photo, stamp] = candidate;
        const auto file = system_.open(photo.url.path(), files::Links::doNotFollow);
        requireUnchanged(ExactFileStamp::read(*file, photo.url), stamp, photo.url);
        files::Sha256 hash;
        tasks::checkCancelled(stop_);
        std::int64_t total = 0;
        while (const std::size_t count = file->read(buffer_)) {
            total += static_cast<std::int64_t>(count);
            if (total > stamp.size) throwChanged(photo.url);
            hash.update(std::span(buffer_).first(count));
            if (didReadChunk_) didReadChunk_(photo.url, total);
            tasks::checkCancelled(stop_);
        }
        if (total != stamp.size) throwChanged(photo.url);
        requireUnchanged(ExactFileStamp::read(*file, photo.url), stamp, photo.url);
        requireUnchanged(ExactFileStamp::read(system_, photo.url), stamp, photo.url);
        return hash.finish();
    }

    static void requireUnchanged(const ExactFileStamp& now, const ExactFileStamp& before,
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
    std::size_t failed_ = 0;
};

} // namespace

ExactCopies findExactCopies(files::FileSystem& system, std::span<const library::Photo> photos,
                            const ReadObserver& didReadChunk, const std::stop_token& stop) {
    Search search(system, didReadChunk, stop);
    auto groups = search.confirmed(search.byDigest(search.bySize(photos)));
    return {.groups = std::move(groups), .failed = search.failed()};
}

} // namespace lumisort::similarity
