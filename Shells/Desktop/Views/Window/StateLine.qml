import QtQuick
import Ostrel.Views

/// A mark with what it is the state of and, where there is room beside that, what the state is.
Item {
    id: line

    required property pageLineValue value
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
        y: Math.round(label.y + (line.lineHeight - height) / 2)
        width: Tokens.markSize
        height: Tokens.markSize
        kind: line.value.kind
        color: Tokens.stateColor(line.value.kind)
        ground: Tokens.card
    }
    Label {
        id: label
        anchors.left: parent.left
        anchors.leftMargin: line.textLeft
        y: Math.round((Tokens.rowHeight - line.lineHeight) / 2)
        width: line.isStacked ? line.room : lineWidth()
        text: line.value.label
        font.weight: line.value.isDim ? Font.Normal : Font.Medium
        color: line.value.isDim ? Tokens.dim : Tokens.ink
    }
    Label {
        id: state
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: line.isStacked ? label.y + label.height + 2 : label.y
        width: line.isStacked ? line.room : lineWidth()
        horizontalAlignment: line.isStacked ? Text.AlignLeft : Text.AlignRight
        text: line.value.text
        color: Tokens.stateInk(line.value.kind)
    }
}
