import QtQuick

/// A loader for something that is not shown at the start: made when it is first wanted, hidden while it is not, and
/// kept.
Loader {
    id: loader
    property bool wanted: false
    /// Gets the keyboard when this is hidden while it has it: a hidden item would keep it.
    property Item successor: null
    /// Had the keyboard when it was last wanted.
    property bool held: false

    active: wanted || item
    visible: wanted
    onActiveFocusChanged: if (wanted) held = activeFocus
    onWantedChanged: {
        if (!wanted && held && successor) successor.forceActiveFocus(Qt.OtherFocusReason);
        held = false;
    }
}
