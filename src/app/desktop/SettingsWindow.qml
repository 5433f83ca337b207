import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// The settings: what this program is, where the library lies, and the theme of this run.
Window {
    id: window

    /// Path of the library document.
    required property string libraryPath

    readonly property int padding: 30

    width: 430
    // No bounds: a window manager would hold it to those of the moment before its text was laid out.
    height: column.height + 2 * padding
    minimumWidth: width
    maximumWidth: width
    flags: Qt.Dialog
    title: "Settings"
    color: Theme.window

    Shortcut {
        sequences: ["Esc", StandardKey.Close]
        onActivated: window.close()
    }

    Column {
        id: column
        x: window.padding
        y: window.padding
        width: parent.width - 2 * window.padding
        spacing: Theme.s

        Title { text: "Lumisort" }
        Body { text: "Preview " + Qt.application.version }
        Body {
            width: parent.width
            wrapMode: Text.Wrap
            color: Theme.secondary
            text: "Library saved locally. Organize copies files; originals stay in place."
        }
        Caption {
            text: "Library"
            topPadding: Theme.s
        }
        SelectableText {
            label: "Library"
            width: parent.width
            text: window.libraryPath
        }
        RowLayout {
            width: parent.width
            Caption {
                text: "Theme"
                Layout.fillWidth: true
            }
            Segmented {
                label: "Theme"
                model: ["Automatic", "Light", "Dark"]
                currentIndex: ColourScheme.choice
                onActivated: index => ColourScheme.choice = index
            }
        }
    }
}
