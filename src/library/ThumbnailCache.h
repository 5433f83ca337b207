#pragma once

#include "platform/files/FileUrl.h"
#include "platform/images/Bitmap.h"

#include <cstddef>
#include <list>
#include <memory>
#include <unordered_map>

namespace lumisort::library {

/// A decoded preview, shared by all who show it; none where there is no preview.
using Thumbnail = std::shared_ptr<const images::Bitmap>;

/// Previews within a budget of bytes; what was used longest ago makes room. An entry costs its bytes per row
/// times its height; one that exceeds the budget alone is not kept. Used by one thread.
class ThumbnailCache {
public:
    explicit ThumbnailCache(std::size_t budgetBytes) : budget_(budgetBytes) {}

    /// The preview, which counts as used now, or none.
    Thumbnail find(const files::FileUrl& url);
    /// `thumbnail` is not none.
    void insert(const files::FileUrl& url, Thumbnail thumbnail);
    void clear();
    std::size_t bytes() const { return used_; }

private:
    struct Entry {
        files::FileUrl url;
        Thumbnail thumbnail;
    };
    using Entries = std::list<Entry>; ///< used last in front

    void erase(Entries::iterator entry);

    std::size_t budget_;
    std::size_t used_ = 0;
    Entries entries_;
    std::unordered_map<files::FileUrl, Entries::iterator> places_;
};

} // namespace lumisort::library
