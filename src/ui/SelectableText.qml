import QtQuick

/// Several lines to read and copy, by mouse or keyboard; scrolls where they do not fit.
Flickable {
    id: area
    property alias text: edit.text
    property alias color: edit.color
    property alias font: edit.font
    property string label

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
        selectByKeyboard: true
        activeFocusOnTab: true
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        color: Theme.secondary
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: Theme.captionSize
        Accessible.role: Accessible.EditableText
        Accessible.readOnly: true
        Accessible.name: area.label
        Accessible.description: text
        // Tab goes on: there is nothing to type.
        KeyNavigation.priority: KeyNavigation.BeforeItem
        Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        onCursorRectangleChanged: {
            if (!activeFocus) return;
            const top = cursorRectangle.y, bottom = top + cursorRectangle.height;
            area.contentY = Math.max(bottom - area.height, Math.min(top, area.contentY));
        }
    }
    Rectangle {
        parent: area
        anchors.fill: parent
        radius: Theme.xs
        color: "transparent"
        border.width: 2
        border.color: Theme.accentLine
        visible: edit.activeFocus
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
