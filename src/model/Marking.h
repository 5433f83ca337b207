#pragma once

#include "model/Library.h"
#include "model/Reports.h"
#include "model/TaskRunner.h"
#include "platform/files/FileSystem.h"

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace lumisort::model {

/// A photo and the mark that was stored for it, stale or not; none where there was none.
struct StoredMark {
    files::FileUrl photo;
    std::optional<library::ReviewMark> mark;
};
using StoredMarks = std::vector<StoredMark>;

/// Sets, clears and restores marks, strictly in the order of the requests: each mark needs a fresh stamp of
/// the file, which is read on another thread. Requests follow photos that are renamed meanwhile. Main thread;
/// everything given outlives it.
class Marking : public MainThreadObject {
    Q_OBJECT

public:
    Marking(Library& library, Reports& reports, const TaskRunner& runner, files::FileSystem& system);

    /// Marks photos; without a decision clears their marks. A photo that is not in the library or cannot be
    /// read stays as it is. When the request is carried out, the marks that it replaces are stored in
    /// `replaced`. Without photos nothing happens.
    QFuture<MarkSummary> mark(const std::vector<library::Photo>& photos,
                              std::optional<library::ReviewDecision> decision,
                              std::shared_ptr<StoredMarks> replaced = {});
    /// Restores marks as they were, whatever has become of the files. What `marks` holds is read when the
    /// request is carried out.
    QFuture<MarkSummary> restore(std::shared_ptr<StoredMarks> marks);
    /// Finished when every request so far has been carried out.
    QFuture<void> pending() const { return pending_; }

private:
    struct Request {
        std::vector<files::FileUrl> photos;
        std::optional<library::ReviewDecision> decision;
        std::shared_ptr<StoredMarks> replaced;
        std::shared_ptr<StoredMarks> restored; ///< none: the request marks
        QPromise<MarkSummary> done;
    };
    using Stamps = std::vector<std::optional<library::FileStamp>>;

    QFuture<MarkSummary> add(Request request);
    QCoro::Task<> serve();
    MarkSummary apply(const Request& request, const Stamps& stamps);
    MarkSummary applyRestored(const StoredMarks& marks);
    void follow(const files::FileUrl& before, const library::Photo& after);

    Library& library_;
    Reports& reports_;
    const TaskRunner& runner_;
    files::FileSystem& system_;
    std::deque<Request> requests_; ///< the first is under way
    bool serving_ = false;
    bool renamed_ = false; ///< a photo of the request under way, since its stamps are being read
    QFuture<void> pending_;
};

} // namespace lumisort::model
