import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// Asks where the exported TIFF goes: a name, and a folder, at first the photo's.
Sheet {
    id: sheet
    required property FilmEditorModel editor
    property url folder

    title: "Export Photo"
    width: 480
    visible: editor.savePanelOpen
    onAboutToShow: {
        if (folder.toString() === "")
            folder = editor.photoFolder;
        name.text = editor.proposedName;
        name.focus = true;
        name.select(0, name.text.length - 4);
    }
    onClosed: editor.finishSavePanel("")

    readonly property string refusal: name.text.trim() === "" ? "Enter a name first."
                                      : name.text.includes("/") ? "Enter a name without /." : ""

    function accept() {
        if (refusal === "")
            sheet.editor.finishSavePanel(sheet.editor.destination(sheet.folder, name.text));
    }

    FolderChooser {
        id: chooser
        visible: false
        title: "Export Photo"
        mayMake: true
        onChosen: folder => sheet.folder = folder
    }
    contentItem: ColumnLayout {
        spacing: Theme.l
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Field {
            id: name
            label: "Name"
            Layout.fillWidth: true
            onAccepted: sheet.accept()
        }
        RowLayout {
            spacing: Theme.s
            Icon {
                name: "folder"
                color: Theme.secondary
            }
            Body {
                text: Theme.line(decodeURIComponent(sheet.folder.toString().replace(/^file:\/\//, "")))
                elide: Text.ElideMiddle
                Layout.fillWidth: true
            }
            PushButton {
                text: "Choose…"
                onClicked: chooser.choose(sheet.folder)
            }
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Cancel"
                onClicked: sheet.editor.finishSavePanel("")
            }
            PushButton {
                text: "Export"
                prominent: true
                enabled: sheet.refusal === ""
                reason: sheet.refusal
                onClicked: sheet.accept()
            }
        }
    }
}
