#include "ui/Command.h"

#include <QKeySequence>

namespace lumisort::ui {

Command::Command(QString text, QString iconName, const QString& shortcut, QObject* parent)
    : QObject(parent), text_(std::move(text)), iconName_(std::move(iconName)), shortcut_(shortcut) {}

QString Command::hint() const {
    return QKeySequence::fromString(shortcut_, QKeySequence::PortableText).toString(QKeySequence::NativeText);
}

void Command::setReason(const QString& reason) {
    if (reason == reason_) return;
    reason_ = reason;
    Q_EMIT enabledChanged();
}

void Command::trigger() {
    if (isEnabled()) Q_EMIT triggered();
}

} // namespace lumisort::ui
