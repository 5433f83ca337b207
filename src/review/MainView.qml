import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// The library's window: sidebar, header, photos, footer.
FocusScope {
    id: view
    required property LibraryWindow window
    readonly property QtObject model: window.model
    /// Something modal is open: keys are not for the photos.
    property bool covered: false
    property real tileSize: 210

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
            OnDemand {
                wanted: view.window.deviceName !== ""
                sourceComponent: DeviceBanner { window: view.window }
                Layout.fillWidth: true
            }
            Header {
                id: header
                window: view.window
                Layout.fillWidth: true
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
            OnDemand {
                wanted: view.window.marks.warning !== "" || view.window.notice !== ""
                sourceComponent: NoticeBar { window: view.window }
                Layout.fillWidth: true
            }
            Footer {
                window: view.window
                tileSize: view.tileSize
                onTileSizeWanted: size => view.tileSize = size
                Layout.fillWidth: true
            }
        }
    }

    OnDemand {
        wanted: view.window.folderToRemove !== ""
        sourceComponent: RemoveFolderSheet {
            window: view.window
        }
    }

    Shortcuts {
        commands: view.window.commands
        enabled: !view.covered && !chooser.opened && view.window.folderToRemove === ""
    }
    FolderChooser {
        id: chooser
        title: "Add Folder"
        onChosen: folder => view.window.addFolders([folder])
    }
    Connections {
        target: view.window
        function onFolderWanted(startingAt) { chooser.choose(startingAt); }
    }
    Connections {
        target: view.window.commands.search
        function onTriggered() { header.focusSearch(); }
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
