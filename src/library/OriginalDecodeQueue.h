#pragma once

#include "library/FingerprintStamp.h"
#include "library/OriginalLoader.h"
#include "platform/tasks/SerialExecutor.h"

#include <atomic>
#include <cstddef>
#include <expected>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
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
    struct Job {
        files::FileUrl url;
        Priority priority;
        Deliver deliver;
        std::stop_source cancelled;        ///< by the ticket's end
        std::stop_source attempt{};        ///< of the decode under way, which what is on show may cut short
        std::atomic<bool> adopted = false; ///< others wait for the same: it goes on without its ticket
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
    /// `original` is empty once the budget has let it go; `alive` still finds it where a view shows it.
    struct Entry {
        files::FileUrl url;
        FingerprintStamp stamp;
        Original original;
        std::weak_ptr<const images::PicturePyramid> alive;
    };
    using Entries = std::list<Entry>; ///< the most recently used first

    void post();
    void runNext();
    Answer answer(Job& job);
    Original find(const files::FileUrl& url, const FingerprintStamp* stamp);
    Original drop(const files::FileUrl& url);
    Original release(Entry& entry);
    void keep(const files::FileUrl& url, const FingerprintStamp& stamp, const Original& original);

    files::FileSystem& system_;
    const Load load_;
    const std::size_t budgetBytes_;
    mutable std::mutex mutex_; // guards all below
    std::vector<std::shared_ptr<Job>> waiting_;
    std::shared_ptr<Job> running_;
    Entries entries_;
    std::unordered_map<files::FileUrl, Entries::iterator> places_;
    std::size_t keptBytes_ = 0;
    bool closing_ = false;
    tasks::SerialExecutor executor_; // last: its thread uses all of the above
};

} // namespace lumisort::library
