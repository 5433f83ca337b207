import QtQuick
import QtQuick.Templates as T

/// One line of text to edit.
T.TextField {
    id: field
    property string label: placeholderText

    implicitWidth: 220
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.m
    rightPadding: Theme.m
    verticalAlignment: Text.AlignVCenter
    font.pixelSize: Theme.bodySize
    color: enabled ? Theme.text : Theme.disabled
    placeholderTextColor: Theme.secondary
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    selectByMouse: true
    Accessible.name: label
    // A key that is held must not accept twice, nor what the button before has opened.
    Keys.onReturnPressed: event => event.accepted = event.isAutoRepeat
    Keys.onEnterPressed: event => event.accepted = event.isAutoRepeat

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.raised
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.accentLine : Theme.edge
    }

    Text {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        textFormat: Text.PlainText
        font: field.font
        color: field.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
}
