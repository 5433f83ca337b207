import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// Asks for one line of text.
Sheet {
    id: sheet
    property string label
    property string action
    signal named(string name)

    width: 380
    onAboutToShow: {
        field.text = "";
        field.focus = true;
    }
    function accept() {
        if (field.text.trim() === "")
            return;
        close();
        named(field.text.trim());
    }

    contentItem: ColumnLayout {
        spacing: Theme.l
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Field {
            id: field
            label: sheet.label
            placeholderText: sheet.label
            Layout.fillWidth: true
            onAccepted: sheet.accept()
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Cancel"
                onClicked: sheet.close()
            }
            PushButton {
                text: sheet.action
                prominent: true
                enabled: field.text.trim() !== ""
                reason: "Enter something first."
                onClicked: sheet.accept()
            }
        }
    }
}
