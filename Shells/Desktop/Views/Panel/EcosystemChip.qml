import QtQuick
import Ostrel.Views

Rectangle {
    id: chip

    required property rowValue value
    property real maxWidth: 0

    implicitWidth: Math.min(9 + dot.width + 6 + name.lineWidth() + 9, maxWidth)
    implicitHeight: Math.ceil(name.height) + 6
    radius: Math.min(height / 2, Tokens.cardRadius)
    color: Tokens.chip
    Accessible.role: Accessible.StaticText
    Accessible.name: value.accessibleName

    StateDot {
        id: dot
        kind: chip.value.kind
        width: Tokens.smallDotSize
        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.verticalCenter: parent.verticalCenter
    }
    Label {
        id: name
        anchors.left: dot.right
        anchors.leftMargin: 6
        anchors.right: parent.right
        anchors.rightMargin: 9
        anchors.verticalCenter: parent.verticalCenter
        text: chip.value.label
        font.pixelSize: Tokens.chipSize
    }
}
