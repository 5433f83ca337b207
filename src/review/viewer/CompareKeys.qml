import QtQuick
import QtQuick.Window
import Lumisort.Viewer

/// Holds the compare sheet's parts and handles its keys. Space shows the next photo in place of the active one for
/// as long as it is held.
FocusScope {
    id: keys
    required property CompareState state
    // Where the window loses the keyboard, the release of Space goes to another program.
    readonly property bool listens: Window.active
    onListensChanged: if (!listens) state.flipped = false

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Space && event.modifiers === Qt.NoModifier)
            state.flipped = event.accepted = true;
        else
            event.accepted = state.actions.press(event.key, event.modifiers, event.isAutoRepeat);
    }
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Space && !event.isAutoRepeat) {
            state.flipped = false;
            event.accepted = true;
        }
    }
}
