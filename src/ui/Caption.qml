import QtQuick

StyledText {
    font.pixelSize: Theme.captionSize
    color: Theme.secondary
}
