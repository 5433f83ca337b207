import QtQuick

/// A field to search with; Escape empties it.
Field {
    id: field
    leftPadding: 32
    rightPadding: length > 0 ? 32 : Theme.m
    Keys.onEscapePressed: event => {
        if (length > 0)
            clear();
        else
            event.accepted = false;
    }

    Icon {
        x: Theme.s
        anchors.verticalCenter: parent.verticalCenter
        name: "edit-find"
        color: Theme.secondary
    }
    LazyLoader {
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        width: 24
        height: 24
        wanted: field.length > 0
        sourceComponent: IconButton {
            flat: true
            iconName: "edit-clear"
            label: "Clear Search"
            focusPolicy: Qt.NoFocus
            onClicked: field.clear()
        }
    }
}
