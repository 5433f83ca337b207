import QtQuick
import QtQuick.Window

/// Returns the keyboard focus, when a popup closes, to the item that had it before, or to the page that shows now.
Connections {
    property Item before: null
    property Item page: null
    /// Whether the item before showed a focus ring.
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
