import QtQuick
import Lumisort.Ui
import Lumisort.Viewer

/// The compare sheet: originals side by side, zoomed and panned together. Opens and closes with its state.
Sheet {
    id: sheet
    required property CompareState state

    title: "Compare Originals"
    width: Math.min(parent.width - 2 * Theme.l, Math.max(980, Math.round(parent.width * 0.78)))
    onOpened: panes.focusActive()
    onAboutToHide: state.close()

    Connections {
        target: sheet.state
        function onOpenedChanged() { sheet.state.opened ? sheet.open() : sheet.close(); }
    }

    contentItem: CompareKeys {
        id: content
        state: sheet.state
        focus: true
        readonly property real paneHeight: Math.max(180, Math.min(sheet.parent.height - 2 * Theme.l - 2 * sheet.padding - chrome,
                                                                  Math.max(390, Math.round(sheet.parent.height * 0.8) - chrome)))
        readonly property real chrome: header.height + captions.height + footer.height + 3 * Theme.l

        implicitHeight: chrome + paneHeight

        CompareHeader {
            id: header
            state: sheet.state
            width: parent.width
            onDone: sheet.close()
        }
        ComparePanes {
            id: panes
            state: sheet.state
            holds: sheet.visible
            anchors.top: header.bottom
            anchors.topMargin: Theme.l
            width: parent.width
            height: content.paneHeight
        }
        CompareCaptions {
            id: captions
            state: sheet.state
            columnWidth: panes.columnWidth
            spacing: panes.spacing
            scrolled: panes.contentX
            anchors.top: panes.bottom
            anchors.topMargin: Theme.l
            width: parent.width
        }
        Caption {
            id: footer
            anchors.bottom: parent.bottom
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: (sheet.state.photos.length > 2 ? "Drag to pan all photos" : "Drag to pan both photos")
                  + " · Ctrl+K Import · Ctrl+D Skip · Ctrl+U Clear · Space Flip · Shift+Arrows Pan"
                  + (sheet.state.pairCount > 1 ? " · Alt+Left/Right Pair" : "")
        }
    }
}
