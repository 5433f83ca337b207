#pragma once

#include "model/Library.h"
#include "model/Reports.h"
#include "model/TaskRunner.h"
#include "platform/files/FileSystem.h"

#include <stop_token>
#include <vector>

namespace lumisort::model {

/// Keeps the library's knowledge of its files current: looks on another thread which folders and photos can
/// be reached and applies what is different. At most one look runs at a time. Main thread; everything given
/// outlives it.
class Availability : public MainThreadObject {
    Q_OBJECT

public:
    Availability(Library& library, Reports& reports, const TaskRunner& runner, files::FileSystem& system);
    ~Availability() override;

    /// Asks for a look. Finished when the first look that begins after the call has been applied; requests
    /// that arrive during a look share the next one. A look at a library that changed meanwhile is repeated.
    QFuture<void> refresh();
    /// The answer to the latest request.
    QFuture<void> refreshing() const { return latest_; }

private:
    QCoro::Task<> look();

    Library& library_;
    Reports& reports_;
    const TaskRunner& runner_;
    files::FileSystem& system_;
    std::vector<QPromise<void>> waiting_; ///< for the next look
    QFuture<void> latest_;
    bool requested_ = false; ///< since the last look began
    bool looking_ = false;
    std::stop_source ended_;
};

} // namespace lumisort::model
