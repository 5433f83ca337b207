#include "platform/text/KeySort.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace lumisort::text {

namespace {

constexpr std::size_t headBytes = 8;
/// Where comparing the rests of keys costs less than another pass.
constexpr std::size_t fewEntries = 16;

struct Entry {
    std::uint64_t head = 0; ///< eight bytes of the key as a number, zeros behind its end
    std::size_t index = 0;

    friend auto operator<=>(const Entry&, const Entry&) = default;
};

std::uint64_t headAt(std::string_view key, std::size_t depth) {
    std::uint64_t head = 0;
    if (depth < key.size()) std::memcpy(&head, key.data() + depth, std::min(headBytes, key.size() - depth));
    return std::endian::native == std::endian::little ? __builtin_bswap64(head) : head;
}

class Sorter {
public:
    explicit Sorter(const std::vector<std::string>& keys) : keys_(keys) {}

    /// Sorts keys that are equal in their first `depth` bytes.
    void sort(std::span<Entry> entries, std::size_t depth) const {
        while (true) {
            if (entries.size() <= fewEntries) return sortByRests(entries, depth);
            bool allEnd = true;
            for (auto& entry : entries) {
                const std::string& key = keys_[entry.index];
                entry.head = headAt(key, depth);
                allEnd = allEnd && key.size() <= depth + headBytes;
            }
            const auto first = entries.front().head;
            const bool allEqual =
                std::ranges::all_of(entries, [=](auto head) { return head == first; }, &Entry::head);
            if (allEqual && allEnd) return sortByRests(entries, depth);
            depth += headBytes;
            if (!allEqual) break; // a loop for what is equal: recursion as deep as keys are long has no bound
        }
        std::ranges::sort(entries);
        for (std::size_t start = 0, end = 0; start < entries.size(); start = end) {
            while (end < entries.size() && entries[end].head == entries[start].head) ++end;
            if (end - start > 1) sort(entries.subspan(start, end - start), depth);
        }
    }

private:
    /// Keys that are equal in their first `depth` bytes, where one that has ended counts as going on in
    /// zeros.
    void sortByRests(std::span<Entry> entries, std::size_t depth) const {
        std::ranges::sort(entries, [&](const Entry& a, const Entry& b) {
            const std::string_view first = keys_[a.index], second = keys_[b.index];
            const auto order =
                first.substr(std::min(depth, first.size())) <=> second.substr(std::min(depth, second.size()));
            if (order != 0) return order < 0;
            if (first.size() != second.size()) return first.size() < second.size();
            return a.index < b.index;
        });
    }

    const std::vector<std::string>& keys_;
};

} // namespace

std::vector<std::size_t> sortedPermutation(const std::vector<std::string>& keys) {
    std::vector<Entry> entries(keys.size());
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].index = i;
    Sorter(keys).sort(entries, 0);
    std::vector<std::size_t> permutation(entries.size());
    std::ranges::transform(entries, permutation.begin(), &Entry::index);
    return permutation;
}

} // namespace lumisort::text
