import QtQuick.Dialogs

FileDialog {
    /// What was chosen, under the name that it has in a chooser of folders.
    readonly property url selectedFolder: selectedFile
}
