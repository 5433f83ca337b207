#pragma once

#include "platform/files/FileLock.h"
#include "platform/files/FileUrl.h"

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>
#include <optional>

namespace lumisort::app {

/// The one window of a library document: it holds the document's lock, and hears when a second start asks
/// it to come forward. Main thread, after the application object was made.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// How long a program that holds the lock and does not answer is waited for: it may just be starting, or
    /// writing its last changes.
    static constexpr std::chrono::milliseconds patience{3000};

    /// None when a window of this document runs already; it has come forward then, with the permission that
    /// `activationToken` gives on desktops that ask for one. Throws std::runtime_error, naming the document,
    /// when another program holds it.
    static std::unique_ptr<SingleInstance> claim(const files::FileUrl& document,
                                                 const QString& activationToken,
                                                 std::chrono::milliseconds wait = patience);

Q_SIGNALS:
    void raiseWanted(const QString& activationToken);

private:
    SingleInstance(files::FileLock lock, const QString& socket);
    void answer();

    files::FileLock lock_;
    QLocalServer server_;
};

} // namespace lumisort::app
