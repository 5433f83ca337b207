import QtQuick
import QtQuick.Templates as T
import Lumisort.Ui

/// A value as text at the right edge; it looks like a label until it is edited.
T.TextField {
    id: field
    property string label
    signal typed(string text)

    function revert() {
        field.text = field.shown;
    }
    /// What the last assignment from outside was.
    property string shown: text

    implicitWidth: 76
    implicitHeight: 24
    padding: Theme.xs
    horizontalAlignment: Text.AlignRight
    verticalAlignment: Text.AlignVCenter
    font.pixelSize: Theme.bodySize
    color: enabled ? Theme.secondary : Theme.disabled
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    selectByMouse: true
    Accessible.name: label
    onActiveFocusChanged: activeFocus ? selectAll() : deselect()
    onEditingFinished: if (text !== shown) typed(text)
    Keys.onEscapePressed: revert()

    background: Rectangle {
        radius: Theme.controlRadius
        color: field.activeFocus ? Theme.raised : field.hovered ? Theme.hover : "transparent"
        border.width: field.activeFocus ? 2 : 0
        border.color: Theme.accentLine
    }
}
