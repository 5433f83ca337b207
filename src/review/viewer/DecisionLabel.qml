import QtQuick
import Lumisort.Ui

/// What was decided about a photo, as a word with its icon.
Row {
    id: label
    property string decision: "Unmarked"
    property color keep: Theme.keep
    property color skip: Theme.skip
    property color unmarked: Theme.secondary
    readonly property bool decided: decision !== "Unmarked"
    readonly property color tone: !decided ? unmarked : decision === "Import" ? keep : skip
    spacing: Theme.xs

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        visible: label.decided
        size: 14
        name: label.decision === "Import" ? "checkmark" : "flag"
        color: label.tone
    }
    StyledText {
        anchors.verticalCenter: parent.verticalCenter
        text: label.decision
        font.pixelSize: Theme.captionSize
        font.weight: label.decided ? Font.DemiBold : Font.Normal
        color: label.tone
    }
}
