import QtQuick

/// A tap on something in a sheet. It takes the press for itself: one that is only watched goes on to the handlers of
/// the page behind the sheet, too.
TapHandler {
    gesturePolicy: TapHandler.ReleaseWithinBounds
}
