import QtQuick

StyledText {
    font.pixelSize: Theme.headlineSize
    font.weight: Font.DemiBold
}
