#include "library/ThumbnailCache.h"

#include <utility>

namespace lumisort::library {

namespace {

std::size_t cost(const Thumbnail& thumbnail) {
    return thumbnail->rgba.size(); // rows have no padding
}

} // namespace

Thumbnail ThumbnailCache::find(const files::FileUrl& url) {
    const auto place = places_.find(url);
    if (place == places_.end()) return {};
    entries_.splice(entries_.begin(), entries_, place->second);
    return place->second->thumbnail;
}

void ThumbnailCache::insert(const files::FileUrl& url, Thumbnail thumbnail) {
    if (const auto place = places_.find(url); place != places_.end()) erase(place->second);
    if (cost(thumbnail) > budget_) return;
    used_ += cost(thumbnail);
    while (used_ > budget_) erase(std::prev(entries_.end()));
    entries_.push_front({url, std::move(thumbnail)});
    places_.emplace(url, entries_.begin());
}

void ThumbnailCache::clear() {
    places_.clear();
    entries_.clear();
    used_ = 0;
}

void ThumbnailCache::erase(Entries::iterator entry) {
    used_ -= cost(entry->thumbnail);
    places_.erase(entry->url);
    entries_.erase(entry);
}

} // namespace lumisort::library
