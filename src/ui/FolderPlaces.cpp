#include "ui/FolderPlaces.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>

namespace lumisort::ui {

namespace {

constexpr int answerTimeoutMs = 1000;

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

QString FolderPlaces::start() {
    const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return isFolder(pictures) ? pictures : QDir::homePath();
}

QString FolderPlaces::absolute(const QString& typed) {
    auto path = typed.trimmed();
    if (path.isEmpty()) return {};
    if (path == QLatin1Char('~') || path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir::home().absoluteFilePath(path));
}

bool FolderPlaces::isFolder(const QString& path) {
    return !path.isEmpty() && QFileInfo(path).isDir();
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

QString FolderPlaces::make(const QString& path) {
    std::error_code error;
    std::filesystem::create_directory(path.toStdString(), error);
    return error ? QStringLiteral("The folder could not be made: %1.")
                       .arg(QString::fromStdString(error.message()))
                 : QString();
}

} // namespace lumisort::ui
