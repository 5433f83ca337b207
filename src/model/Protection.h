#pragma once

#include "library/Photo.h"
#include "library/ProtectedFolders.h"
#include "model/MainThreadObject.h"
#include "model/Reports.h"
#include "model/StoredValue.h"

namespace lumisort::model {

/// The protected folders of the library. Main thread; everything given outlives it.
class Protection : public MainThreadObject {
    Q_OBJECT

public:
    Protection(Reports& reports, const TaskRunner& runner, tasks::SerialExecutor& executor,
               files::FileSystem& system, const files::FileUrl& libraryDocument);

    /// A value that a worker may have a copy of.
    const library::ProtectedFolders& folders() const { return stored_.value(); }
    bool isProtected(const library::Photo& photo) const { return folders().isProtected(photo.url); }

    /// Reads the document; one that cannot be read is reported.
    QFuture<StoreOutcome> load();
    /// Protects a folder or ends that, once it is stored; a failure is reported and changes nothing.
    QFuture<StoreOutcome> set(const files::FileUrl& folder, bool isProtected);

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<StoreOutcome> follow(QCoro::Task<StoreOutcome> task);

    Reports& reports_;
    StoredValue<library::ProtectedFolders> stored_;
};

} // namespace lumisort::model
