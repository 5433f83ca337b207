import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Marks
import Lumisort.Review
import Lumisort.Ui

/// The content of the library's window: sidebar, header, photos, footer.
FocusScope {
    id: view
    required property LibraryWindow window
    property real tileSize: 210
    signal settingsWanted

    Keys.onPressed: event => event.accepted = window.actions.press(event.key, event.modifiers, event.isAutoRepeat)

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            window: view.window
            Layout.fillHeight: true
            Layout.preferredWidth: 232
        }
        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            color: Theme.hairline
        }
        ColumnLayout {
            spacing: 0
            LazyLoader {
                wanted: view.window.deviceName !== ""
                sourceComponent: DeviceBanner { window: view.window }
                successor: content
                Layout.fillWidth: true
            }
            Header {
                id: header
                window: view.window
                Layout.fillWidth: true
                successor: content
                onPhotosWanted: content.forceActiveFocus()
            }
            Content {
                id: content
                focus: true
                window: view.window
                tileSize: view.tileSize
                Layout.fillWidth: true
                Layout.fillHeight: true
            }
            LazyLoader {
                wanted: view.window.marks.warning !== "" || view.window.notice !== ""
                sourceComponent: NoticeBar { window: view.window }
                successor: content
                Layout.fillWidth: true
            }
            Footer {
                window: view.window
                tileSize: view.tileSize
                successor: content
                onTileSizeWanted: size => view.tileSize = size
                Layout.fillWidth: true
            }
        }
    }

    LazyLoader {
        wanted: view.window.folderToRemove !== ""
        sourceComponent: RemoveFolderSheet {
            window: view.window
        }
    }

    LazyLoader {
        wanted: view.window.folderToProtect !== ""
        sourceComponent: ProtectFolderSheet {
            window: view.window
        }
    }
    ProtectionSheet {
        question: view.window.marks.question
        otherwise: true
    }

    FolderChooser {
        id: chooser
        title: "Add Folder"
        acceptLabel: "Add Folder"
        onChosen: folder => view.window.addFolders([folder])
    }
    Connections {
        target: view.window
        function onFolderWanted(startingAt) { chooser.choose(startingAt); }
    }
    Connections {
        target: view.window.actions.of(ActionSet.Search)
        function onTriggered() { header.focusSearch(); }
    }
    Connections {
        target: view.window.actions.of(ActionSet.Settings)
        function onTriggered() { view.settingsWanted(); }
    }
    DropArea {
        id: drop
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: event => {
            if (event.hasUrls) {
                event.accept(Qt.CopyAction);
                view.window.addFolders(event.urls);
            }
        }
        Rectangle {
            anchors.fill: parent
            visible: drop.containsDrag
            color: Theme.scrim
            border.width: 3
            border.color: Theme.accentLine
            Headline {
                anchors.centerIn: parent
                text: "Drop folders to add their photos"
                color: Theme.photoText
            }
        }
    }
}
