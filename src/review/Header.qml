import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// What to look at, what to do with it, and what was chosen.
Item {
    id: header
    required property LibraryWindow window
    readonly property QtObject model: window.model
    readonly property WindowCommands commands: window.commands
    readonly property bool similar: model.section === "similar"
    /// Room for words instead of icons, and for keys beside the words.
    readonly property bool narrow: width < 960
    readonly property bool tight: width < (similar ? 1200 : 900)
    signal photosWanted

    implicitHeight: column.implicitHeight + Theme.l + Theme.m

    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: Theme.l
        anchors.rightMargin: Theme.l
        anchors.topMargin: Theme.l
        spacing: Theme.m

        RowLayout {
            spacing: Theme.s
            Title {
                text: Theme.line(header.window.title)
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                Layout.minimumWidth: Math.min(implicitWidth, 180)
            }
            SearchField {
                id: search
                placeholderText: "Search filenames"
                text: header.model.query
                onTextEdited: header.model.query = text
                onTextChanged: if (text === "" && header.model.query !== "") header.model.query = ""
                onAccepted: header.photosWanted()
                Keys.onDownPressed: header.photosWanted()
                Layout.minimumWidth: 110
                Layout.maximumWidth: header.narrow ? 170 : 220
                Layout.fillWidth: true
            }
            IconButton { command: header.commands.details }
            PushButton {
                command: header.commands.compare
                hint: ""
                help: command.hint
            }
            PushButton {
                command: header.commands.film
                help: "Select a RAW photo for Film"
            }
            PushButton {
                command: header.commands.organize
                hint: ""
                help: command.hint
                prominent: true
            }
        }

        RowLayout {
            spacing: Theme.s
            PushButton {
                visible: !header.similar
                command: header.commands.findMatches
                hint: ""
                help: command.hint
                prominent: true
            }
            OnDemand {
                wanted: header.similar && !header.narrow
                sourceComponent: Segmented {
                    label: "Find"
                    model: header.window.methods
                    currentIndex: header.window.method
                    enabled: !header.model.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.method = index
                }
            }
            OnDemand {
                wanted: header.similar && header.narrow
                sourceComponent: Picker {
                    label: "Find"
                    model: header.window.methods
                    currentIndex: header.window.method
                    enabled: !header.model.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.method = index
                }
                Layout.preferredWidth: 150
            }
            OnDemand {
                wanted: header.similar
                sourceComponent: Picker {
                    label: "Matching"
                    model: header.window.levels
                    currentIndex: header.window.level
                    enabled: !header.model.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.level = index
                }
            }
            Item { Layout.fillWidth: true }
            OnDemand {
                wanted: header.window.selectedCount > 0
                sourceComponent: SelectionBar {
                    window: header.window
                    tight: header.tight
                }
                // Its place stays, so that nothing moves when a selection begins.
                visible: active
                opacity: wanted ? 1 : 0
                enabled: wanted
            }
        }

        OnDemand {
            wanted: header.model.unavailableCount > 0
            sourceComponent: RowLayout {
                spacing: Theme.s
                Icon {
                    name: "data-warning"
                    color: Theme.skip
                }
                Caption {
                    text: header.model.unavailableCount.toLocaleString(Qt.locale("en"), "f", 0)
                          + " saved records unavailable. Reconnect the drive or check the source folder."
                    Layout.fillWidth: true
                }
            }
            Layout.fillWidth: true
        }

        OnDemand {
            wanted: header.similar && header.model.similarityFailures.length > 0
            sourceComponent: Disclosure {
                title: header.model.similarityFailures.length + " analysis failures"
                SelectableText {
                    width: parent.width
                    height: Math.min(implicitHeight, 120)
                    text: header.model.similarityFailures.join("\n")
                }
            }
            Layout.fillWidth: true
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: Theme.hairline
    }
}
