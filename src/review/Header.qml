import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The header: title, search, the window's main actions, and the selection's.
Item {
    id: header
    required property LibraryWindow window
    readonly property ActionSet actions: window.actions
    readonly property bool similar: window.state.section === WindowState.Similar
    /// Room for words instead of icons, and for keys beside the words.
    readonly property bool narrow: width < 960
    readonly property bool tight: width < (similar ? 1200 : 900)
    /// Gets the keyboard from parts that are hidden.
    property Item successor: null
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
                text: header.window.state.query
                onTextEdited: header.window.state.query = text
                onTextChanged: if (text === "" && header.window.state.query !== "") header.window.state.query = ""
                onAccepted: header.photosWanted()
                Keys.onDownPressed: header.photosWanted()
                Layout.minimumWidth: 110
                Layout.maximumWidth: header.narrow ? 170 : 220
                Layout.fillWidth: true
            }
            IconButton { command: header.actions.of(ActionSet.Details) }
            PushButton {
                command: header.actions.of(ActionSet.Compare)
                hint: ""
                help: command.hint
            }
            PushButton {
                command: header.actions.of(ActionSet.Film)
                help: "Select a RAW photo for Film"
            }
            PushButton {
                command: header.actions.of(ActionSet.Organize)
                hint: ""
                help: command.hint
                prominent: true
            }
        }

        RowLayout {
            spacing: Theme.s
            PushButton {
                visible: !header.similar
                command: header.actions.of(ActionSet.FindMatches)
                hint: ""
                help: command.hint
                prominent: true
            }
            LazyLoader {
                wanted: header.similar && !header.narrow
                sourceComponent: Segmented {
                    label: "Find"
                    model: header.window.methods
                    currentIndex: header.window.method
                    enabled: !header.window.task.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.method = index
                }
            }
            LazyLoader {
                wanted: header.similar && header.narrow
                sourceComponent: Picker {
                    label: "Find"
                    model: header.window.methods
                    currentIndex: header.window.method
                    enabled: !header.window.task.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.method = index
                }
                Layout.preferredWidth: 150
            }
            LazyLoader {
                wanted: header.similar
                sourceComponent: Picker {
                    label: "Matching"
                    model: header.window.levels
                    currentIndex: header.window.level
                    enabled: !header.window.task.busy
                    reason: "Please wait for the current task to finish."
                    onActivated: index => header.window.level = index
                }
            }
            Item { Layout.fillWidth: true }
            LazyLoader {
                wanted: header.window.selection.count > 0
                sourceComponent: SelectionBar {
                    window: header.window
                    tight: header.tight
                }
                successor: header.successor
                // Its place stays, so that nothing moves when a selection begins.
                visible: active
                opacity: wanted ? 1 : 0
                enabled: wanted
            }
        }

        LazyLoader {
            wanted: header.window.library.unavailableCount > 0
            sourceComponent: RowLayout {
                spacing: Theme.s
                Icon {
                    name: "data-warning"
                    color: Theme.skip
                }
                Caption {
                    text: header.window.library.unavailableCount.toLocaleString(Qt.locale("en"), "f", 0)
                          + " saved records unavailable. Reconnect the drive or check the source folder."
                    Layout.fillWidth: true
                }
            }
            Layout.fillWidth: true
        }

        LazyLoader {
            wanted: header.similar && header.window.matches.failures.length > 0
            sourceComponent: Disclosure {
                title: header.window.matches.failures.length + (header.window.matches.failures.length === 1 ? " analysis failure" : " analysis failures")
                SelectableText {
                    label: "Analysis failures"
                    width: parent.width
                    height: Math.min(implicitHeight, 120)
                    text: header.window.matches.failures.join("\n")
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
