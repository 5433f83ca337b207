import QtQuick
import QtQuick.Layouts
import Lumisort.OrganizeSheet
import Lumisort.Ui

/// The sheet that copies the photos to keep into a new dated folder tree.
Sheet {
    id: sheet
    required property OrganizeState state
    readonly property string running: "Please wait for the import, or cancel it."

    title: "Import Photos"
    width: 650
    padding: 26
    dismissable: !state.busy
    visible: state.open
    onAboutToShow: choose.focus = true
    onClosed: {
        failures.open = false;
        state.done();
    }

    FolderChooser {
        id: chooser
        visible: false // takes no row
        title: "Choose a destination"
        mayMake: true
        onChosen: folder => sheet.state.choose(folder)
        // The next key starts the import.
        onOpenedChanged: if (!opened && sheet.state.canRun) Qt.callLater(sheet.goToStart)
    }
    function goToStart() {
        start.forceActiveFocus(choose.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    contentItem: ColumnLayout {
        spacing: 20

        RowLayout {
            spacing: Theme.m
            Title {
                text: sheet.title
                font.weight: Font.DemiBold
                Layout.fillWidth: true
            }
            PushButton {
                text: "Done"
                enabled: !sheet.state.busy
                reason: sheet.running
                onClicked: sheet.state.done()
            }
        }
        RowLayout {
            spacing: Theme.s
            Icon {
                name: "folder"
                color: Theme.secondary
            }
            Body {
                id: destination
                text: Theme.line(sheet.state.destination) || "Choose a destination"
                color: sheet.state.destination ? Theme.text : Theme.secondary
                elide: Text.ElideMiddle
                Layout.fillWidth: true
                HoverHandler { id: pointer }
                Tip {
                    text: sheet.state.destination
                    shown: pointer.hovered && !destination.truncated
                }
            }
            PushButton {
                id: choose
                text: "Choose…"
                enabled: !sheet.state.busy
                reason: sheet.running
                onClicked: chooser.choose(sheet.state.destinationUrl)
            }
        }
        RowLayout {
            visible: sheet.state.unfinished !== "" && !sheet.state.busy
            spacing: Theme.s
            Icon {
                name: "data-warning"
                color: Theme.skip
            }
            Body {
                text: Theme.line(sheet.state.unfinished)
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            PushButton {
                text: "Continue It"
                enabled: sheet.state.canRun
                reason: sheet.state.reason
                onClicked: sheet.state.resume()
            }
        }
        Toggle {
            text: "Leave out what earlier imports copied there (" + sheet.state.alreadyThere
                  + (sheet.state.alreadyThere === 1 ? " photo)" : " photos)")
            visible: sheet.state.alreadyThere > 0
            checked: sheet.state.leaveOut
            enabled: !sheet.state.busy
            reason: sheet.running
            onToggled: sheet.state.leaveOut = checked
        }
        Toggle {
            text: "Skip exact duplicates"
            checked: sheet.state.skipDuplicates
            enabled: !sheet.state.busy
            reason: sheet.running
            onToggled: sheet.state.skipDuplicates = checked
        }
        Body {
            text: sheet.state.photoCount + (sheet.state.photoCount === 1 ? " photo" : " photos") + " · Import and unmarked · Originals unchanged"
            color: Theme.secondary
            Layout.fillWidth: true
        }
        ColumnLayout {
            visible: sheet.state.busy
            spacing: Theme.s
            ProgressLine {
                label: "Import"
                value: sheet.state.progress
                Layout.fillWidth: true
            }
            Caption {
                text: sheet.state.status
                Layout.fillWidth: true
            }
        }
        SelectableText {
            label: "Error"
            visible: sheet.state.error !== ""
            text: sheet.state.error
            color: Theme.error
            font.pixelSize: Theme.bodySize
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(implicitHeight, 100)
        }
        ColumnLayout {
            visible: sheet.state.headline !== ""
            spacing: Theme.s
            Headline {
                text: sheet.state.headline
                Layout.fillWidth: true
            }
            Body {
                visible: text !== ""
                text: sheet.state.resumedNote
                color: Theme.secondary
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Body {
                visible: text !== ""
                text: sheet.state.cancelledNote
                color: Theme.secondary
                Layout.fillWidth: true
            }
            Disclosure {
                id: failures
                title: "Details"
                visible: sheet.state.failures !== ""
                Layout.fillWidth: true
                SelectableText {
                    label: "Failures"
                    width: parent.width
                    height: Math.min(implicitHeight, 100)
                    text: sheet.state.failures
                }
            }
            PushButton {
                visible: sheet.state.log !== ""
                text: "Show Results in File Manager"
                iconName: "document-open-folder"
                onClicked: FileBrowser.reveal(sheet.state.log)
            }
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Cancel"
                visible: sheet.state.busy
                enabled: !sheet.state.stopping
                reason: "The photo at hand is being finished."
                onClicked: sheet.state.cancel()
            }
            PushButton {
                id: start
                text: "Import Photos"
                iconName: "document-import"
                prominent: true
                enabled: sheet.state.canRun
                reason: sheet.state.reason
                onClicked: sheet.state.run()
            }
        }
    }
}
