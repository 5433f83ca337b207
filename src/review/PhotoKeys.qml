import QtQuick
import Lumisort.Review

/// The keys that move the cursor among photos, select, and seek names.
QtObject {
    id: keys
    required property PhotoCursor cursor
    property int pageRows: 4
    property string typed
    /// The context menu of the photo at the cursor is asked for.
    signal menuWanted
    property Timer forget: Timer {
        interval: 1000
        onTriggered: keys.typed = ""
    }

    function press(event) {
        const extend = (event.modifiers & Qt.ShiftModifier) !== 0;
        const plain = (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)) === 0;
        event.accepted = true;
        if (event.matches(StandardKey.SelectAll)) return cursor.selectAll();
        if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && extend) return menuWanted();
        if (!plain) {
            event.accepted = false;
            return;
        }
        switch (event.key) {
        case Qt.Key_Left: return cursor.move(-1, 0, extend);
        case Qt.Key_Right: return cursor.move(1, 0, extend);
        case Qt.Key_Up: return cursor.move(0, -1, extend);
        case Qt.Key_Down: return cursor.move(0, 1, extend);
        case Qt.Key_PageUp: return cursor.move(0, -pageRows, extend);
        case Qt.Key_PageDown: return cursor.move(0, pageRows, extend);
        case Qt.Key_Home: return cursor.moveToEnd(true, extend);
        case Qt.Key_End: return cursor.moveToEnd(false, extend);
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (!event.isAutoRepeat) cursor.open();
            return;
        }
        if (event.key === Qt.Key_Space && typed === "") return cursor.toggle();
        // A letter begins or goes on with a name.
        if (event.text.length === 1 && event.text >= " " && event.text !== "\u007f") {
            typed += event.text;
            forget.restart();
            return cursor.seek(typed);
        }
        event.accepted = false;
    }
}
