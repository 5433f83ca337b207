import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// The centre of an empty page: what is missing, and the action that changes it.
Item {
    id: panel
    property string iconName
    property string headline
    property string note
    property string hint
    property Command command: null
    /// The action is secondary: it only cancels.
    property bool quiet: false
    property real progress: -1

    ColumnLayout {
        anchors.centerIn: parent
        spacing: Theme.m
        Icon {
            name: panel.iconName
            size: 48
            color: Theme.disabled
            Layout.alignment: Qt.AlignHCenter
        }
        Headline {
            visible: text !== ""
            text: panel.headline
            Layout.alignment: Qt.AlignHCenter
        }
        Body {
            visible: text !== ""
            text: panel.note
            color: Theme.secondary
            Layout.alignment: Qt.AlignHCenter
        }
        ProgressLine {
            visible: panel.progress >= 0
            label: panel.headline
            value: Math.max(panel.progress, 0)
            Layout.preferredWidth: 220
            Layout.alignment: Qt.AlignHCenter
        }
        PushButton {
            visible: panel.command !== null
            command: panel.command
            hint: ""
            help: command ? command.hint : ""
            prominent: !panel.quiet
            focus: true
            Layout.topMargin: Theme.s
            Layout.alignment: Qt.AlignHCenter
        }
        Caption {
            visible: text !== ""
            text: panel.hint
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
