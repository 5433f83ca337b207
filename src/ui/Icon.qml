import QtQuick
import QtQuick.Layouts
import QtQuick.Window

/// An icon of the program in one colour.
Image {
    property string name
    property color color: Theme.text
    property int size: 16

    width: size
    height: size
    // Layouts would take the drawing's size, which is larger on a dense screen.
    Layout.preferredWidth: size
    Layout.preferredHeight: size
    sourceSize: Qt.size(size * Screen.devicePixelRatio, size * Screen.devicePixelRatio)
    source: name ? "image://icon/" + name + "/" + color : ""
    Accessible.ignored: true
}
