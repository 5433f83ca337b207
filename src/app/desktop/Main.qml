import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The library's window.
Window {
    id: root

    required property QtObject lifecycle
    required property LibraryWindow library

    function showSettings(): Window {
        settings.active = true;
        settings.item.show();
        settings.item.requestActivate();
        return settings.item;
    }

    width: 1250
    height: 820
    minimumWidth: 960
    minimumHeight: 660
    title: "Lumisort"
    color: Theme.window
    onClosing: root.lifecycle.quit()

    Shortcut {
        sequences: [StandardKey.Quit]
        context: Qt.ApplicationShortcut
        onActivated: root.lifecycle.quit()
    }
    Shortcut {
        // StandardKey.Preferences names no key on most desktops.
        sequence: "Ctrl+,"
        context: Qt.ApplicationShortcut
        onActivated: root.showSettings()
    }

    MainView {
        anchors.fill: parent
        window: root.library
    }
    Loader {
        id: settings
        active: false
        sourceComponent: SettingsWindow {}
    }
}
