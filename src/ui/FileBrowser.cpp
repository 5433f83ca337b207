#include "ui/FileBrowser.h"

#include "platform/files/FileUrl.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QStringList>
#include <optional>

namespace lumisort::ui {

namespace {

/// A file browser that has to be started first may take a while.
constexpr int answerTimeoutMs = 10'000;

QString encoded(const files::FileUrl& url) {
    return QString::fromStdString(url.string());
}

} // namespace

FileBrowser::FileBrowser(QObject* parent)
    : FileBrowser([](const QUrl& url) { QDesktopServices::openUrl(url); }, parent) {}

void FileBrowser::reveal(const QString& url) {
    const auto file = files::FileUrl::fromString(url.toStdString());
    if (!file) return;
    const auto openFolder = [this, folder = QUrl(encoded(file->parent()))] { open_(folder); };

    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return openFolder();
    auto show = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    show.setArguments(
        {QStringList{encoded(*file)}, QString()}); // the second is a start-up token, "" for none
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(show, answerTimeoutMs), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer, openFolder] {
        if (answer->isError()) openFolder();
        answer->deleteLater();
    });
}

void FileBrowser::openExternally(const QString& url) {
    if (const auto file = files::FileUrl::fromString(url.toStdString())) open_(QUrl(encoded(*file)));
}

} // namespace lumisort::ui
