import QtQuick
import Ostrel.Views

/// How something ended.
Item {
    id: root

    required property PageLine line

    implicitHeight: label.height
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    Tick {
        id: tick
        readonly property bool isBad: root.line.value.kind === StateKind.Bad
        visible: isBad || root.line.value.kind === StateKind.Ok
        anchors.left: parent.left
        y: Math.round((label.height / label.lineCount - height) / 2)
        isCross: isBad
        color: isBad ? Tokens.bad : Tokens.ok
    }
    Label {
        id: label
        anchors.left: parent.left
        anchors.leftMargin: tick.visible ? tick.width + 8 : 0
        anchors.right: parent.right
        text: root.line.value.text
        font.pixelSize: Tokens.smallSize
        color: Tokens.stateInk(root.line.value.kind)
    }
}
