#include "model/FolderImport.h"

#include <QPointer>
#include <algorithm>
#include <iterator>
#include <utility>

namespace lumisort::model {

using files::FileUrl;

namespace {

struct Sorted {
    std::vector<FileUrl> folders, others;
};

Sorted sorted(files::FileSystem& system, const std::vector<FileUrl>& urls) {
    Sorted result;
    for (const auto& url : urls) {
        bool isFolder = false;
        try {
            isFolder = system.status(url.path(), files::Links::follow).kind == files::FileKind::directory;
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): then it is none that can be added
        }
        if (isFolder)
            result.folders.push_back(url.child({})); // with the slash at its end that folder choosers give
        else
            result.others.push_back(url);
    }
    return result;
}

} // namespace

FolderImport::FolderImport(Library& library, ExclusiveTask& task, Reports& reports, const TaskRunner& runner,
                           const ModelDependencies& deps)
    : library_(library), task_(task), reports_(reports), runner_(runner), system_(deps.system),
      scanFolder_(deps.scan) {
    // Queued: the task that ends may still have signals to emit.
    connect(&task, &ExclusiveTask::busyChanged, this, &FolderImport::startNext, Qt::QueuedConnection);
}

FolderImport::~FolderImport() {
    stop_.request_stop();
}

QFuture<ImportSummary> FolderImport::importFolder(const FileUrl& folder) {
    auto hold = task_.begin();
    return hold ? futureOf(scan(folder, *std::move(hold))) : QFuture<ImportSummary>();
}

QCoro::Task<ImportSummary> FolderImport::scan(FileUrl folder, ExclusiveTask::Hold hold) {
    stop_ = std::stop_source();
    const auto stop = stop_.get_token();
    setRunning(true);
    reports_.add(FolderScanStarted{folder});
    const auto progress = [post = runner_.mainThread(), self = QPointer(this), stop](std::size_t found) {
        post([self, stop, found] {
            if (self && !stop.stop_requested()) self->reports_.add(FolderScanProgress{found});
        });
    };
    auto job = [scan = scanFolder_, folder, progress, stop] { return scan(folder, progress, stop); };
    auto outcome = co_await runner_.run(std::move(job));

    const auto found = outcome ? *std::move(outcome) : library::FolderScan();
    const ImportSummary summary{.scanned = found.photos.size(),
                                .unreadable = static_cast<std::size_t>(found.skipped),
                                .stopped = stop.stop_requested()};
    library_.add(folder, found.photos);
    setRunning(false);
    {
        const ExclusiveTask::Hold ended(std::move(hold));
    }
    reports_.add(summary);
    Q_EMIT imported();
    co_return summary;
}

void FolderImport::importFolders(std::vector<FileUrl> urls) {
    assertMainThread();
    enqueue(std::move(urls));
}

QCoro::Task<> FolderImport::enqueue(std::vector<FileUrl> urls) {
    auto job = [&system = system_, urls = std::move(urls)] { return sorted(system, urls); };
    auto found = co_await runner_.run(std::move(job));
    if (!found) co_return;
    std::ranges::move(found->folders, std::back_inserter(waiting_));
    if (!found->others.empty()) Q_EMIT refused(found->others);
    startNext();
}

void FolderImport::startNext() {
    if (task_.busy() || waiting_.empty()) return;
    const auto folder = std::move(waiting_.front());
    waiting_.pop_front();
    importFolder(folder);
}

void FolderImport::stop() {
    waiting_.clear();
    if (!running_) return;
    stop_.request_stop();
    reports_.add(Stopping{});
}

void FolderImport::setRunning(bool running) {
    running_ = running;
    Q_EMIT runningChanged();
}

} // namespace lumisort::model
