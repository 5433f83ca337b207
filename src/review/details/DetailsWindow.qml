import QtQuick
import Lumisort.Details
import Lumisort.Ui

/// The floating panel around DetailsPanel. Closing hides it.
Window {
    id: window
    required property DetailsState details

    title: "Details"
    flags: Qt.Tool
    width: 320
    height: 650
    minimumWidth: 280
    minimumHeight: 400
    color: Theme.window

    DetailsPanel {
        anchors.fill: parent
        details: window.details
        focus: true
    }
    RenameSheet {
        state: window.details.renaming
        transientParent: window
    }
    Shortcut {
        sequences: [StandardKey.Cancel, StandardKey.Close]
        onActivated: window.close()
    }
}
