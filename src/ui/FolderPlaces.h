#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <QUrl>

namespace lumisort::ui {

/// What is asked of the disk and of the desktop where a folder is to be chosen. Main thread.
class FolderPlaces : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// Finds out whether the desktop has a chooser of its own, without waiting; answered once by
    /// `desktopAnswered`.
    Q_INVOKABLE void askDesktop();

    /// Where to begin looking: the user's pictures, or home.
    Q_INVOKABLE static QString start();
    /// The clean absolute path of what was typed; "~" is home, "" stays "".
    Q_INVOKABLE static QString absolute(const QString& typed);
    Q_INVOKABLE static bool isFolder(const QString& path);
    Q_INVOKABLE static QString parentOf(const QString& path);
    Q_INVOKABLE static QString pathOf(const QUrl& folder);
    Q_INVOKABLE static QUrl urlOf(const QString& path);
    /// Makes a folder in one that is there. Says why it could not, or "".
    Q_INVOKABLE static QString make(const QString& path);

Q_SIGNALS:
    void desktopAnswered(bool hasChooser);
};

} // namespace lumisort::ui
