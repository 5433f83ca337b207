import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The keys of a window's commands.
Item {
    id: shortcuts
    required property WindowCommands commands

    Instantiator {
        model: shortcuts.commands.all
        Shortcut {
            required property Command modelData
            sequence: modelData.shortcut
            enabled: shortcuts.enabled && modelData.enabled && modelData.shortcut !== ""
            onActivated: modelData.trigger()
        }
    }
}
