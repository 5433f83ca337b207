import QtQuick

/// Several lines to read and copy; scrolls where they do not fit.
Flickable {
    id: area
    property alias text: edit.text
    property alias color: edit.color
    property alias font: edit.font

    implicitHeight: edit.implicitHeight
    contentHeight: edit.implicitHeight
    contentWidth: width
    clip: true
    boundsBehavior: Flickable.StopAtBounds

    TextEdit {
        id: edit
        width: area.width - Theme.m
        readOnly: true
        selectByMouse: true
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        color: Theme.secondary
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: Theme.captionSize
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    ScrollHandle {
        parent: area
        anchors.right: parent.right
        height: parent.height
        size: area.visibleArea.heightRatio
        position: area.visibleArea.yPosition
        onPositionChanged: if (pressed) area.contentY = position * area.contentHeight
    }
}
