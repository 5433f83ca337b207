#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace lumisort::film {

/// A cache of the latest `capacity` values by key, shared between threads. Values are made without the lock:
/// two threads that miss the same key may both make it.
template <class Key, class Value, std::size_t capacity>
class RecentValues {
public:
    template <class Make>
    std::shared_ptr<const Value> get(const Key& key, Make make) {
        if (auto known = find(key)) return known;
        auto made = std::make_shared<const Value>(make());
        const std::scoped_lock lock(mutex_);
        entries_.emplace_back(key, made);
        if (entries_.size() > capacity) entries_.pop_front();
        return made;
    }

private:
    std::shared_ptr<const Value> find(const Key& key) {
        const std::scoped_lock lock(mutex_);
        for (const auto& [known, value] : entries_)
            if (known == key) return value;
        return nullptr;
    }

    std::mutex mutex_;
    std::deque<std::pair<Key, std::shared_ptr<const Value>>> entries_; // guarded by mutex_
};

} // namespace lumisort::film
