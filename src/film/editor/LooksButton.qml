import QtQuick
import QtQml.Models
import Lumisort.FilmEditor
import Lumisort.Ui

/// Opens the menu of looks: apply, save, import and export one, or remove it.
LinkButton {
    id: button
    required property FilmEditorModel editor

    text: looks.current ? "Look: " + looks.current : "Looks…"
    onClicked: {
        looks.refresh();
        menu.popup(button, 0, button.height);
    }

    LookList {
        id: looks
        editor: button.editor
    }
    ContextMenu {
        id: menu
        Instantiator {
            model: looks.names
            delegate: ContextMenuItem {
                required property string modelData
                required property int index
                text: Theme.line(modelData)
                iconName: looks.current === modelData ? "checkmark" : ""
                onTriggered: looks.apply(index)
            }
            onObjectAdded: (index, item) => menu.insertItem(index, item)
            onObjectRemoved: (index, item) => menu.removeItem(item)
        }
        ContextMenuItem {
            text: "Save Look…"
            iconName: "document-import"
            onTriggered: sheet.open()
        }
        ContextMenuItem {
            text: "Remove This Look"
            iconName: "list-remove"
            enabled: looks.current !== ""
            reason: "The adjustments are those of no saved look."
            onTriggered: looks.remove(looks.names.indexOf(looks.current))
        }
        ContextMenuItem {
            text: "Export This Look…"
            enabled: looks.current !== ""
            reason: "The adjustments are those of no saved look."
            onTriggered: folder.choose("")
        }
        ContextMenuItem {
            text: "Import Look…"
            onTriggered: file.choose("")
        }
        ContextMenuItem {
            text: "Copy Adjustments"
            hint: "Ctrl+Shift+C"
            onTriggered: button.editor.copySettings()
        }
        ContextMenuItem {
            text: "Paste Adjustments"
            hint: "Ctrl+Shift+V"
            onTriggered: button.editor.pasteSettings()
        }
    }
    NameSheet {
        id: sheet
        title: "Save Look"
        label: "Name of the look"
        action: "Save"
        onNamed: name => looks.save(name)
    }
    FolderChooser {
        id: file
        visible: false
        title: "Import Look"
        acceptLabel: "Import"
        files: ["*.json"]
        onChosen: url => looks.importFrom(url)
    }
    FolderChooser {
        id: folder
        visible: false
        title: "Export Look"
        mayMake: true
        onChosen: url => looks.exportTo(looks.names.indexOf(looks.current), url)
    }
}
