#pragma once

#include "library/DocumentBeside.h"
#include "model/TaskRunner.h"
#include "platform/tasks/SerialExecutor.h"

#include <memory>
#include <string>

namespace lumisort::model {

/// The error is a message that names the file.
using StoreOutcome = std::expected<void, std::string>;

/// A value of the main thread that lives in a document beside the library document. A change is written
/// first, on the executor, and shows in `value` once it is stored: what fails has changed nothing. Changes
/// are carried out in the order of the calls. Main thread; runner and executor outlive it.
template <class Contents>
class StoredValue {
public:
    StoredValue(const TaskRunner& runner, tasks::SerialExecutor& executor, files::FileSystem& system,
                files::FileUrl document)
        : runner_(runner), executor_(executor),
          document_(std::make_shared<library::DocumentBeside<Contents>>(system, std::move(document))) {}

    const Contents& value() const { return value_; }

    QCoro::Task<StoreOutcome> read() {
        auto job = [document = document_] { return document->read(); };
        auto found = co_await runner_.run(std::move(job));
        co_return install(std::move(found));
    }
    QCoro::Task<StoreOutcome> change(std::function<void(Contents&)> change) {
        auto job = [document = document_, change = std::move(change)] { return document->change(change); };
        const Background onExecutor = [&executor = executor_](std::function<void()> work) {
            executor.post(std::move(work));
        };
        auto stored = co_await runner_.run(onExecutor, std::move(job));
        co_return install(std::move(stored));
    }

private:
    StoreOutcome install(Outcome<Contents> outcome) {
        if (!outcome) return std::unexpected(describe(outcome.error()));
        value_ = *std::move(outcome);
        return {};
    }

    const TaskRunner& runner_;
    tasks::SerialExecutor& executor_;
    std::shared_ptr<library::DocumentBeside<Contents>> document_; ///< shared with jobs
    Contents value_;
};

} // namespace lumisort::model
