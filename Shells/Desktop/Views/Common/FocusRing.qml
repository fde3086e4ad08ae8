import QtQuick
import Ostrel.Views

Rectangle {
    anchors.fill: parent
    // With a gap, so that it is visible around an item of the same colour.
    anchors.margins: -3
    radius: Tokens.buttonRadius + 3
    color: "transparent"
    border.color: Tokens.accent
    border.width: 2
    visible: parent.activeFocus
}
