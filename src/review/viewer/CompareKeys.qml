import QtQuick
import Lumisort.Viewer

/// What holds the compare sheet's parts and hears its keys.
FocusScope {
    id: keys
    property CompareState state
    signal focusWanted

    function marks(event) {
        return event.modifiers & Qt.ControlModifier && [Qt.Key_K, Qt.Key_D, Qt.Key_U].includes(event.key);
    }
    function takesBack(event) {
        return event.modifiers & Qt.ControlModifier && event.key === Qt.Key_Z;
    }
    function steps(event) {
        return event.modifiers & Qt.AltModifier && [Qt.Key_Left, Qt.Key_Right].includes(event.key);
    }

    // The window behind has the same keys for its own photos.
    Keys.onShortcutOverride: event => event.accepted = marks(event) || takesBack(event) || steps(event)
    Keys.onPressed: event => {
        event.accepted = true;
        if (marks(event))
            state.markActive(event.key === Qt.Key_K ? "Import" : event.key === Qt.Key_D ? "Skip" : "Unmarked");
        else if (takesBack(event) && event.modifiers & Qt.ShiftModifier)
            state.redo();
        else if (takesBack(event))
            state.undo();
        else if (steps(event))
            state.movePair(event.key === Qt.Key_Right ? 1 : -1);
        else if (event.key === Qt.Key_Space && event.modifiers === Qt.NoModifier)
            state.flipped = true;
        else if (event.key === Qt.Key_Left || event.key === Qt.Key_Right) {
            state.moveActive(event.key === Qt.Key_Right ? 1 : -1);
            focusWanted();
        } else
            event.accepted = false;
    }
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Space && !event.isAutoRepeat) {
            state.flipped = false;
            event.accepted = true;
        }
    }
}
