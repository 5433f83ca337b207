#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumisort::ui {

/// One thing that the user can ask for, declared once and used by buttons, menus and keys. Belongs to the
/// main thread.
class Command : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("commands come with the state of a window")
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString iconName READ iconName CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)
    Q_PROPERTY(QString hint READ hint CONSTANT)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString reason READ reason NOTIFY enabledChanged)

public:
    /// `shortcut` in QKeySequence's portable form, such as "Ctrl+K", or "" for none.
    Command(QString text, QString iconName, const QString& shortcut, QObject* parent);

    QString text() const { return text_; }
    QString iconName() const { return iconName_; }
    QString shortcut() const { return shortcut_; }
    /// The keys as the desktop writes them.
    QString hint() const;
    bool isEnabled() const { return reason_.isEmpty(); }
    /// Why it cannot be asked for now; "" when it can.
    QString reason() const { return reason_; }
    void setReason(const QString& reason);

    /// Does nothing while it is not enabled.
    Q_INVOKABLE void trigger();

Q_SIGNALS:
    void enabledChanged();
    void triggered();

private:
    QString text_, iconName_, shortcut_, reason_;
};

} // namespace lumisort::ui
