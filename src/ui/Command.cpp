#include "ui/Command.h"

#include <QKeySequence>

namespace lumisort::ui {

Command::Command(const QString& text, const QString& iconName, const QStringList& keys, QObject* parent)
    : QAction(text, parent), iconName_(iconName) {
    QList<QKeySequence> sequences;
    for (const auto& each : keys) sequences << QKeySequence::fromString(each, QKeySequence::PortableText);
    setShortcuts(sequences);
}

void Command::setReason(const QString& reason) {
    if (reason == reason_) return;
    reason_ = reason;
    setEnabled(reason.isEmpty());
    Q_EMIT reasonChanged();
}

bool Command::hasKey(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    modifiers &= ~Qt::KeypadModifier;
    const auto has = [&](Qt::KeyboardModifiers with) {
        return shortcuts().contains(QKeySequence(QKeyCombination(with, key)));
    };
    const bool isSymbol = key < Qt::Key_AsciiTilde && (key < Qt::Key_A || key > Qt::Key_Z);
    return has(modifiers) || (isSymbol && has(modifiers & ~Qt::KeyboardModifiers(Qt::ShiftModifier)));
}

} // namespace lumisort::ui
