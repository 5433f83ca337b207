pragma Singleton
import QtQuick
import Lumisort.Ui

/// Neutral greys, one accent, one scale of distances. Contrast of text to its surface is at least 4.5 : 1 in both
/// themes.
QtObject {
    readonly property bool dark: ColourScheme.dark

    readonly property color window: dark ? "#1b1b1b" : "#f4f4f4"
    readonly property color surface: dark ? "#232323" : "#e9e9e9"
    readonly property color raised: dark ? "#2e2e2e" : "#ffffff"
    readonly property color hover: dark ? "#383838" : "#f0f0f0"
    readonly property color pressed: dark ? "#3e3e3e" : "#e2e2e2"
    readonly property color tile: dark ? "#262626" : "#e8e8e8"
    readonly property color hairline: dark ? Qt.rgba(1, 1, 1, 0.10) : Qt.rgba(0, 0, 0, 0.10)
    readonly property color edge: dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.14)
    readonly property color text: dark ? "#ececec" : "#1c1c1c"
    readonly property color secondary: dark ? "#a8a8a8" : "#5a5a5a"
    readonly property color disabled: dark ? "#787878" : "#828282"

    readonly property color accent: Qt.rgba(0.23, 0.40, 0.34, 1)
    readonly property color accentHover: Qt.rgba(0.27, 0.46, 0.39, 1)
    readonly property color accentPressed: Qt.rgba(0.19, 0.34, 0.29, 1)
    readonly property color accentText: "#ffffff"
    /// The accent as a line or as text on a surface.
    readonly property color accentLine: dark ? "#86c9b1" : accent
    readonly property color accentFill: Qt.rgba(accent.r, accent.g, accent.b, dark ? 0.6 : 0.15)
    readonly property color keep: dark ? "#66c493" : "#1c6b43"
    readonly property color skip: dark ? "#f0a35a" : "#8f4500"
    readonly property color error: dark ? "#ff8a80" : "#b3261e"

    /// On what lies over a photo, light in both themes as its backdrop is always dark.
    readonly property color photoText: "#ffffff"
    readonly property color photoKeep: "#66c493"
    readonly property color photoSkip: "#f0a35a"
    readonly property color photoBackdrop: Qt.rgba(0, 0, 0, 0.75)
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.45)

    readonly property int xs: 4
    readonly property int s: 8
    readonly property int m: 12
    readonly property int l: 16
    readonly property int xl: 24
    readonly property int xxl: 32
    readonly property int controlRadius: 6
    readonly property int tileRadius: 10
    readonly property int controlHeight: 30

    readonly property int captionSize: 11
    readonly property int bodySize: 13
    readonly property int headlineSize: 15
    readonly property int titleSize: 22

    readonly property int motion: 120

    /// A name on one line: file names may hold line breaks and other control characters, and ones that would
    /// turn the letters around.
    function line(name: string): string {
        return name.replace(/[\u0000-\u001f\u007f-\u009f\u2028-\u202e\u2066-\u2069]/g, "\ufffd");
    }
    /// A name before more text, which a name in Hebrew or Arabic would otherwise put to its left.
    function leading(name: string): string {
        return /[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefc]/.test(name) ? "\u2068" + name + "\u2069" : name;
    }
}
