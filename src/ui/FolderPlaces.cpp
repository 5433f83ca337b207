#include "ui/FolderPlaces.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>
#include <QThreadPool>
#include <filesystem>
#include <utility>

namespace lumisort::ui {

namespace {

constexpr int answerTimeoutMs = 1000;

bool isFolderOnDisk(const QString& path) {
    return !path.isEmpty() && QFileInfo(path).isDir();
}

QString problemOfTaking(const QString& path, bool mayMake) {
    if (isFolderOnDisk(path)) return {};
    if (!mayMake || !isFolderOnDisk(FolderPlaces::parentOf(path)))
        return QStringLiteral("There is no such folder.");
    std::error_code error;
    std::filesystem::create_directory(path.toStdString(), error);
    return error ? QStringLiteral("The folder could not be made: %1.")
                       .arg(QString::fromStdString(error.message()))
                 : QString();
}

/// Calls `ask` on a worker and `answer` with its result on the main thread, if `receiver` still exists.
template <class Ask, class Answer>
void onWorker(QObject* receiver, Ask ask, Answer answer) {
    QThreadPool::globalInstance()->start(
        [receiver = QPointer(receiver), ask = std::move(ask), answer = std::move(answer)] {
            auto result = ask();
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [receiver, answer, result = std::move(result)] {
                    if (receiver) answer(result);
                },
                Qt::QueuedConnection);
        });
}

} // namespace

void FolderPlaces::askDesktop() {
    const auto answer = [this](bool hasChooser) {
        QMetaObject::invokeMethod(
            this, [this, hasChooser] { Q_EMIT desktopAnswered(hasChooser); }, Qt::QueuedConnection);
    };
    // Dialogs of a desktop that the user named come without the portal.
    const auto theme = qgetenv("QT_QPA_PLATFORMTHEME");
    if (!theme.isEmpty() && theme != "xdgdesktopportal") return answer(true);
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return answer(false);
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.freedesktop.portal.FileChooser") << QStringLiteral("version");
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(question, answerTimeoutMs), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [answer, call] {
        answer(!call->isError());
        call->deleteLater();
    });
}

QString FolderPlaces::absolute(const QString& typed) {
    if (typed.isEmpty()) return {};
    auto path = typed;
    if (path == QLatin1Char('~') || path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir::home().absoluteFilePath(path));
}

QString FolderPlaces::parentOf(const QString& path) {
    return QFileInfo(path).path();
}

QString FolderPlaces::pathOf(const QUrl& folder) {
    return QDir::cleanPath(folder.toLocalFile());
}

QUrl FolderPlaces::urlOf(const QString& path) {
    return QUrl::fromLocalFile(path);
}

void FolderPlaces::findStart() {
    onWorker(
        this,
        [] {
            const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
            return isFolderOnDisk(pictures) ? pictures : QDir::homePath();
        },
        [this](const QString& path) { Q_EMIT startFound(path); });
}

void FolderPlaces::look(const QString& path) {
    wanted_ = path;
    Q_EMIT looked(); // what was known of another path counts no longer
    if (!looking_) lookNow();
}

void FolderPlaces::lookNow() {
    looking_ = true;
    onWorker(
        this, [path = wanted_] { return Seen{path, isFolderOnDisk(path), isFolderOnDisk(parentOf(path))}; },
        [this](const Seen& seen) {
            looking_ = false;
            seen_ = seen;
            isKnown() ? Q_EMIT looked() : lookNow();
        });
}

void FolderPlaces::take(const QString& path, bool mayMake) {
    onWorker(
        this, [path, mayMake] { return problemOfTaking(path, mayMake); },
        [this, path](const QString& error) { Q_EMIT taken(path, error); });
}

} // namespace lumisort::ui
