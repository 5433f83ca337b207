import QtQuick

/// One line that shows its whole text as a tooltip where it does not fit.
Text {
    id: label
    color: Theme.text
    elide: Text.ElideRight
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : 100
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft // a name in Hebrew or Arabic begins where the others do
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    HoverHandler {
        id: hover
        enabled: label.truncated
    }
    Tip {
        text: label.text
        shown: hover.hovered && label.truncated
    }
}
