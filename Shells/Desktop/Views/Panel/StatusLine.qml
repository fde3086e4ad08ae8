import QtQuick
import Ostrel.Views

/// Why there are no cards and rows.
Rectangle {
    id: line

    required property rowValue value

    implicitHeight: Math.ceil(text.height) + 20
    radius: Tokens.cardRadius
    color: Tokens.card
    border.color: Tokens.listRim
    Accessible.role: Accessible.StaticText
    Accessible.ignored: !visible
    Accessible.name: value.accessibleName

    StateMark {
        id: mark
        anchors.left: parent.left
        anchors.leftMargin: 12
        y: Math.round(10 + (text.height / text.lineCount - height) / 2)
        width: Tokens.markSize
        height: Tokens.markSize
        kind: line.value.kind
        color: Tokens.stateColor(line.value.kind)
        ground: Tokens.card
    }
    Label {
        id: text
        anchors.left: mark.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 10
        text: line.value.text
        color: Tokens.stateInk(line.value.kind)
    }
}
