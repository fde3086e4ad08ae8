import QtQuick
import Ostrel.Views

/// The verdict, with its buttons beside it or, where they have no room, below it.
Item {
    id: header

    required property PanelState panel
    readonly property real textWidth: width - 2 * 16 - shield.width - 12
    readonly property bool isStacked: word.lineWidth() + 12 + buttons.width > textWidth
    readonly property real lineHeight: Math.ceil(Math.max(shield.height, texts.height, isStacked ? 0 : buttons.height))

    implicitHeight: 16 + lineHeight + (isStacked ? Math.ceil(buttons.height) + 8 : 0) + 12

    Shield {
        id: shield
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: 16 + Math.round((header.lineHeight - height) / 2)
        width: Math.round(34 * Tokens.textScale)
        height: Math.round(38 * Tokens.textScale)
        kind: header.panel.header.kind
        fill: Tokens.stateColor(header.panel.header.kind)
        mark: Tokens.panel
    }
    Column {
        id: texts
        anchors.left: shield.right
        anchors.leftMargin: 12
        y: 16 + Math.round((header.lineHeight - height) / 2)
        width: header.textWidth - (header.isStacked ? 0 : buttons.width + 12)
        spacing: 2
        Accessible.role: Accessible.Heading
        Accessible.name: header.panel.header.spoken

        Label {
            id: word
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
            font.pixelSize: Tokens.smallSize
            lineHeight: Tokens.paragraph
            color: Tokens.dim
        }
    }
    Column {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: header.isStacked ? 16 + header.textWidth - width : 16
        y: header.isStacked ? 16 + header.lineHeight + 8 : 16 + Math.round((header.lineHeight - height) / 2)
        spacing: 5

        Repeater {
            model: header.panel.headerButtons

            PushButton {
                required property buttonValue entry
                width: Math.min(implicitWidth, header.textWidth)
                title: entry.title
                enabled: entry.isEnabled
                onPressed: header.panel.press(entry)
            }
        }
    }
}
