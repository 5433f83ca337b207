#pragma once

#include "model/MainThreadObject.h"

#include <QPointer>
#include <optional>
#include <utility>

namespace lumisort::model {

/// The exclusive operation of a library: of reading the document, adding a folder, preparing to organize and
/// scanning for matches at most one runs at a time, and `busy` says that one does.
class ExclusiveTask : public MainThreadObject {
    Q_OBJECT
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    /// Owned by the operation that runs; its end is the end of the operation.
    class Hold {
    public:
        Hold(Hold&& other) noexcept : task_(std::exchange(other.task_, nullptr)) {}
        Hold& operator=(Hold&&) = delete;
        ~Hold() {
            if (task_) task_->setBusy(false);
        }

    private:
        friend class ExclusiveTask;
        explicit Hold(ExclusiveTask* task) : task_(task) {}

        QPointer<ExclusiveTask> task_; ///< none once moved from, or when the library is gone
    };

    bool busy() const { return busy_; }
    /// None while another operation runs.
    [[nodiscard]] std::optional<Hold> begin();

Q_SIGNALS:
    void busyChanged();

private:
    void setBusy(bool busy);

    bool busy_ = false;
};

} // namespace lumisort::model
