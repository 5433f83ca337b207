import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// Says why the library cannot be opened, in place of its window.
Window {
    id: window
    required property string message
    readonly property int padding: 30

    width: 480
    height: column.implicitHeight + 2 * padding
    minimumWidth: 360
    title: "Lumisort"
    color: Theme.window

    Shortcut {
        sequences: ["Esc", StandardKey.Close, StandardKey.Quit]
        onActivated: window.close()
    }

    ColumnLayout {
        id: column
        x: window.padding
        y: window.padding
        width: parent.width - 2 * window.padding
        spacing: Theme.m

        Headline {
            text: "The library cannot be opened"
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
        Body {
            text: window.message
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            Layout.fillWidth: true
        }
        PushButton {
            text: "Quit"
            focus: true
            onClicked: window.close()
            Layout.alignment: Qt.AlignRight
        }
    }
}
