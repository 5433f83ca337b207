import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The keys of a window's commands.
Item {
    id: shortcuts
    required property WindowCommands commands

    Repeater {
        model: shortcuts.commands.all
        Item {
            id: entry
            required property Command modelData
            Shortcut {
                sequence: entry.modelData.shortcut
                enabled: shortcuts.enabled && entry.modelData.enabled && entry.modelData.shortcut !== ""
                onActivated: entry.modelData.trigger()
            }
        }
    }
}
