#include "model/Protection.h"

namespace lumisort::model {

Protection::Protection(Reports& reports, const TaskRunner& runner, tasks::SerialExecutor& executor,
                       files::FileSystem& system, const files::FileUrl& libraryDocument)
    : reports_(reports), stored_(runner, executor, system, library::protectedFoldersOf(libraryDocument)) {}

QFuture<StoreOutcome> Protection::load() {
    return futureOf(follow(stored_.read()));
}

QFuture<StoreOutcome> Protection::set(const files::FileUrl& folder, bool isProtected) {
    assertMainThread();
    return futureOf(follow(stored_.change([folder, isProtected](library::ProtectedFolders& folders) {
        if (isProtected)
            folders.add(folder);
        else
            folders.remove(folder);
    })));
}

QCoro::Task<StoreOutcome> Protection::follow(QCoro::Task<StoreOutcome> task) {
    auto outcome = co_await task;
    if (outcome)
        Q_EMIT changed();
    else
        reports_.add(DocumentProblem{outcome.error()});
    co_return outcome;
}

} // namespace lumisort::model
