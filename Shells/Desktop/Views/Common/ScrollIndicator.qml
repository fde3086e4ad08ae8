import QtQuick
import Ostrel.Views

/// Shows the position of a scroller, beside it.
Rectangle {
    id: mark

    required property Scroller scroller
    property real inset: 0
    readonly property real track: scroller.height - 2 * inset

    visible: scroller.interactive
    anchors.right: parent.right
    anchors.rightMargin: 3
    width: 4
    radius: 2
    y: scroller.y + inset + scroller.visibleArea.yPosition * track
    height: scroller.visibleArea.heightRatio * track
    color: Tokens.off
    opacity: 0.6
}
