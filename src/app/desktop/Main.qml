import QtQuick
import Lumisort.FilmEditor
import Lumisort.OrganizeSheet
import Lumisort.Review
import Lumisort.Ui
import Lumisort.Viewer

/// The library's window.
Window {
    id: root

    required property QtObject lifecycle
    required property LibraryWindow library
    required property CompareState compare
    required property OrganizeState archive
    required property FilmBatch filmBatch
    required property string libraryPath

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
    onClosing: close => {
        close.accepted = false;
        root.lifecycle.requestQuit();
    }

    Shortcut {
        sequences: [StandardKey.Quit]
        context: Qt.ApplicationShortcut
        onActivated: root.lifecycle.requestQuit()
    }
    MainView {
        anchors.fill: parent
        window: root.library
        focus: true
        onSettingsWanted: root.showSettings()
    }
    // Not before they are first wanted: they would cost every start.
    Loader {
        active: root.compare.opened || item
        sourceComponent: CompareSheet { state: root.compare }
        onLoaded: item.open()
    }
    Loader {
        active: root.archive.open || item
        sourceComponent: OrganizeSheet { state: root.archive }
    }
    Loader {
        active: root.filmBatch.open || item
        sourceComponent: FilmBatchSheet { batch: root.filmBatch }
    }
    Loader {
        active: root.lifecycle.question !== "" || item
        sourceComponent: QuitSheet { lifecycle: root.lifecycle }
    }
    Loader {
        id: settings
        active: false
        sourceComponent: SettingsWindow { libraryPath: root.libraryPath }
    }
}
