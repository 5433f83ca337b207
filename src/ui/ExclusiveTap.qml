import QtQuick

/// A tap handler for items in a sheet. It grabs the press exclusively; a passive grab would also reach the handlers of
/// the page behind the sheet.
TapHandler {
    gesturePolicy: TapHandler.ReleaseWithinBounds
}
