import QtQuick
import Ostrel.Views

Item {
    id: header

    required property PanelState panel

    implicitHeight: Math.ceil(Math.max(shield.height, texts.height, buttons.height)) + 28

    Item {
        id: middle
        width: parent.width
        y: 16
        height: parent.height - 28

        Shield {
            id: shield
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            width: Math.round(34 * Tokens.textScale)
            height: Math.round(38 * Tokens.textScale)
            kind: header.panel.header.kind
            fill: Tokens.stateColor(kind)
            mark: Tokens.panel
        }
        Column {
            id: texts
            anchors.left: shield.right
            anchors.leftMargin: 12
            anchors.right: buttons.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            Accessible.role: Accessible.Heading
            Accessible.name: header.panel.header.spoken

            Label {
                width: parent.width
                text: header.panel.header.word
                font.pixelSize: Tokens.wordSize
                font.weight: Font.DemiBold
                font.letterSpacing: -0.2
            }
            Label {
                visible: text !== ""
                width: parent.width
                text: header.panel.header.deadline
                lineHeight: Tokens.paragraph
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
            }
        }
        Column {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 5

            Repeater {
                model: header.panel.headerButtons

                PushButton {
                    required property buttonValue entry
                    width: Math.min(implicitWidth, Tokens.panelWidth / 3)
                    title: entry.title
                    enabled: entry.isEnabled
                    onPressed: header.panel.press(entry)
                }
            }
        }
    }
}
