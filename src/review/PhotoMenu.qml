import QtQuick
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The context menu of one photo, made when it is first opened.
Loader {
    id: loader
    required property LibraryWindow window
    readonly property ActionSet actions: window.photoActions

    function show(parent: Item, x: real, y: real, photo: string) {
        window.photoActions.setTarget(photo);
        active = true;
        item.popup(parent, x, y);
    }

    // Keys apply to the selection, not to the menu's photo.
    component Entry: ContextMenuItem { hint: "" }

    // What is done with all selected RAW photos; there only while some are selected.
    component SelectionEntry: ContextMenuItem {
        visible: enabled
        height: visible ? implicitHeight : 0
    }

    active: false
    sourceComponent: ContextMenu {
        Entry { command: loader.actions.of(ActionSet.Details) }
        Entry {
            command: loader.actions.of(ActionSet.Film)
            text: command.text + "…"
        }
        SelectionEntry {
            command: loader.window.actions.of(ActionSet.ExportFilm)
            text: "Export Film of Selected…"
        }
        SelectionEntry {
            command: loader.window.actions.of(ActionSet.PasteFilm)
            text: "Paste Film onto Selected"
        }
        Entry { command: loader.actions.of(ActionSet.Keep) }
        Entry { command: loader.actions.of(ActionSet.Skip) }
        Entry { command: loader.actions.of(ActionSet.ClearMark) }
        Entry { command: loader.actions.of(ActionSet.ShowInFileManager) }
    }
}
