import QtQuick
import QtQuick.Layouts
import Qt.labs.folderlistmodel
import Lumisort.Ui

/// The folders in a folder, and its files where some are asked for. One click picks, two or Enter go into a folder
/// or take a file; Left goes back up.
ListView {
    id: rows
    /// Path of the folder whose folders are listed.
    property string folder
    /// Name patterns of the files to list; none for folders alone.
    property var files: []
    signal picked(string path)
    signal fileEntered(string file)
    signal entered(string folder)

    function pathAt(index) {
        return places.pathOf(listed.get(index, "fileUrl"));
    }
    function enter(index) {
        listed.get(index, "fileIsDir") ? entered(pathAt(index)) : fileEntered(pathAt(index));
    }
    function pick(index) {
        currentIndex = index;
        picked(pathAt(index));
    }

    clip: true
    activeFocusOnTab: count > 0
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: -1
    Accessible.role: Accessible.List
    Accessible.name: files.length > 0 ? "Folders and files" : "Folders"

    Keys.onDownPressed: if (currentIndex + 1 < count) pick(currentIndex + 1)
    Keys.onUpPressed: if (currentIndex > 0) pick(currentIndex - 1)
    Keys.onReturnPressed: event => { if (currentIndex >= 0 && !event.isAutoRepeat) enter(currentIndex); }
    Keys.onEnterPressed: event => { if (currentIndex >= 0 && !event.isAutoRepeat) enter(currentIndex); }
    Keys.onRightPressed: if (currentIndex >= 0 && listed.get(currentIndex, "fileIsDir")) enter(currentIndex)
    Keys.onLeftPressed: entered(places.parentOf(folder))

    FolderPlaces { id: places }
    model: FolderListModel {
        id: listed
        folder: rows.folder ? places.urlOf(rows.folder) : ""
        showFiles: rows.files.length > 0
        nameFilters: rows.files
        showDotAndDotDot: false
        sortCaseSensitive: false
    }

    delegate: Item {
        id: row
        required property int index
        required property string fileName
        required property bool fileIsDir
        width: rows.width
        height: 28
        Accessible.role: Accessible.ListItem
        Accessible.name: fileName
        Accessible.selectable: true
        Accessible.selected: rows.currentIndex === index
        Accessible.onPressAction: rows.pick(index)

        Rectangle {
            anchors.fill: parent
            radius: Theme.xs
            color: rows.currentIndex === row.index ? Theme.accentFill : hover.hovered ? Theme.hover : "transparent"
        }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: Theme.s
            anchors.rightMargin: Theme.l
            spacing: Theme.s
            Icon { name: row.fileIsDir ? "folder" : "document-open" }
            Body {
                text: Theme.line(row.fileName)
                Layout.fillWidth: true
                Accessible.ignored: true
            }
        }
        HoverHandler { id: hover }
        ExclusiveTap {
            onSingleTapped: {
                rows.forceActiveFocus(Qt.MouseFocusReason);
                rows.pick(row.index);
            }
            onDoubleTapped: rows.enter(row.index)
        }
    }
    Caption {
        anchors.centerIn: parent
        visible: rows.count === 0 && listed.status === FolderListModel.Ready
        text: rows.files.length > 0 ? "Nothing to choose in here" : "No folders in here"
    }
    ScrollHandle {
        parent: rows
        anchors.right: parent.right
        height: parent.height
        size: rows.visibleArea.heightRatio
        position: rows.visibleArea.yPosition
        onPositionChanged: if (pressed) rows.contentY = position * rows.contentHeight
    }
}
