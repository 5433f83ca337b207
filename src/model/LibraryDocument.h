#pragma once

#include "library/LibraryFile.h"
#include "model/ExclusiveTask.h"
#include "model/Library.h"
#include "model/ModelDependencies.h"
#include "model/Reports.h"
#include "platform/tasks/SerialExecutor.h"

#include <expected>
#include <memory>
#include <string>

namespace lumisort::model {

/// What a read of the document found.
enum class Loaded { library, nothing };
/// The error is a message that names the file.
using LoadOutcome = std::expected<Loaded, std::string>;
using SaveOutcome = std::expected<library::KeptDocuments, std::string>;

/// The document that holds the library: read once at the start, written after changes. Writes run one at a
/// time on a thread of their own. Main thread; everything given outlives it.
class LibraryDocument : public MainThreadObject {
    Q_OBJECT

public:
    LibraryDocument(Library& library, ExclusiveTask& task, Reports& reports, const TaskRunner& runner,
                    const ModelDependencies& deps, files::FileUrl url);

    /// Reads the document into the library, as the exclusive task. Nothing else may run.
    QFuture<LoadOutcome> load();
    /// Writes the library after a short while; further changes within it cost no further write.
    void save();
    /// Writes the library at once if it was changed since the start.
    QFuture<SaveOutcome> flush();

private:
    QCoro::Task<LoadOutcome> read(ExclusiveTask::Hold hold);
    QCoro::Task<SaveOutcome> write();

    Library& library_;
    ExclusiveTask& task_;
    Reports& reports_;
    const TaskRunner& runner_;
    decltype(ModelDependencies::after) after_;
    std::shared_ptr<library::LibraryFile> file_; ///< shared with jobs, which may outlive the model
    bool dirty_ = false;                         ///< a save was asked for since the start
    std::uint64_t saveRequest_ = 0;              ///< the latest request; an older one is not written
    tasks::SerialExecutor writer_;
};

} // namespace lumisort::model
