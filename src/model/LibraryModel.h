#pragma once

#include "model/Drives.h"
#include "model/FolderImport.h"
#include "model/LibraryDocument.h"
#include "model/Marking.h"
#include "model/MatchSearch.h"
#include "model/Protection.h"
#include "model/Selection.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::model {

/// The running library of the process: makes the objects that hold it, and performs the operations that
/// concern several of them. What a window shows of it is not its business. Main thread.
class LibraryModel : public MainThreadObject {
    Q_OBJECT

public:
    /// With contents the library is there at once; without them the document is read, as the exclusive task.
    explicit LibraryModel(const files::FileUrl& document,
                          std::optional<library::LibraryContents> contents = {}, ModelDependencies deps = {});

    Library& library() { return library_; }
    const Library& library() const { return library_; }
    ExclusiveTask& task() { return task_; }
    const ExclusiveTask& task() const { return task_; }
    Reports& reports() { return reports_; }
    Availability& availability() { return availability_; }
    Drives& drives() { return drives_; }
    FolderImport& folderImport() { return folderImport_; }
    Marking& marking() { return marking_; }
    Protection& protection() { return protection_; }
    const Protection& protection() const { return protection_; }
    Selection& selection() { return selection_; }
    const Selection& selection() const { return selection_; }
    MatchSearch& matches() { return matches_; }
    const MatchSearch& matches() const { return matches_; }

    /// What became of the read at the start; cancelled where the contents were given.
    QFuture<LoadOutcome> loading() const { return loading_; }
    /// Takes a folder out of the library, and out of the protected ones; files stay as they are. Nothing
    /// happens while a task runs.
    void removeFolder(const files::FileUrl& folder);
    /// Gives a photo's file another name, with everything that is known of it. The error is a message to be
    /// shown; nothing has changed then.
    std::expected<library::Photo, std::string> rename(const library::Photo& photo, std::string_view stem);
    /// The photos to organize, once pending marks and a look that begins after the call have been applied.
    /// Runs as the exclusive task; cancelled while another one runs.
    QFuture<std::vector<library::Photo>> prepareToOrganize();
    /// Writes the library if it was changed since the start, after the read at the start and pending marks.
    QFuture<SaveOutcome> flush();

private:
    QCoro::Task<LoadOutcome> load();
    QCoro::Task<std::vector<library::Photo>> toOrganize(ExclusiveTask::Hold hold);
    QCoro::Task<SaveOutcome> flushed();

    const ModelDependencies deps_;
    TaskRunner runner_;
    Reports reports_;
    ExclusiveTask task_;
    Library library_;
    tasks::SerialExecutor besideWriter_; ///< of the documents beside the library document
    LibraryDocument document_;
    Availability availability_;
    Drives drives_;
    FolderImport folderImport_;
    Marking marking_;
    Protection protection_;
    Selection selection_;
    MatchSearch matches_;
    QFuture<LoadOutcome> loading_;
};

} // namespace lumisort::model
