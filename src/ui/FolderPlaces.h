#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <QUrl>

namespace lumisort::ui {

/// The questions of a folder chooser to the disk and to the desktop. Those to the disk are answered by a
/// worker, so that a drive that does not answer holds up no window. Main thread.
class FolderPlaces : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isFolder READ isFolder NOTIFY looked)
    Q_PROPERTY(bool canBeMade READ canBeMade NOTIFY looked)

public:
    using QObject::QObject;

    /// Finds out whether the desktop has a chooser of its own, without waiting; answered once by
    /// `desktopAnswered`.
    Q_INVOKABLE void askDesktop();

    /// The clean absolute path of what was typed; "~" is home, "" stays "". Blanks are part of a name.
    Q_INVOKABLE static QString absolute(const QString& typed);
    Q_INVOKABLE static QString parentOf(const QString& path);
    Q_INVOKABLE static QString pathOf(const QUrl& folder);
    Q_INVOKABLE static QUrl urlOf(const QString& path);

    /// Finds a folder to begin at, the user's pictures or home; answered by `startFound`.
    Q_INVOKABLE void findStart();
    /// Looks at a path. Of several that wait only the last is looked at.
    Q_INVOKABLE void look(const QString& path);
    /// Whether the path of the last look() is a folder; false until that is known.
    bool isFolder() const { return isKnown() && seen_.isFolder; }
    /// Whether it is no folder, but its parent is one.
    bool canBeMade() const { return isKnown() && !seen_.isFolder && seen_.hasParent; }
    /// Makes sure that the path is a folder, making it in its parent where `mayMake`; answered by `taken`.
    Q_INVOKABLE void take(const QString& path, bool mayMake);

Q_SIGNALS:
    void desktopAnswered(bool hasChooser);
    void startFound(const QString& path);
    void looked();
    /// `error` says why the path is no folder, "" where it is one.
    void taken(const QString& path, const QString& error);

private:
    struct Seen {
        QString path;
        bool isFolder = false, hasParent = false;
    };

    bool isKnown() const { return seen_.path == wanted_; }
    void lookNow();

    QString wanted_; ///< path of the last look()
    Seen seen_;
    bool looking_ = false;
};

} // namespace lumisort::ui
