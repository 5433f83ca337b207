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
    QString activationToken;              ///< permission to come forward, on desktops that ask for one
    std::vector<files::FileUrl> folders;  ///< to be added to the library
    std::vector<files::FileUrl> photos{}; ///< to be opened in the film editor

    friend bool operator==(const StartRequest&, const StartRequest&) = default;
};

/// The one window of a library document: holds the document's lock and receives the requests of later starts.
/// Main thread, after the application object was made.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// How long a program that holds the lock and does not answer is waited for: it may be just starting.
    static constexpr std::chrono::milliseconds patience{3000};
    /// The same for a window that answers that it is quitting: it may be writing to a slow drive.
    static constexpr std::chrono::milliseconds patienceWithQuitting{30'000};

    /// Null when a window of this document is running, which has then received the request. Throws
    /// std::runtime_error, naming the document, when another program holds it.
    static std::unique_ptr<SingleInstance> claim(const files::FileUrl& document, const StartRequest& request,
                                                 std::chrono::milliseconds wait = patience);

    /// To be called when quitting begins: a later start is then told to wait for the end of this program and
    /// opens the library itself, so that no request goes to a window that is about to go.
    void refuseRequests() { refusing_ = true; }

Q_SIGNALS:
    void startedAgain(const lumisort::app::StartRequest& request);

private:
    SingleInstance(files::FileLock lock, const QString& socket);
    void answer();

    files::FileLock lock_;
    QLocalServer server_;
    bool refusing_ = false;
};

} // namespace lumisort::app
