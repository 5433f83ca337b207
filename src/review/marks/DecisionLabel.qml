import QtQuick
import Lumisort.Marks
import Lumisort.Ui

/// The decision about a photo, as an icon and a word.
Row {
    id: label
    property int decision: Decision.None
    /// Lies over a photo, whose backdrop is dark in both themes.
    property bool overPhoto: false
    /// The icon alone.
    property bool brief: false
    readonly property bool decided: decision !== Decision.None
    readonly property bool kept: decision === Decision.Keep
    readonly property color tone: {
        if (!decided)
            return Theme.secondary;
        if (overPhoto)
            return kept ? Theme.photoKeep : Theme.photoSkip;
        return kept ? Theme.keep : Theme.skip;
    }
    spacing: Theme.xs

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        visible: label.decided
        size: 14
        name: label.kept ? "checkmark" : "flag"
        color: label.tone
    }
    StyledText {
        anchors.verticalCenter: parent.verticalCenter
        visible: !label.brief
        text: label.kept ? "Import" : label.decided ? "Skip" : "Unmarked"
        font.pixelSize: Theme.captionSize
        font.weight: label.decided ? Font.DemiBold : Font.Normal
        color: label.tone
    }
}
