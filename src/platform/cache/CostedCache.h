#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <list>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace lumisort::cache {

/// An LRU cache within a budget: the sum of what its values cost never exceeds it. Used by one thread at a
/// time.
template <class Key, class Value, class Hash = std::hash<Key>>
class CostedCache {
public:
    explicit CostedCache(std::size_t budget) : budget_(budget) {}

    /// The value, which counts as used now, or nullptr. Valid until the next call of another function.
    const Value* find(const Key& key) {
        const auto place = places_.find(key);
        if (place == places_.end()) return nullptr;
        entries_.splice(entries_.begin(), entries_, place->second);
        return &place->second->value;
    }

    /// Keeps the value, in place of an earlier one of the key, and removes those used longest ago as far as
    /// the budget demands; a value that costs more than the whole budget is not kept. Returns what is not
    /// kept any more, so that a caller who holds a lock can free it later.
    std::vector<Value> insert(const Key& key, Value value, std::size_t cost) {
        std::vector<Value> removed;
        if (auto earlier = erase(key)) removed.push_back(*std::move(earlier));
        if (cost > budget_) {
            removed.push_back(std::move(value));
            return removed;
        }
        while (cost_ + cost > budget_) removed.push_back(take(std::prev(entries_.end())));
        entries_.push_front({key, std::move(value), cost});
        places_.emplace(key, entries_.begin());
        cost_ += cost;
        return removed;
    }

    /// Returns the value of the key, if there is one.
    std::optional<Value> erase(const Key& key) {
        const auto place = places_.find(key);
        if (place == places_.end()) return std::nullopt;
        return take(place->second);
    }

    void clear() {
        places_.clear();
        entries_.clear();
        cost_ = 0;
    }

    /// Of all values together.
    std::size_t cost() const { return cost_; }

private:
    struct Entry {
        Key key;
        Value value;
        std::size_t cost;
    };
    using Entries = std::list<Entry>; ///< the most recently used first

    Value take(typename Entries::iterator entry) {
        cost_ -= entry->cost;
        places_.erase(entry->key);
        Value value = std::move(entry->value);
        entries_.erase(entry);
        return value;
    }

    const std::size_t budget_;
    std::size_t cost_ = 0;
    Entries entries_;
    std::unordered_map<Key, typename Entries::iterator, Hash> places_;
};

} // namespace lumisort::cache
