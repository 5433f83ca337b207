#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>
#include <utility>

namespace lumisort::ui {

/// Shows files outside the program. Takes the texts of file URLs; what is none is passed over. Returns at
/// once in any case. Main thread.
class FileBrowser : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// Hands a URL to the desktop.
    using Opener = std::function<void(const QUrl&)>;

    explicit FileBrowser(QObject* parent = nullptr);
    FileBrowser(Opener open, QObject* parent) : QObject(parent), open_(std::move(open)) {}

    /// Shows the file selected in the desktop's file browser (D-Bus interface org.freedesktop.FileManager1);
    /// where there is none that answers, opens the file's folder.
    Q_INVOKABLE void reveal(const QString& url);
    /// Opens the file with the desktop's program for it.
    Q_INVOKABLE void openExternally(const QString& url);

private:
    Opener open_;
};

} // namespace lumisort::ui
