#include "app/desktop/SingleInstance.h"

#include "app/commandline/DocumentLock.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <stdexcept>
#include <thread>

namespace lumisort::app {

namespace {

constexpr std::chrono::milliseconds answerTime{1000};
constexpr std::chrono::milliseconds retryTime{50};
constexpr auto raised = "raised\n";
constexpr qint64 longestToken = 4096; ///< bytes; desktops give less than 200

/// Named after the lock file and not after its path: to one document may lead several paths, and a socket's
/// may have no more than 107 bytes.
QString socketOf(const std::string& lockFile) {
    struct stat lock{};
    if (stat(lockFile.c_str(), &lock) != 0) return {};
    return QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
        .filePath(QStringLiteral("lumisort-%1-%2").arg(lock.st_dev, 0, 16).arg(lock.st_ino, 0, 16));
}

bool askToRaise(const QString& socketPath, const QString& activationToken) {
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(int{answerTime.count()})) return false;
    socket.write(activationToken.toUtf8() + '\n');
    while (!socket.canReadLine())
        if (!socket.waitForReadyRead(int{answerTime.count()})) return false;
    return socket.readLine() == raised;
}

} // namespace

std::unique_ptr<SingleInstance> SingleInstance::claim(const files::FileUrl& document,
                                                      const QString& activationToken,
                                                      std::chrono::milliseconds wait) {
    const auto end = std::chrono::steady_clock::now() + wait;
    const auto lockFile = lockFileOf(document);
    while (true) {
        auto lock = files::FileLock::tryLock(lockFile);
        const auto socket = socketOf(lockFile);
        if (lock) return std::unique_ptr<SingleInstance>(new SingleInstance(*std::move(lock), socket));
        if (askToRaise(socket, activationToken)) return nullptr;
        if (std::chrono::steady_clock::now() >= end) throw std::runtime_error(lockedMessage(document));
        std::this_thread::sleep_for(retryTime);
    }
}

SingleInstance::SingleInstance(files::FileLock lock, const QString& socket) : lock_(std::move(lock)) {
    // Whoever holds the lock may take away what a killed program left.
    QLocalServer::removeServer(socket);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::answer);
    // Without it a second start says that the library is open, which is true.
    server_.listen(socket);
}

void SingleInstance::answer() {
    auto* caller = server_.nextPendingConnection();
    connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
    connect(caller, &QLocalSocket::readyRead, this, [this, caller] {
        if (!caller->canReadLine()) {
            if (caller->bytesAvailable() > longestToken) caller->abort();
            return;
        }
        Q_EMIT raiseWanted(QString::fromUtf8(caller->readLine(longestToken).trimmed()));
        caller->write(raised);
        caller->disconnectFromServer();
    });
}

} // namespace lumisort::app
