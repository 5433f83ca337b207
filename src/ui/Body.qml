import QtQuick

StyledText {
    font.pixelSize: Theme.bodySize
}
