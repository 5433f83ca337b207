#include "library/OriginalDecodeQueue.h"

#include "platform/files/FileError.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace lumisort::library {
namespace {

/// Of what the path leads to, as that is what is decoded; none when it cannot be reached.
std::optional<FingerprintStamp> stampOf(files::FileSystem& system, const files::FileUrl& url) {
    try {
        return FingerprintStamp::of(system.status(url.path(), files::Links::follow));
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

} // namespace

OriginalDecodeQueue::OriginalDecodeQueue(files::FileSystem& system, Load load, std::size_t budgetBytes)
    : system_(system), load_(std::move(load)), budgetBytes_(budgetBytes) {}

OriginalDecodeQueue::~OriginalDecodeQueue() {
    const std::scoped_lock lock(mutex_);
    closing_ = true;
    waiting_.clear();
    if (running_) running_->attempt.request_stop();
}

OriginalDecodeQueue& OriginalDecodeQueue::shared() {
    static OriginalDecodeQueue queue;
    return queue;
}

OriginalDecodeQueue::Original OriginalDecodeQueue::recall(const files::FileUrl& url) {
    const std::scoped_lock lock(mutex_);
    return find(url, nullptr);
}

std::size_t OriginalDecodeQueue::keptBytes() const {
    const std::scoped_lock lock(mutex_);
    return keptBytes_;
}

OriginalDecodeQueue::Ticket OriginalDecodeQueue::request(const files::FileUrl& url, Priority priority,
                                                         Deliver deliver) {
    auto job = std::make_shared<Job>(url, priority, std::move(deliver));
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(job);
    post();
    if (priority == Priority::shown && running_ && running_->priority == Priority::prefetch) {
        if (running_->url == url)
            running_->adopted = true;
        else if (!running_->adopted && !find(url, nullptr))
            running_->attempt.request_stop();
    }
    return Ticket(std::move(job));
}

void OriginalDecodeQueue::post() {
    executor_.post([this] { runNext(); });
}

void OriginalDecodeQueue::runNext() {
    std::shared_ptr<Job> job;
    {
        const std::scoped_lock lock(mutex_);
        std::erase_if(waiting_, [](const auto& each) { return each->cancelled.stop_requested(); });
        const auto next = std::ranges::max_element(waiting_, {}, &Job::priority);
        if (closing_ || next == waiting_.end()) return;
        job = *next;
        waiting_.erase(next);
        job->attempt = std::stop_source();
        running_ = job;
    }
    std::optional<Answer> given;
    try {
        const std::stop_callback passOn(job->cancelled.get_token(), [&job] {
            if (!job->adopted) job->attempt.request_stop();
        });
        given = answer(*job);
    } catch (const tasks::Cancelled&) { // The ticket ended, or something on show came between.
    }
    {
        const std::scoped_lock lock(mutex_);
        running_ = nullptr;
        if (!given && !closing_ && !job->cancelled.stop_requested()) {
            waiting_.push_back(job);
            post();
        }
    }
    if (given && !job->cancelled.stop_requested()) job->deliver(*std::move(given));
}

OriginalDecodeQueue::Answer OriginalDecodeQueue::answer(Job& job) {
    const auto stamp = stampOf(system_, job.url);
    if (stamp) {
        const std::scoped_lock lock(mutex_);
        if (auto kept = find(job.url, &*stamp)) return kept;
    }
    try {
        auto original =
            std::make_shared<const images::PicturePyramid>(load_(system_, job.url, job.attempt.get_token()));
        if (stamp) keep(job.url, *stamp, original);
        return original;
    } catch (const std::exception& error) {
        Original outdated;
        const std::scoped_lock lock(mutex_);
        outdated = drop(job.url);
        return std::unexpected(std::string(error.what()));
    }
}

/// With `stamp`, only an original of that stamp. The mutex is held.
OriginalDecodeQueue::Original OriginalDecodeQueue::find(const files::FileUrl& url,
                                                        const FingerprintStamp* stamp) {
    const auto place = places_.find(url);
    if (place == places_.end() || (stamp && place->second->stamp != *stamp)) return nullptr;
    entries_.splice(entries_.begin(), entries_, place->second);
    return place->second->alive.lock();
}

/// Stands in no list any more; who shows it still has it. The mutex is held; what comes back is to be let go
/// without it, because that takes a while.
OriginalDecodeQueue::Original OriginalDecodeQueue::drop(const files::FileUrl& url) {
    const auto place = places_.find(url);
    if (place == places_.end()) return nullptr;
    auto original = release(*place->second);
    entries_.erase(place->second);
    places_.erase(place);
    return original;
}

OriginalDecodeQueue::Original OriginalDecodeQueue::release(Entry& entry) {
    if (entry.original) keptBytes_ -= entry.original->bytes();
    return std::exchange(entry.original, nullptr);
}

void OriginalDecodeQueue::keep(const files::FileUrl& url, const FingerprintStamp& stamp,
                               const Original& original) {
    std::vector<Original> released; // freed after the mutex
    const std::scoped_lock lock(mutex_);
    released.push_back(drop(url));
    std::erase_if(places_, [](const auto& place) { return place.second->alive.expired(); });
    std::erase_if(entries_, [](const Entry& entry) { return entry.alive.expired(); });
    entries_.push_front({url, stamp, original, original});
    places_[url] = entries_.begin();
    keptBytes_ += original->bytes();
    for (auto entry = entries_.end(); entry != entries_.begin() && keptBytes_ > budgetBytes_;)
        released.push_back(release(*--entry));
}

} // namespace lumisort::library
