import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: menu
    implicitWidth: Math.max(200, contentItem.implicitWidth + 2 * padding)
    implicitHeight: contentItem.implicitHeight + 2 * padding
    padding: Theme.xs
    margins: Theme.s
    overlap: 1
    // The click that puts it away does nothing else.
    modal: true
    T.Overlay.modal: Item {}
    delegate: ContextMenuItem {}
    readonly property FocusReturn focusReturn: FocusReturn { target: menu }
    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < count; ++i) {
                const item = itemAtIndex(i);
                if (item?.visible) widest = Math.max(widest, item.implicitWidth);
            }
            return widest;
        }
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: false
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.raised
        border.color: Theme.hairline
    }
}
