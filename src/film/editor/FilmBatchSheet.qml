import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// Exports the selected RAW photos with their stored adjustments.
Sheet {
    id: sheet
    required property FilmBatch batch

    title: "Export Film"
    width: 520
    dismissable: !batch.running
    visible: batch.open
    onAboutToShow: choose.focus = true
    onClosed: batch.close()

    FolderChooser {
        id: chooser
        visible: false
        title: "Export Film"
        mayMake: true
        onChosen: folder => sheet.batch.run(folder)
    }
    contentItem: ColumnLayout {
        spacing: Theme.l
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Body {
            text: (sheet.batch.count === 1 ? "1 RAW photo" : sheet.batch.count + " RAW photos")
                  + " · 16-bit TIFF · stored adjustments · Originals unchanged"
            color: Theme.secondary
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        ColumnLayout {
            visible: sheet.batch.running
            spacing: Theme.s
            ProgressLine {
                label: "Export"
                value: sheet.batch.count > 0 ? sheet.batch.finished / sheet.batch.count : 0
                Layout.fillWidth: true
            }
            Caption {
                text: (sheet.batch.finished + 1) + " of " + sheet.batch.count + " · " + Theme.line(sheet.batch.current)
                Layout.fillWidth: true
            }
        }
        Body {
            visible: sheet.batch.summary !== ""
            text: sheet.batch.summary
            Layout.fillWidth: true
        }
        SelectableText {
            visible: sheet.batch.failures !== ""
            text: sheet.batch.failures
            color: Theme.error
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(implicitHeight, 140)
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: sheet.batch.running ? "Cancel" : "Done"
                onClicked: sheet.batch.running ? sheet.batch.cancel() : sheet.batch.close()
            }
            PushButton {
                id: choose
                text: "Choose Folder…"
                prominent: true
                visible: !sheet.batch.running
                onClicked: chooser.choose("")
            }
        }
    }
}
