import QtQuick
import QtQuick.Templates as T
import Lumisort.Ui

/// A value as text at the right edge; it looks like a label until it is edited.
T.TextField {
    id: field
    property string label
    /// The value as it is; what is typed differs from it until it is taken.
    property string value
    signal typed(string text)

    function revert() {
        field.text = field.value;
    }
    text: value
    onValueChanged: revert() // typing has ended the binding

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
    onEditingFinished: if (text !== value) typed(text)
    Keys.onEscapePressed: revert()

    background: Rectangle {
        radius: Theme.controlRadius
        color: field.activeFocus ? Theme.raised : field.hovered ? Theme.hover : "transparent"
        border.width: field.activeFocus ? 2 : 0
        border.color: Theme.accentLine
    }
}
