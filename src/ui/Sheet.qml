import QtQuick
import QtQuick.Templates as T

/// A modal sheet over the window, a dialog named by its title. `dismissable` says whether Escape closes it.
T.Dialog {
    id: sheet
    property bool dismissable: true

    parent: T.Overlay.overlay
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    modal: true
    focus: true
    padding: Theme.xl
    closePolicy: dismissable ? T.Popup.CloseOnEscape : T.Popup.NoAutoClose

    readonly property FocusReturn focusReturn: FocusReturn { target: sheet }

    background: Rectangle {
        radius: Theme.tileRadius
        color: Theme.window
        border.color: Theme.hairline
    }
    T.Overlay.modal: Rectangle { color: Theme.scrim }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.motion; easing.type: Easing.OutQuad }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.motion; easing.type: Easing.OutQuad }
    }
}
