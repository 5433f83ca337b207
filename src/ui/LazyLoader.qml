import QtQuick

/// A loader for something that is not shown at the start: made when it is first wanted, hidden while it is not, and
/// kept.
Loader {
    id: loader
    property bool wanted: false
    /// Gets the keyboard when this loses it by being hidden.
    property Item successor: null

    active: wanted || item
    visible: wanted
    onActiveFocusChanged: if (!activeFocus && !wanted && successor) successor.forceActiveFocus(Qt.OtherFocusReason)
}
