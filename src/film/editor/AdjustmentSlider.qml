import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// One adjustment: title, the value as a field that takes typed numbers, the track below. A double click on
/// the title resets the value.
ColumnLayout {
    id: adjustment
    required property AdjustmentList list
    required property int index
    required property string title
    required property string help
    required property real from
    required property real to
    required property real step
    required property real value
    required property string text
    /// The slider was let go, or the value typed.
    signal released()

    spacing: 0

    RowLayout {
        spacing: Theme.s
        Body {
            text: adjustment.title
            color: adjustment.enabled ? Theme.text : Theme.disabled
            Accessible.ignored: true // the slider has the name
            Layout.fillWidth: true
            TapHandler { onDoubleTapped: adjustment.list.reset(adjustment.index) }
            HoverHandler { id: pointer }
            Tip {
                text: adjustment.help + (adjustment.help ? " " : "") + "Double-click resets it."
                shown: pointer.hovered
            }
        }
        ValueField {
            value: adjustment.text
            label: adjustment.title + " value"
            onTyped: typed => { if (!adjustment.list.type(adjustment.index, typed)) revert(); }
        }
    }
    ValueSlider {
        id: slider
        from: adjustment.from
        to: adjustment.to
        stepSize: adjustment.step
        value: adjustment.value
        label: adjustment.title
        help: adjustment.help
        Layout.fillWidth: true
        onMoved: adjustment.list.set(adjustment.index, value)
        onPressedChanged: if (!pressed) adjustment.released()
        Keys.onPressed: event => {
            const direction = event.key === Qt.Key_Left || event.key === Qt.Key_Down ? -1
                            : event.key === Qt.Key_Right || event.key === Qt.Key_Up ? 1 : 0;
            if (direction === 0)
                return;
            const steps = event.modifiers & Qt.ShiftModifier ? 10 : 1;
            adjustment.list.set(adjustment.index, adjustment.value + direction * steps * adjustment.step);
            event.accepted = true;
        }
        onActiveFocusChanged: if (!activeFocus) adjustment.released()
    }
    // A drag assigns the slider's value and so ends the binding.
    onValueChanged: slider.value = value
}
