import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// What to do with the selected photos.
RowLayout {
    id: bar
    required property LibraryWindow window
    property bool narrow: false
    readonly property WindowCommands commands: window.commands
    spacing: Theme.s

    Body {
        text: bar.window.selectedCount.toLocaleString(Qt.locale("en"), "f", 0) + " selected"
        color: Theme.secondary
    }
    PushButton {
        command: bar.commands.keep
        tint: Theme.keep
        hint: bar.narrow ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.commands.skip
        tint: Theme.skip
        hint: bar.narrow ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.commands.clearMark
        hint: bar.narrow ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.commands.clearChoice
        iconName: ""
        hint: ""
        help: command.hint
        flat: true
    }
}
