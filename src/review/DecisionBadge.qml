import QtQuick
import Lumisort.Marks
import Lumisort.Ui

/// A photo's decision on a backdrop that is legible over any picture.
Rectangle {
    property alias decision: label.decision
    property alias brief: label.brief

    width: label.implicitWidth + 2 * Theme.s
    height: 22
    radius: 11
    color: Theme.photoBackdrop

    DecisionLabel {
        id: label
        anchors.centerIn: parent
        overPhoto: true
    }
}
