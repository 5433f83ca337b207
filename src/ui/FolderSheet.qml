import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// Chooses a folder: what its field says, which follows the list below it and can be typed in.
Sheet {
    id: sheet
    property bool mayMake: false
    property url currentFolder
    property url selectedFolder
    readonly property string path: places.absolute(field.text)
    /// Goes up when the disk is to be asked again.
    property int look: 0
    readonly property bool isThere: look >= 0 && places.isFolder(path)
    readonly property bool canBeMade: mayMake && !isThere && path !== "" && places.isFolder(places.parentOf(path))
    signal accepted

    width: 560
    onAboutToShow: {
        error.text = "";
        ++look;
        show(places.pathOf(currentFolder) || list.folder || places.start());
        field.focus = true;
        field.selectAll();
    }

    function show(folder) {
        list.folder = folder;
        list.currentIndex = -1;
        field.text = folder;
    }
    function accept() {
        if (!isThere && !canBeMade)
            return;
        error.text = isThere ? "" : places.make(path);
        if (error.text !== "")
            return;
        selectedFolder = places.urlOf(path);
        show(path);
        currentFolder = selectedFolder;
        close();
        accepted();
    }

    FolderPlaces { id: places }

    contentItem: ColumnLayout {
        spacing: Theme.m
        Keys.onPressed: event => {
            event.accepted = event.modifiers & Qt.AltModifier && event.key === Qt.Key_Up;
            if (event.accepted)
                sheet.show(places.parentOf(list.folder));
        }

        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.s
            IconButton {
                iconName: "go-up"
                label: "Parent Folder"
                hint: "Alt+Up"
                enabled: list.folder !== "/"
                reason: "This is the uppermost folder."
                onClicked: sheet.show(places.parentOf(list.folder))
            }
            Field {
                id: field
                label: "Folder"
                focus: true
                onTextEdited: {
                    error.text = "";
                    list.currentIndex = -1;
                    if (sheet.isThere) list.folder = sheet.path;
                }
                onAccepted: sheet.accept()
                Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)
                Layout.fillWidth: true
            }
        }
        Rectangle {
            radius: Theme.controlRadius
            color: Theme.surface
            border.color: list.activeFocus ? Theme.accentLine : Theme.hairline
            Layout.fillWidth: true
            Layout.preferredHeight: 260
            FolderRows {
                id: list
                anchors.fill: parent
                anchors.margins: Theme.xs
                onPicked: folder => field.text = folder
                onEntered: folder => sheet.show(folder)
            }
        }
        Body {
            id: error
            visible: text !== ""
            color: Theme.error
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.s
            PushButton {
                visible: sheet.mayMake
                text: "New Folder"
                iconName: "folder-new"
                onClicked: {
                    const beginning = (list.folder === "/" ? "" : list.folder) + "/";
                    field.text = beginning + "New Folder";
                    field.forceActiveFocus(Qt.TabFocusReason);
                    field.select(beginning.length, field.length);
                }
            }
            Item { Layout.fillWidth: true }
            PushButton {
                text: "Cancel"
                onClicked: sheet.close()
            }
            PushButton {
                text: sheet.canBeMade ? "Make and Choose" : "Choose"
                prominent: true
                enabled: sheet.isThere || sheet.canBeMade
                reason: "There is no such folder."
                onClicked: sheet.accept()
            }
        }
    }
}
