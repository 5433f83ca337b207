import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Ui
import Lumisort.Viewer

/// The compare sheet's header: title, pair, zoom and the button that closes it.
RowLayout {
    id: header
    required property CompareState state
    readonly property ActionSet actions: state.actions
    readonly property PhotoView view: state.view
    signal done
    spacing: Theme.s

    Title {
        text: "Compare Originals"
        Accessible.role: Accessible.Heading
        Layout.fillWidth: true
        Layout.minimumWidth: 80
    }
    RowLayout {
        visible: header.state.pairCount > 1
        spacing: Theme.xs
        Layout.rightMargin: Theme.l
        IconButton {
            flat: true
            command: header.actions.of(ActionSet.PreviousPair)
        }
        Caption { text: "Pair " + header.state.pair + " of " + header.state.pairCount }
        IconButton {
            flat: true
            command: header.actions.of(ActionSet.NextPair)
        }
    }
    PushButton {
        command: header.actions.of(ActionSet.Fit)
        hint: ""
        help: "Fit (0)"
        flat: header.view.actualPixels
        Accessible.checkable: true
        Accessible.checked: !flat
    }
    PushButton {
        command: header.actions.of(ActionSet.ActualPixels)
        hint: ""
        help: "100% (1)"
        flat: !header.view.actualPixels
        Accessible.checkable: true
        Accessible.checked: !flat
    }
    ValueSlider {
        label: "Linked zoom"
        from: 1
        to: header.view.maxZoom
        value: header.view.zoom
        focusPolicy: Qt.TabFocus
        onMoved: header.view.zoom = value
        Layout.preferredWidth: 120
        Layout.leftMargin: Theme.s
    }
    Caption {
        text: header.view.zoom.toFixed(1) + "×"
        horizontalAlignment: Text.AlignRight
        Layout.preferredWidth: 28
        Layout.rightMargin: Theme.s
    }
    PushButton {
        text: "Done"
        prominent: true
        onClicked: header.done()
    }
}
