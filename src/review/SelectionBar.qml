import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The count of selected photos and their actions.
RowLayout {
    id: bar
    required property LibraryWindow window
    property bool tight: false
    readonly property ActionSet actions: window.actions
    spacing: Theme.s

    Body {
        text: bar.window.selection.count.toLocaleString(Qt.locale("en"), "f", 0) + " selected"
        color: Theme.secondary
    }
    PushButton {
        command: bar.actions.of(ActionSet.Keep)
        tint: Theme.keep
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.actions.of(ActionSet.Skip)
        tint: Theme.skip
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    PushButton {
        command: bar.actions.of(ActionSet.ClearMark)
        hint: bar.tight ? "" : command.hint
        help: command.hint
    }
    IconButton {
        visible: bar.tight
        command: bar.actions.of(ActionSet.ClearChoice)
        flat: true
    }
    PushButton {
        visible: !bar.tight
        command: bar.actions.of(ActionSet.ClearChoice)
        iconName: ""
        hint: ""
        help: command.hint
        flat: true
    }
}
