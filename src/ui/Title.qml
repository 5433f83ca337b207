import QtQuick

StyledText {
    font.pixelSize: Theme.titleSize
    font.weight: Font.Bold
}
