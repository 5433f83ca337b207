#pragma once

#include "platform/files/FileLock.h"
#include "platform/files/FileUrl.h"

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>
#include <vector>

namespace lumisort::app {

/// What a start of the program asks of its window.
struct StartRequest {
    QString activationToken;             ///< permission to come forward, on desktops that ask for one
    std::vector<files::FileUrl> folders; ///< to be added to the library

    friend bool operator==(const StartRequest&, const StartRequest&) = default;
};

/// The one window of a library document: it holds the document's lock, and hears what a second start asks of
/// it. Main thread, after the application object was made.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// How long a program that holds the lock and does not answer is waited for: it may just be starting, or
    /// writing its last changes.
    static constexpr std::chrono::milliseconds patience{3000};

    /// None when a window of this document runs already; it has got the request then. Throws
    /// std::runtime_error, naming the document, when another program holds it.
    static std::unique_ptr<SingleInstance> claim(const files::FileUrl& document, const StartRequest& request,
                                                 std::chrono::milliseconds wait = patience);

Q_SIGNALS:
    void startedAgain(const lumisort::app::StartRequest& request);

private:
    SingleInstance(files::FileLock lock, const QString& socket);
    void answer();

    files::FileLock lock_;
    QLocalServer server_;
};

} // namespace lumisort::app
