#include "review/actions/ActionSet.h"

#include "review/actions/ActionTable.h"

#include <algorithm>
#include <utility>

namespace lumisort::review {

ui::Command& ActionSet::add(Id id, std::function<void()> act, Reason reason) {
    const auto row = std::ranges::find(actionTable(), id, &ActionRow::id);
    Q_ASSERT(row != actionTable().end() && isIn(*row, scope_));
    auto* command = new ui::Command(QString::fromUtf8(row->text), QString::fromUtf8(row->icon),
                                    QString::fromUtf8(row->keys).split(u' ', Qt::SkipEmptyParts),
                                    this); // owned by this
    command->setAutoRepeat(row->repeats);
    if (reason) command->setReason(reason());
    connect(command, &ui::Command::triggered, this, std::move(act));
    entries_.insert_or_assign(id, Entry{command, std::move(reason)});
    return *command;
}

ui::Command* ActionSet::of(Id id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : found->second.command;
}

bool ActionSet::press(int key, int modifiers, bool repeats) {
    for (const auto& [id, entry] : entries_)
        if (entry.command->hasKey(Qt::Key(key), Qt::KeyboardModifiers(modifiers))) {
            if (!repeats || entry.command->autoRepeat()) entry.command->trigger();
            return true;
        }
    return false;
}

void ActionSet::refresh() {
    for (const auto& [id, entry] : entries_)
        if (entry.reason) entry.command->setReason(entry.reason());
}

std::map<ActionSet::Id, ui::Command*> ActionSet::all() const {
    std::map<Id, ui::Command*> commands;
    for (const auto& [id, entry] : entries_) commands.emplace(id, entry.command);
    return commands;
}

} // namespace lumisort::review
