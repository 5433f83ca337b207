import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// What to do with the selected photos.
RowLayout {
    id: bar
    required property LibraryWindow window
    property bool tight: false
    readonly property WindowCommands commands: window.commands
    spacing: Theme.s

    Body {
        text: bar.window.selectedCount.toLocaleString(Qt.locale("en"), "f", 0) + " selected"
        color: Theme.secondary
    }
    PushButton {
        command: bar.commands.keep
        tint: Theme.keep
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.commands.skip
        tint: Theme.skip
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.commands.clearMark
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    IconButton {
        visible: bar.tight
        command: bar.commands.clearChoice
        flat: true
    }
    PushButton {
        visible: !bar.tight
        command: bar.commands.clearChoice
        iconName: ""
        hint: ""
        help: command.hint
        flat: true
    }
}
