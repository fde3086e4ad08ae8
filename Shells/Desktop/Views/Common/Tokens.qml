pragma Singleton
import QtQuick
import Ostrel.Views

/// Colours and sizes of every screen.
QtObject {
    readonly property bool isDark: Theme.isDark
    readonly property real textScale: Theme.textScale

    readonly property color panel: isDark ? "#232326" : "#f6f6f7"
    readonly property color card: isDark ? "#2c2c30" : "#ffffff"
    readonly property color sidebar: isDark ? "#1c1c1f" : "#ebebed"
    readonly property color selection: isDark ? "#404046" : "#d9d9de"
    readonly property color code: isDark ? "#202023" : "#f3f3f5"
    readonly property color button: isDark ? "#3a3a3f" : "#ffffff"
    readonly property color chip: isDark ? "#3a3a3f" : "#ededf0"
    readonly property color line: isDark ? "#3d3d42" : "#e3e3e6"
    readonly property color rim: isDark ? "#4b4b51" : "#bdbdc2" // of a window
    readonly property color listRim: isDark ? "transparent" : line
    readonly property color ink: isDark ? "#f2f2f4" : "#1d1d1f"
    readonly property color dim: isDark ? "#aeaeb5" : "#626267"
    readonly property color edge: isDark ? "#7d7d84" : "#86868b" // of controls
    readonly property color accent: isDark ? "#5aa2ff" : "#0a66d8"
    readonly property color accentInk: isDark ? "#0b1a2c" : "#ffffff"
    readonly property color switchOn: isDark ? "#2c79dd" : "#0a66d8"
    readonly property color switchKnob: "#ffffff"
    readonly property color ok: isDark ? "#4cbf7a" : "#1e7a46"
    readonly property color warn: isDark ? "#e3a83a" : "#a3610a"
    readonly property color bad: isDark ? "#e2675d" : "#b5352c"
    readonly property color badText: isDark ? "#f0867c" : "#b5352c"
    readonly property color off: isDark ? "#95959c" : "#737378"

    readonly property int wordSize: Math.round(19 * textScale)
    readonly property int titleSize: Math.round(15 * textScale)
    readonly property int bodySize: Math.round(13 * textScale)
    readonly property int smallSize: Math.round(12 * textScale)
    readonly property int chipSize: Math.round(11.5 * textScale)
    readonly property int captionSize: Math.round(11 * textScale)
    readonly property int rowHeight: Math.round(33 * textScale)

    readonly property real paragraph: 1.18 // of a line's own height
    readonly property int panelWidth: 360
    readonly property int windowWidth: Math.round(460 * Math.min(textScale, 1.6))
    readonly property int alertWidth: Math.round(420 * Math.min(textScale, 1.6))
    readonly property int windowMargin: 24
    readonly property int sidebarWidth: Math.round(200 * Math.min(textScale, 1.3))
    readonly property int pageWidth: 640 // at most
    readonly property int panelRadius: 13
    readonly property int margin: 12
    readonly property int cardRadius: 10
    readonly property int buttonRadius: 6
    readonly property int gap: 8
    readonly property int dotSize: Math.round(8 * textScale)
    readonly property int smallDotSize: Math.round(6 * textScale)
    readonly property int markSize: Math.round(16 * textScale)
    readonly property int arrowSize: Math.round(8 * textScale)

    /// The colour of a state's text.
    function stateInk(kind: int): color {
        switch (kind) {
        case StateKind.Warn:
            return warn;
        case StateKind.Bad:
            return badText;
        default:
            return dim;
        }
    }
    function stateColor(kind: int): color {
        switch (kind) {
        case StateKind.Ok:
            return ok;
        case StateKind.Warn:
            return warn;
        case StateKind.Bad:
            return bad;
        default:
            return off;
        }
    }
}
