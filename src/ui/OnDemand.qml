import QtQuick

/// Something that a start does not show: made when it is first wanted, kept from then on.
Loader {
    property bool wanted: false
    active: wanted || item
    visible: wanted
}
