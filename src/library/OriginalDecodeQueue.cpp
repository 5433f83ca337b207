#include "library/OriginalDecodeQueue.h"

#include "platform/files/FileError.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace lumisort::library {
namespace {

/// Of what the path leads to, as that is what is decoded; none when it cannot be reached.
std::optional<FileStamp> stampOf(files::FileSystem& system, const files::FileUrl& url) {
    try {
        return FileStamp::of(system.status(url.path(), files::Links::follow));
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

} // namespace

OriginalDecodeQueue::OriginalDecodeQueue(files::FileSystem& system, Load load, std::size_t budgetBytes)
    : system_(system), load_(std::move(load)), kept_(budgetBytes) {}

OriginalDecodeQueue::~OriginalDecodeQueue() {
    const std::scoped_lock lock(mutex_);
    closing_ = true;
    waiting_.clear();
    if (running_) running_->attempt->stop.request_stop();
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
    return kept_.cost();
}

OriginalDecodeQueue::Ticket OriginalDecodeQueue::request(const files::FileUrl& url, Priority priority,
                                                         Deliver deliver) {
    auto job = std::make_shared<Job>(url, priority, std::move(deliver));
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(job);
    post();
    if (running_ && running_->url == url)
        job->join(running_->attempt);
    else if (priority == Priority::shown && running_ && !isShown(running_->url) && !find(url, nullptr))
        running_->attempt->stop.request_stop();
    return Ticket(std::move(job));
}

void OriginalDecodeQueue::Job::join(std::shared_ptr<Attempt> underWay) {
    leave.reset();
    attempt = std::move(underWay);
    ++attempt->wanting;
    leave.emplace(cancelled.get_token(), Leave{attempt});
}

/// Whether something on show waits for the photo or has it decoded. The mutex is held.
bool OriginalDecodeQueue::isShown(const files::FileUrl& url) const {
    const auto wanted = [&url](const std::shared_ptr<Job>& job) {
        return job->url == url && job->priority == Priority::shown && !job->cancelled.stop_requested();
    };
    return (running_ && wanted(running_)) || std::ranges::any_of(waiting_, wanted);
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
        const auto attempt = std::make_shared<Attempt>();
        job->join(attempt);
        for (const auto& each : waiting_)
            if (each->url == job->url) each->join(attempt);
        running_ = job;
    }
    std::optional<Answer> given;
    try {
        given = answer(*job);
    } catch (const tasks::Cancelled&) { // nobody wants it any more, or something on show came between
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
        auto original = std::make_shared<const images::PicturePyramid>(
            load_(system_, job.url, job.attempt->stop.get_token()));
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
OriginalDecodeQueue::Original OriginalDecodeQueue::find(const files::FileUrl& url, const FileStamp* stamp) {
    const auto place = alive_.find(url);
    if (place == alive_.end() || (stamp && place->second.stamp != *stamp)) return nullptr;
    kept_.find(url); // counts as used
    return place->second.original.lock();
}

/// Removes the original from the cache; a view that shows it keeps it. The mutex is held. The caller frees
/// the result after it, because that takes a while.
OriginalDecodeQueue::Original OriginalDecodeQueue::drop(const files::FileUrl& url) {
    alive_.erase(url);
    return kept_.erase(url).value_or(nullptr);
}

void OriginalDecodeQueue::keep(const files::FileUrl& url, const FileStamp& stamp, const Original& original) {
    std::vector<Original> removed; // freed after the mutex
    const std::scoped_lock lock(mutex_);
    removed = kept_.insert(url, original, original->bytes());
    alive_[url] = {stamp, original};
    std::erase_if(alive_, [](const auto& each) { return each.second.original.expired(); });
}

} // namespace lumisort::library
