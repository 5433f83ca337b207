import QtQuick
import QtQuick.Window

/// Gives the keyboard back to what had it before a popup came, or to what has taken its place.
Connections {
    property Item before: null
    property Item page: null
    /// The keyboard's place was marked.
    property bool marked: false

    function onAboutToShow() {
        before = target.parent ? target.parent.Window.activeFocusItem : null;
        marked = before !== null && before.visualFocus === true;
        page = before;
        while (page && page.parent && page.parent !== page.Window.contentItem)
            page = page.parent;
    }
    function onClosed() {
        const item = before && before.visible && before.enabled ? before : page;
        if (item)
            item.forceActiveFocus(marked ? Qt.TabFocusReason : Qt.PopupFocusReason);
        before = null;
    }
}
