#pragma once

#include "library/FileStamp.h"
#include "library/OriginalLoader.h"
#include "platform/cache/CostedCache.h"
#include "platform/tasks/SerialExecutor.h"

#include <atomic>
#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace lumisort::library {

/// Decodes originals one at a time, whoever asks, so that no more than one decode's memory is in use; what is
/// on show before what may be next. Keeps what it decoded within a budget, the least recently used going
/// first, for as long as the file's stamp stays the same.
class OriginalDecodeQueue {
public:
    using Original = std::shared_ptr<const images::PicturePyramid>;
    /// The original, or why there is none, fit to be shown.
    using Answer = std::expected<Original, std::string>;
    using Deliver = std::function<void(Answer)>;
    using Load = std::function<images::PicturePyramid(files::FileSystem&, const files::FileUrl&,
                                                      const std::stop_token&)>;
    enum class Priority { prefetch, shown };

    /// Six originals of 24 megapixels with their levels, 128 MiB each: a photo with its neighbours in full
    /// screen, or the last pairs of a group. One of 80 megapixels takes 427 MiB.
    static constexpr std::size_t defaultBudgetBytes = std::size_t{768} << 20;

private:
    /// A decode under way, which ends early when no request wants it any more, or when something on show
    /// comes between.
    struct Attempt {
        std::stop_source stop{};
        std::atomic<int> wanting = 0; ///< requests for the same photo that have not been cancelled
    };
    struct Leave {
        std::shared_ptr<Attempt> attempt;
        void operator()() const noexcept {
            if (--attempt->wanting == 0) attempt->stop.request_stop();
        }
    };
    struct Job {
        files::FileUrl url;
        Priority priority;
        Deliver deliver;
        std::stop_source cancelled; ///< by the ticket's end
        std::shared_ptr<Attempt> attempt{};
        std::optional<std::stop_callback<Leave>> leave{};

        /// Makes the job one of those that want the decode `underWay`. The mutex is held.
        void join(std::shared_ptr<Attempt> underWay);
    };

public:
    /// A request that lives as long as this does.
    class Ticket {
    public:
        Ticket() = default;
        Ticket(Ticket&& other) noexcept = default;
        Ticket& operator=(Ticket&& other) noexcept {
            cancel();
            job_ = std::move(other.job_);
            return *this;
        }
        ~Ticket() { cancel(); }

    private:
        friend class OriginalDecodeQueue;
        explicit Ticket(std::shared_ptr<Job> job) : job_(std::move(job)) {}
        void cancel() {
            if (const auto job = std::exchange(job_, nullptr)) job->cancelled.request_stop();
        }

        std::shared_ptr<Job> job_;
    };

    explicit OriginalDecodeQueue(files::FileSystem& system = files::FileSystem::real(),
                                 Load load = OriginalLoader::load,
                                 std::size_t budgetBytes = defaultBudgetBytes);
    /// Stops the decode under way and waits for its end; what waits is dropped without an answer.
    ~OriginalDecodeQueue();

    /// The one of the process.
    static OriginalDecodeQueue& shared();

    /// The original as it was last decoded, at once and without a look at the file, or nullptr: something to
    /// show until a request has been answered. Any thread.
    Original recall(const files::FileUrl& url);

    /// Has the original decoded, unless it is kept and its file has not changed. `deliver` is called once, on
    /// the queue's thread; not at all when the ticket ends before, and it may still be running when the
    /// ticket ends. Any thread.
    [[nodiscard]] Ticket request(const files::FileUrl& url, Priority priority, Deliver deliver);
    /// Has the original decoded when nothing on show waits.
    [[nodiscard]] Ticket prefetch(const files::FileUrl& url) {
        return request(url, Priority::prefetch, [](const Answer&) {});
    }

    /// Bytes of the originals that are kept.
    std::size_t keptBytes() const;

private:
    /// An original that the budget keeps or, when it no longer does, a view still shows.
    struct Alive {
        FileStamp stamp;
        std::weak_ptr<const images::PicturePyramid> original;
    };

    bool isShown(const files::FileUrl& url) const;
    void post();
    void runNext();
    Answer answer(Job& job);
    Original find(const files::FileUrl& url, const FileStamp* stamp);
    Original drop(const files::FileUrl& url);
    void keep(const files::FileUrl& url, const FileStamp& stamp, const Original& original);

    files::FileSystem& system_;
    const Load load_;
    mutable std::mutex mutex_; // guards all below
    std::vector<std::shared_ptr<Job>> waiting_;
    std::shared_ptr<Job> running_;
    cache::CostedCache<files::FileUrl, Original> kept_; ///< the cost is in bytes
    std::unordered_map<files::FileUrl, Alive> alive_;
    bool closing_ = false;
    tasks::SerialExecutor executor_; // last: its thread uses all of the above
};

} // namespace lumisort::library
