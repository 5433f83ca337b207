#include "app/desktop/SingleInstance.h"

#include "app/commandline/DocumentLock.h"

#include <sys/stat.h>

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <algorithm>
#include <stdexcept>
#include <thread>

namespace lumisort::app {

namespace {

constexpr std::chrono::milliseconds answerTime{1000};
constexpr std::chrono::milliseconds retryTime{50};
constexpr auto raised = "raised\n";
constexpr auto quitting = "quitting\n";
/// Of a request, in bytes: three times what a command line may hold, as every byte of a path can become %XX.
constexpr qint64 longestRequest = 8 << 20;
/// Both sides may have been built with different versions of Qt.
constexpr auto streamVersion = QDataStream::Qt_6_0;

/// Named after the lock file and not after its path: to one document may lead several paths, and a socket's
/// may have no more than 107 bytes.
QString socketOf(const std::string& lockFile) {
    struct stat lock{};
    if (stat(lockFile.c_str(), &lock) != 0) return {};
    return QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
        .filePath(QStringLiteral("lumisort-%1-%2").arg(lock.st_dev, 0, 16).arg(lock.st_ino, 0, 16));
}

enum class Answer { none, raised, quitting };

QByteArrayList texts(const std::vector<files::FileUrl>& urls) {
    QByteArrayList texts;
    for (const auto& url : urls) texts += QByteArray::fromStdString(url.string());
    return texts;
}

/// What is no file URL is left out.
std::vector<files::FileUrl> urls(const QByteArrayList& texts) {
    std::vector<files::FileUrl> urls;
    for (const auto& text : texts)
        if (auto url = files::FileUrl::fromString(text.toStdString())) urls.push_back(*std::move(url));
    return urls;
}

Answer handOver(const QString& socketPath, const StartRequest& request) {
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(int{answerTime.count()})) return Answer::none;
    const auto folders = texts(request.folders), photos = texts(request.photos);
    QDataStream stream(&socket);
    stream.setVersion(streamVersion);
    stream << request.activationToken << folders << photos;
    while (!socket.canReadLine())
        if (!socket.waitForReadyRead(int{answerTime.count()})) return Answer::none;
    const auto answer = socket.readLine();
    return answer == raised ? Answer::raised : answer == quitting ? Answer::quitting : Answer::none;
}

} // namespace

std::unique_ptr<SingleInstance> SingleInstance::claim(const files::FileUrl& document,
                                                      const StartRequest& request,
                                                      std::chrono::milliseconds wait) {
    const auto begin = std::chrono::steady_clock::now();
    const auto lockFile = lockFileOf(document);
    while (true) {
        auto lock = files::FileLock::tryLock(lockFile);
        const auto socket = socketOf(lockFile);
        if (lock) return std::unique_ptr<SingleInstance>(new SingleInstance(*std::move(lock), socket));
        const auto answer = handOver(socket, request);
        if (answer == Answer::raised) return nullptr;
        if (answer == Answer::quitting) wait = std::max(wait, patienceWithQuitting);
        if (std::chrono::steady_clock::now() >= begin + wait)
            throw std::runtime_error(lockedMessage(document));
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
        QDataStream stream(caller);
        stream.setVersion(streamVersion);
        stream.startTransaction();
        StartRequest request;
        QByteArrayList folders, photos;
        stream >> request.activationToken >> folders >> photos;
        if (!stream.commitTransaction()) { // there is more to come
            if (caller->bytesAvailable() > longestRequest) caller->abort();
            return;
        }
        if (refusing_) {
            caller->write(quitting);
            caller->disconnectFromServer();
            return;
        }
        request.folders = urls(folders);
        request.photos = urls(photos);
        Q_EMIT startedAgain(request);
        caller->write(raised);
        caller->disconnectFromServer();
    });
}

} // namespace lumisort::app
