import QtQuick
import Ostrel.Views

/// Why there are no cards and rows.
Rectangle {
    id: line

    required property rowValue value

    implicitHeight: Math.ceil(text.height) + 20
    radius: Tokens.cardRadius
    color: Tokens.card
    Accessible.role: Accessible.StaticText
    Accessible.ignored: !visible
    Accessible.name: value.accessibleName

    StateDot {
        id: dot
        kind: line.value.kind
        anchors.left: parent.left
        anchors.leftMargin: 12
        y: Math.round(10 + (text.height / text.lineCount - height) / 2)
    }
    Label {
        id: text
        anchors.left: dot.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 10
        text: line.value.text
        color: Tokens.stateInk(line.value.kind)
    }
}
