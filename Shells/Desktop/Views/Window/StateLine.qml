import QtQuick
import Ostrel.Views

/// A mark with what it is the state of and, where there is room beside that, what the state is.
Item {
    id: root

    required property PageLine line
    readonly property pageLineValue value: line.value
    readonly property real textLeft: 12 + Tokens.markSize + 8
    readonly property real room: width - textLeft - 12
    readonly property bool isStacked: state.text !== "" && label.lineWidth() + 16 + state.lineWidth() > room
    readonly property real lineHeight: label.height / label.lineCount

    implicitHeight: Math.max(Tokens.rowHeight, Math.ceil((isStacked ? state.y + state.height : label.y + label.height) + 8))
    Accessible.role: Accessible.StaticText
    Accessible.name: value.accessibleName

    StateMark {
        anchors.left: parent.left
        anchors.leftMargin: 12
        y: Math.round(label.y + (root.lineHeight - height) / 2)
        width: Tokens.markSize
        height: Tokens.markSize
        kind: root.value.kind
        color: Tokens.stateColor(root.value.kind)
        ground: Tokens.card
    }
    Label {
        id: label
        anchors.left: parent.left
        anchors.leftMargin: root.textLeft
        y: Math.round((Tokens.rowHeight - root.lineHeight) / 2)
        width: root.isStacked ? root.room : lineWidth()
        text: root.value.label
        font.weight: root.value.isDim ? Font.Normal : Font.Medium
        color: root.value.isDim ? Tokens.dim : Tokens.ink
    }
    Label {
        id: state
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: root.isStacked ? label.y + label.height + 2 : label.y
        width: root.isStacked ? root.room : lineWidth()
        horizontalAlignment: root.isStacked ? Text.AlignLeft : Text.AlignRight
        text: root.value.text
        color: Tokens.stateInk(root.value.kind)
    }
}
