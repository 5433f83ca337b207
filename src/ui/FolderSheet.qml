import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// The program's own chooser of a folder, or of a file: a field for the path and a list of what is there.
Sheet {
    id: sheet
    property bool mayMake: false
    /// Name patterns ("*.json") of the files of which one is chosen; none where a folder is.
    property var files: []
    readonly property bool namesFile: files.some(pattern => path.endsWith(pattern.slice(1)))
    /// Text of the button that chooses.
    property string acceptLabel: "Choose"
    property url currentFolder
    property url selectedFolder
    readonly property string path: places.absolute(field.text)
    readonly property bool canBeMade: mayMake && places.canBeMade
    onPathChanged: places.look(path)

    width: 560
    onAboutToShow: {
        error.text = "";
        const folder = places.pathOf(currentFolder) || list.folder;
        folder ? show(folder) : places.findStart();
        places.look(path);
        field.focus = true;
        field.selectAll();
    }

    function show(folder: string) {
        list.folder = folder;
        list.currentIndex = -1;
        field.text = folder;
    }
    function choose() {
        error.text = "";
        if (files.length === 0) {
            places.take(path, mayMake);
        } else if (namesFile) {
            selectedFolder = places.urlOf(path);
            accept();
        } else if (places.isFolder) {
            show(path);
        }
    }

    FolderPlaces {
        id: places
        onStartFound: path => {
            if (field.text !== "") return;
            sheet.show(path);
            field.selectAll();
        }
        onLooked: if (isFolder && field.activeFocus && list.currentIndex < 0) list.folder = sheet.path
        onTaken: (path, problem) => {
            error.text = problem;
            if (problem !== "" || !sheet.visible) return;
            sheet.selectedFolder = places.urlOf(path);
            sheet.show(path);
            sheet.currentFolder = sheet.selectedFolder;
            sheet.accept();
        }
    }

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
                label: sheet.files.length > 0 ? "File" : "Folder"
                focus: true
                onTextEdited: {
                    error.text = "";
                    list.currentIndex = -1;
                }
                onAccepted: sheet.choose()
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
                files: sheet.files
                onPicked: path => field.text = path
                onFileEntered: file => {
                    field.text = file;
                    sheet.choose();
                }
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
                text: sheet.canBeMade ? "Make and " + sheet.acceptLabel : sheet.acceptLabel
                prominent: true
                enabled: sheet.files.length > 0 ? sheet.namesFile : places.isFolder || sheet.canBeMade
                reason: sheet.files.length > 0 ? "Choose a file." : "There is no such folder."
                onClicked: sheet.choose()
            }
        }
    }
}
