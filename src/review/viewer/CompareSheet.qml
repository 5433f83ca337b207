import QtQuick
import Lumisort.Ui

/// Originals side by side.
Sheet {
    property CompareState state
    title: "Compare Originals"
}
