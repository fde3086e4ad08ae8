import QtQuick
import Ostrel.Views

Rectangle {
    anchors.fill: parent
    // Stands off, to be seen around what has its colour.
    anchors.margins: -3
    radius: Tokens.buttonRadius + 3
    color: "transparent"
    border.color: Tokens.accent
    border.width: 2
    visible: parent.activeFocus
}
