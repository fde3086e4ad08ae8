import QtQuick
import Ostrel.Views

Rectangle {
    anchors.fill: parent
    anchors.margins: -2
    radius: Tokens.buttonRadius + 2
    color: "transparent"
    border.color: Tokens.accent
    border.width: 2
    visible: parent.activeFocus
}
