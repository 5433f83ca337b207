import QtQuick
import QtQuick.Layouts
import Lumisort.Ui
import Lumisort.Viewer

/// Over the compared photos: what this is, which pair, how large, and the way out.
RowLayout {
    id: header
    property CompareState state
    readonly property bool hasPairs: state !== null && state.pairCount > 1
    signal done
    spacing: Theme.s

    Title {
        text: "Compare Originals"
        Layout.fillWidth: true
        Layout.minimumWidth: 80
    }
    RowLayout {
        visible: header.hasPairs
        spacing: Theme.xs
        Layout.rightMargin: Theme.l
        IconButton {
            flat: true
            iconName: "go-previous"
            label: "Previous Pair"
            hint: "Alt+Left"
            enabled: header.hasPairs && header.state.pair > 1
            reason: "This is the first pair of the group."
            focusPolicy: Qt.TabFocus
            onClicked: header.state.movePair(-1)
        }
        Caption {
            text: header.hasPairs ? "Pair " + header.state.pair + " of " + header.state.pairCount : ""
        }
        IconButton {
            flat: true
            iconName: "go-next"
            label: "Next Pair"
            hint: "Alt+Right"
            enabled: header.hasPairs && header.state.pair < header.state.pairCount
            reason: "This is the last pair of the group."
            focusPolicy: Qt.TabFocus
            onClicked: header.state.movePair(1)
        }
    }
    PushButton {
        text: "Fit"
        iconName: "zoom-fit-best"
        flat: header.state !== null && header.state.actualPixels
        Accessible.checkable: true
        Accessible.checked: !flat
        focusPolicy: Qt.TabFocus
        onClicked: header.state.fit()
    }
    PushButton {
        text: "100%"
        iconName: "zoom-original"
        flat: header.state === null || !header.state.actualPixels
        Accessible.checkable: true
        Accessible.checked: !flat
        focusPolicy: Qt.TabFocus
        onClicked: header.state.showActualPixels()
    }
    ValueSlider {
        label: "Linked zoom"
        from: 1
        to: header.state ? header.state.mostZoom : 1
        value: header.state ? header.state.zoom : 1
        focusPolicy: Qt.TabFocus
        onMoved: header.state.zoom = value
        Layout.preferredWidth: 120
        Layout.leftMargin: Theme.s
    }
    Caption {
        text: header.state ? header.state.zoom.toFixed(1) + "×" : ""
        horizontalAlignment: Text.AlignRight
        Layout.preferredWidth: 28
        Layout.rightMargin: Theme.s
    }
    PushButton {
        text: "Done"
        prominent: true
        focusPolicy: Qt.TabFocus
        onClicked: header.done()
    }
}
