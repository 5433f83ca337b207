#pragma once

#include "model/ExclusiveTask.h"
#include "model/Library.h"
#include "model/ModelDependencies.h"
#include "model/Reports.h"

#include <deque>
#include <stop_token>
#include <vector>

namespace lumisort::model {

/// Adds folders to the library: scans each on another thread as the exclusive task, one after another. Main
/// thread; everything given outlives it.
class FolderImport : public MainThreadObject {
    Q_OBJECT
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)

public:
    FolderImport(Library& library, ExclusiveTask& task, Reports& reports, const TaskRunner& runner,
                 const ModelDependencies& deps);
    ~FolderImport() override;

    /// Scans a folder and adds the photos that are new. Nothing happens while another task runs; the future
    /// is cancelled then.
    QFuture<ImportSummary> importFolder(const files::FileUrl& folder);
    /// The same for folders that were dropped or named, as soon as no other task runs. `refused` tells which
    /// of them are no folders.
    void importFolders(std::vector<files::FileUrl> urls);
    /// Whether a folder is being scanned.
    bool running() const { return running_; }
    /// Ends the scan: the folder comes into the library with the photos found so far, and folders that wait
    /// for their turn do not.
    void stop();

Q_SIGNALS:
    void runningChanged();
    /// A scan is over and its photos are in the library.
    void imported();
    void refused(const std::vector<lumisort::files::FileUrl>& urls);

private:
    QCoro::Task<ImportSummary> scan(files::FileUrl folder, ExclusiveTask::Hold hold);
    QCoro::Task<> enqueue(std::vector<files::FileUrl> urls);
    void startNext();
    void setRunning(bool running);

    Library& library_;
    ExclusiveTask& task_;
    Reports& reports_;
    const TaskRunner& runner_;
    files::FileSystem& system_;
    decltype(ModelDependencies::scan) scanFolder_;
    std::deque<files::FileUrl> waiting_;
    std::stop_source stop_; ///< of the latest scan
    bool running_ = false;
};

} // namespace lumisort::model
