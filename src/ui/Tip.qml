import QtQuick
import QtQuick.Templates as T

/// A tooltip for the item around it, made only when it is first shown.
Loader {
    id: tip
    property string text
    property bool shown: false
    property bool wanted: false

    active: wanted
    onShownChanged: if (shown) wanted = true

    sourceComponent: T.ToolTip {
        id: popup
        parent: tip.parent
        text: tip.text
        visible: tip.shown && tip.text !== ""
        delay: 500
        margins: Theme.s
        padding: Theme.s
        leftPadding: Theme.m
        rightPadding: Theme.m
        x: Math.round((parent.width - width) / 2)
        y: parent.height + Theme.xs
        implicitWidth: Math.min(content.implicitWidth + leftPadding + rightPadding, 420)
        implicitHeight: content.implicitHeight + topPadding + bottomPadding
        contentItem: Text {
            id: content
            text: popup.text
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: Theme.captionSize
            color: Theme.text
        }
        background: Rectangle {
            color: Theme.raised
            radius: Theme.controlRadius
            border.color: Theme.hairline
        }
    }
}
