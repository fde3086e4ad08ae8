import QtQuick
import Ostrel.Views

/// A row of a list: dot, label, state, and a note below them.
Item {
    id: row

    required property rowValue value
    property bool isFirst: false
    property real trailing: 0
    readonly property real textLeft: 12 + Tokens.dotSize + 10
    readonly property real textWidth: width - textLeft - 12 - trailing
    readonly property bool isStacked: label.lineWidth() + 10 + state.lineWidth() > textWidth
    readonly property real lineHeight: label.height / label.lineCount
    readonly property real padding: Math.max(8, Math.floor((Tokens.rowHeight - lineHeight) / 2))
    readonly property real textBottom: note.visible ? note.y + note.height - 2 : isStacked ? state.y + state.height : label.y + label.height

    implicitHeight: Math.max(Tokens.rowHeight, Math.ceil(textBottom + padding))
    Accessible.role: Accessible.StaticText
    Accessible.ignored: !visible
    Accessible.name: value.accessibleName
    Accessible.description: value.note

    Separator {
        visible: !row.isFirst
        width: parent.width
    }
    StateDot {
        id: dot
        kind: row.value.kind
        anchors.left: parent.left
        anchors.leftMargin: 12
        y: Math.round(row.padding + (row.lineHeight - height) / 2)
    }
    Label {
        id: label
        anchors.left: dot.right
        anchors.leftMargin: 10
        y: row.padding
        width: row.isStacked ? row.textWidth : lineWidth()
        text: row.value.label
        font.weight: Font.Medium
    }
    Label {
        id: state
        anchors.right: parent.right
        anchors.rightMargin: 12 + row.trailing
        y: row.isStacked ? label.y + label.height + 2 : row.padding
        width: row.isStacked ? row.textWidth : lineWidth()
        horizontalAlignment: row.isStacked ? Text.AlignLeft : Text.AlignRight
        text: row.value.text
        color: Tokens.stateInk(row.value.kind)
    }
    Label {
        id: note
        visible: text !== ""
        anchors.left: label.left
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: (row.isStacked ? state.y + state.height : label.y + label.height) + 2
        text: row.value.note
        font.pixelSize: Tokens.smallSize
        lineHeight: Tokens.paragraph
        color: Tokens.dim
    }
}
