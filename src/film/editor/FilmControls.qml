import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// The column of an editor: histogram, materials, sliders, export.
Item {
    id: controls
    required property FilmEditorModel editor
    property bool showsOriginal: false
    readonly property bool editable: editor.editable

    PairSheet {
        id: pairs
        editor: controls.editor
    }
    FilmChoices {
        id: choices
        editor: controls.editor
    }
    Flickable {
        id: flick
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: footer.top
        contentHeight: column.height + 2 * Theme.l
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height

        ColumnLayout {
            id: column
            x: Theme.l
            y: Theme.l
            width: parent.width - 2 * Theme.l
            spacing: Theme.m

            HistogramView {
                editor: controls.editor
                original: controls.showsOriginal
                Layout.fillWidth: true
            }
            ColumnLayout {
                enabled: controls.editable
                spacing: Theme.s
                Layout.fillWidth: true
                LabelledPicker {
                    label: "Film"
                    model: choices.stocks
                    currentIndex: choices.stock
                    onActivated: index => choices.stock = index
                }
                LabelledPicker {
                    label: "Paper"
                    model: choices.papers
                    currentIndex: choices.paper
                    onActivated: index => choices.paper = index
                }
                LabelledPicker {
                    label: "Format"
                    model: choices.formats
                    currentIndex: choices.format
                    onActivated: index => choices.format = index
                }
                Body {
                    text: choices.profileTitle
                    font.weight: Font.DemiBold
                    Layout.topMargin: Theme.xs
                }
                Caption {
                    text: choices.profileText
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                RowLayout {
                    spacing: Theme.l
                    LinkButton {
                        text: "Reset"
                        enabled: controls.editable && !controls.editor.isDefault
                        onClicked: controls.editor.reset()
                    }
                    LooksButton {
                        editor: controls.editor
                        enabled: controls.editable
                    }
                    LinkButton {
                        text: "Compare Films…"
                        enabled: controls.editable && controls.editor.hasPreview
                        onClicked: pairs.open()
                    }
                }
            }
            AdjustmentSection {
                title: "Light"
                editor: controls.editor
                section: AdjustmentList.Light
                Layout.fillWidth: true
            }
            AdjustmentSection {
                title: "Print"
                editor: controls.editor
                section: AdjustmentList.Print
                Layout.fillWidth: true
            }
            AdjustmentSection {
                title: "Grain and Halation"
                editor: controls.editor
                section: AdjustmentList.GrainAndHalation
                Layout.fillWidth: true
            }
        }
    }
    // One row in every state: a second one would push the last slider out of sight.
    RowLayout {
        id: footer
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.l
        height: Theme.controlHeight
        spacing: Theme.s
        readonly property bool exported: controls.editor.exportedURL.toString() !== "" && !controls.editor.isExporting

        Icon {
            visible: footer.exported
            name: "checkmark"
            color: Theme.keep
        }
        Body {
            visible: footer.exported
            text: "Exported"
        }
        LinkButton {
            visible: footer.exported
            text: "Show"
            onClicked: FileBrowser.reveal(controls.editor.exportedURL.toString())
        }
        Spinner {
            visible: controls.editor.isExporting
            running: visible
            Accessible.name: "Exporting"
        }
        Body {
            visible: controls.editor.isExporting
            text: "Exporting…"
            Layout.fillWidth: true
        }
        PushButton {
            text: "Export"
            hint: footer.exported ? "" : "Ctrl+E"
            help: "Save a full-resolution 16-bit TIFF copy"
            prominent: true
            visible: !controls.editor.isExporting
            enabled: controls.editor.canExport
            reason: controls.editor.loaded ? "The photo is not ready yet." : "The photo is being loaded."
            Layout.fillWidth: true
            onClicked: controls.editor.exportPhoto()
        }
    }
}
