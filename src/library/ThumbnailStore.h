#pragma once

#include "platform/cache/CostedCache.h"
#include "platform/files/FileUrl.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/SerialExecutor.h"
#include "platform/time/Clock.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

namespace lumisort::library {

/// A decoded preview, shared by all who show it; none where there is no preview.
using Thumbnail = std::shared_ptr<const images::Bitmap>;

/// Makes previews of photos, one at a time on a thread of its own, and keeps those used last in memory.
/// Nothing is written to disk. All functions may be called from any thread and return at once.
///
/// Whoever does not need a preview any more stops the request; it is then skipped, or its decoding ends. What
/// is left is served burst by burst, the latest burst first, and within one in the order of asking. Requests
/// less than burstGapSeconds apart are one burst: a screen that fills from its top, slowly on a slow machine,
/// or is scrolled, where the rows in sight were asked for before those on the way. When another view opens,
/// it does not wait for what the one before asked for and still wants.
class ThumbnailStore {
public:
    /// Longest side of a preview, in pixels.
    static constexpr int maxSide = 900;
    /// Of the previews that are kept: 120 MiB.
    static constexpr std::size_t budgetBytes = 125'829'120;
    static constexpr double burstGapSeconds = 0.5;

    using Decoder = std::function<images::Bitmap(const files::FileUrl&, int maxSide, const std::stop_token&)>;
    using Ready = std::function<void(Thumbnail)>;

    explicit ThumbnailStore(Decoder decoder = decodeFine, time::Clock clock = time::Clock::system(),
                            std::size_t budget = budgetBytes);
    /// Ends what is under way; every request is answered before it returns.
    ~ThumbnailStore();

    /// Calls `ready` once, on the store's thread: with the preview, or with none where the photo cannot be
    /// read or `stop` was requested. `ready` must not throw.
    void image(const files::FileUrl& url, Ready ready, std::stop_token stop);

    /// Forgets all previews. A request made after this is decoded anew.
    void removeAll();
    /// The same for the preview of one photo.
    void remove(const files::FileUrl& url);

private:
    struct Request {
        files::FileUrl url;
        Ready ready;
        std::stop_token stop;
    };

    static images::Bitmap decodeFine(const files::FileUrl& url, int side, const std::stop_token& stop);
    void serveNext();
    void dropRemoved();
    Request takeNext();
    Thumbnail make(const files::FileUrl& url, const std::stop_token& stop);

    Decoder decoder_;
    time::Clock clock_;
    std::stop_source ended_;
    std::atomic<bool> stale_ = false; ///< removeAll was called and the cache is not empty yet
    /// Costs are in bytes. The executor's thread alone.
    cache::CostedCache<files::FileUrl, Thumbnail> cache_;

    std::mutex mutex_;                          // guards the next three
    std::vector<files::FileUrl> removed_{};     ///< still in the cache
    std::vector<std::deque<Request>> bursts_{}; ///< none of them empty, the latest last
    double lastRequest_ = 0;                    ///< seconds of uptime

    tasks::SerialExecutor executor_; // last: it uses all of the above
};

} // namespace lumisort::library
