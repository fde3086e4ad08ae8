import QtQuick
import Ostrel.Views

/// Shows that something opens below, or has opened.
Item {
    id: arrow

    property bool isOpen: false

    width: Tokens.arrowSize
    height: width
    rotation: isOpen ? 90 : LayoutMirroring.enabled ? 180 : 0

    Repeater {
        model: [45, -45]

        Rectangle {
            required property int modelData
            readonly property real part: arrow.width / 8
            width: 5.5 * part
            height: 1.4 * part
            radius: height / 2
            x: 1.7 * part
            y: (modelData > 0 ? 1.6 : 5) * part
            rotation: modelData
            antialiasing: true
            color: Tokens.dim
        }
    }
}
