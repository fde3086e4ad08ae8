import QtQuick
import Ostrel.Views

Column {
    id: list

    required property PanelState panel

    spacing: 5

    Repeater {
        model: list.panel.facts

        Item {
            id: fact
            required property rowValue entry
            width: list.width
            implicitHeight: Math.ceil(Math.max(label.height, value.height))
            Accessible.role: Accessible.StaticText
            Accessible.name: entry.accessibleName

            Label {
                id: label
                anchors.left: parent.left
                width: Math.min(lineWidth(), fact.width / 2)
                text: fact.entry.label
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
            }
            Label {
                id: value
                anchors.left: label.right
                anchors.leftMargin: 14
                anchors.right: parent.right
                horizontalAlignment: Text.AlignRight
                text: fact.entry.text
                font.pixelSize: Tokens.smallSize
                font.weight: Font.Medium
            }
        }
    }
}
