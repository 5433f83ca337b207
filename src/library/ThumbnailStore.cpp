#include "library/ThumbnailStore.h"

#include "platform/tasks/Cancellation.h"

#include <exception>
#include <utility>

namespace lumisort::library {

ThumbnailStore::ThumbnailStore(Decoder decoder, time::Clock clock, std::size_t budget)
    : decoder_(std::move(decoder)), clock_(std::move(clock)), cache_(budget) {}

images::Bitmap ThumbnailStore::decodeFine(const files::FileUrl& url, int side, const std::stop_token& stop) {
    return images::decoder().thumbnail(url, side, images::Quality::fine, stop);
}

ThumbnailStore::~ThumbnailStore() {
    ended_.request_stop();
}

void ThumbnailStore::image(const files::FileUrl& url, Ready ready, std::stop_token stop) {
    {
        const std::scoped_lock lock(mutex_);
        const double now = clock_.uptimeSeconds();
        if (bursts_.empty() || now - lastRequest_ >= burstGapSeconds) bursts_.emplace_back();
        lastRequest_ = now;
        bursts_.back().push_back({url, std::move(ready), std::move(stop)});
    }
    executor_.post([this] { serveNext(); });
}

void ThumbnailStore::removeAll() {
    // Marked at once, because requests made from now on may be served before those that wait already.
    stale_ = true;
    executor_.post([this] {
        if (stale_.exchange(false)) cache_.clear();
    });
}

void ThumbnailStore::remove(const files::FileUrl& url) {
    // Noted at once, for the same reason.
    const std::scoped_lock lock(mutex_);
    removed_.push_back(url);
}

void ThumbnailStore::dropRemoved() {
    std::vector<files::FileUrl> removed;
    {
        const std::scoped_lock lock(mutex_);
        removed.swap(removed_);
    }
    for (const auto& url : removed) cache_.erase(url);
}

void ThumbnailStore::serveNext() {
    auto request = takeNext();
    dropRemoved();
    if (stale_.exchange(false)) cache_.clear();
    request.ready(make(request.url, request.stop));
}

ThumbnailStore::Request ThumbnailStore::takeNext() {
    const std::scoped_lock lock(mutex_); // there is one request for each call
    auto& latest = bursts_.back();
    auto request = std::move(latest.front());
    latest.pop_front();
    if (latest.empty()) bursts_.pop_back();
    return request;
}

Thumbnail ThumbnailStore::make(const files::FileUrl& url, const std::stop_token& stop) {
    std::stop_source either;
    const auto end = [&either] { either.request_stop(); };
    const std::stop_callback onStop(stop, end);
    const std::stop_callback onEnd(ended_.get_token(), end);
    if (either.stop_requested()) return {};
    if (const Thumbnail* kept = cache_.find(url)) return *kept;
    try {
        auto made = std::make_shared<const images::Bitmap>(decoder_(url, maxSide, either.get_token()));
        cache_.insert(url, made, made->rgba().size());
        return made;
    } catch (const tasks::Cancelled&) { // the request was stopped: nobody waits for the preview
        return {};
    } catch (const std::exception&) { // unreadable or out of memory: no preview
        return {};
    }
}

} // namespace lumisort::library
