#pragma once

#include <QtQml/qqml.h>

#include <QAction>
#include <QString>
#include <QStringList>

namespace lumisort::ui {

struct ForeignAction {
    Q_GADGET
    QML_FOREIGN(QAction)
    QML_ANONYMOUS
};

/// An action of a window with the reason why it is disabled. Buttons, menus and keys all use the same object.
/// Belongs to the main thread.
class Command : public QAction {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("commands come with the state of a window")
    Q_PROPERTY(QString iconName READ iconName CONSTANT)
    Q_PROPERTY(QString hint READ hint CONSTANT)
    Q_PROPERTY(QString reason READ reason NOTIFY reasonChanged)

public:
    /// `keys` in QKeySequence's portable form, such as "Ctrl+K"; each of them triggers the command.
    Command(const QString& text, const QString& iconName, const QStringList& keys, QObject* parent);

    /// The name of an icon in ui/icons, "" for none.
    QString iconName() const { return iconName_; }
    /// The first of the keys as the desktop writes them, "" without keys.
    QString hint() const { return shortcut().toString(QKeySequence::NativeText); }
    /// Why the command is disabled, "" while it is enabled.
    QString reason() const { return reason_; }
    /// Disables the command with a reason, enables it with "".
    void setReason(const QString& reason);
    /// Whether this key press is one of the command's keys. Symbols match whether Shift is needed to type
    /// them or not.
    bool hasKey(Qt::Key key, Qt::KeyboardModifiers modifiers) const;

Q_SIGNALS:
    void reasonChanged();

private:
    QString iconName_, reason_;
};

} // namespace lumisort::ui
