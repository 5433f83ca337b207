import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// Sections and folders of the library.
Rectangle {
    id: sidebar
    required property LibraryWindow window

    color: Theme.surface
    Accessible.role: Accessible.Grouping
    Accessible.name: "Library"

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.m
        spacing: Theme.xs

        RowLayout {
            spacing: Theme.m
            Layout.leftMargin: Theme.xs
            Layout.topMargin: Theme.s
            Layout.bottomMargin: Theme.m
            Image {
                source: "image://icon/lumisort"
                sourceSize: Qt.size(72, 72)
                Layout.preferredWidth: 36
                Layout.preferredHeight: 36
                Accessible.ignored: true
            }
            Column {
                Layout.fillWidth: true
                Headline { text: "Lumisort" }
                Caption { text: "Preview " + Qt.application.version }
            }
            IconButton {
                command: sidebar.window.actions.of(ActionSet.Settings)
                flat: true
            }
        }

        SidebarRow {
            text: "All Photos"
            iconName: "view-grid"
            count: sidebar.window.library.availableCount
            current: sidebar.window.state.section === WindowState.Library
            onClicked: sidebar.window.showSection(WindowState.Library)
        }
        SidebarRow {
            text: "Unavailable"
            iconName: "drive-removable-media"
            count: sidebar.window.library.unavailableCount
            current: sidebar.window.state.section === WindowState.Offline
            onClicked: sidebar.window.showSection(WindowState.Offline)
        }
        SidebarRow {
            text: "Similar Photos"
            iconName: "edit-duplicate"
            count: sidebar.window.matches.groupCount
            current: sidebar.window.state.section === WindowState.Similar
            onClicked: sidebar.window.showSection(WindowState.Similar)
        }
        SidebarRow {
            text: "Import"
            iconName: "checkmark"
            count: sidebar.window.library.keptCount
            current: sidebar.window.state.section === WindowState.Keep
            onClicked: sidebar.window.showSection(WindowState.Keep)
        }
        SidebarRow {
            text: "Skip"
            iconName: "flag"
            count: sidebar.window.library.skipCount
            current: sidebar.window.state.section === WindowState.Cleanup
            onClicked: sidebar.window.showSection(WindowState.Cleanup)
        }

        Caption {
            text: "Folders"
            font.weight: Font.DemiBold
            visible: folders.count > 0
            Layout.topMargin: Theme.l
            Layout.leftMargin: Theme.s
        }
        ListView {
            id: folders
            model: sidebar.window.folders
            clip: true
            spacing: Theme.xs
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            Layout.fillWidth: true
            Layout.fillHeight: true
            ScrollHandle {
                anchors.right: parent.right
                height: parent.height
                size: folders.visibleArea.heightRatio
                position: folders.visibleArea.yPosition
                onPositionChanged: if (pressed) folders.contentY = position * folders.contentHeight
            }
            delegate: SidebarRow {
                id: row
                required property string url
                required property string name
                required property string path
                required property string folderState
                required property string protector
                required current
                width: ListView.view.width
                text: Theme.line(name)
                help: Theme.line(path) + (locked ? "\nProtected: skipping one of its photos asks first" : "")
                iconName: "folder"
                locked: protector !== ""
                note: folderState
                menuLabel: "Folder actions for " + name
                onClicked: sidebar.window.showFolder(url)
                onMenuWanted: place => {
                    folderMenu.url = row.url;
                    folderMenu.path = row.path;
                    folderMenu.protector = row.protector;
                    folderMenu.active = true;
                    folderMenu.item.popup(place.item, place.x, place.y);
                }
            }
        }

        PushButton {
            command: sidebar.window.actions.of(ActionSet.AddFolder)
            hint: ""
            help: command.hint
            Layout.fillWidth: true
        }
    }

    Loader {
        id: folderMenu // not `menu`, which an item of one has itself
        property string url
        property string path
        property string protector
        active: false
        sourceComponent: ContextMenu {
            ContextMenuItem {
                text: folderMenu.protector !== "" ? "End Protection" : "Protect…"
                iconName: "object-locked"
                enabled: folderMenu.protector === "" || folderMenu.protector === folderMenu.path
                reason: "Protected through " + Theme.line(folderMenu.protector)
                onTriggered: folderMenu.protector !== "" ? sidebar.window.endProtection(folderMenu.url)
                                                         : sidebar.window.askToProtect(folderMenu.url)
            }
            ContextMenuItem {
                text: "Remove from Library…"
                iconName: "list-remove"
                enabled: !sidebar.window.task.busy
                reason: "Please wait for the current task to finish."
                onTriggered: sidebar.window.askToRemove(folderMenu.url)
            }
        }
    }
}
