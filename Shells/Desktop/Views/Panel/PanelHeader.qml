import QtQuick
import Ostrel.Views

/// The verdict, with its buttons beside it or, where they have no room, below it. Where the widest word does not fit
/// beside the shield, the shield is above the text.
Item {
    id: header

    required property PanelState panel
    readonly property real besideShield: 16 + shield.width + 12
    readonly property bool isNarrow: word.widestWord() > width - besideShield - 16
    readonly property real textLeft: isNarrow ? 16 : besideShield
    readonly property real textTop: isNarrow ? 16 + shield.height + 8 : 16
    readonly property real textWidth: width - textLeft - 16
    readonly property bool isStacked: isNarrow || word.lineWidth() + 12 + buttons.width > textWidth
    readonly property real lineHeight: Math.ceil(Math.max(isNarrow ? 0 : shield.height, texts.height, isStacked ? 0 : buttons.height))

    implicitHeight: textTop + lineHeight + (isStacked ? Math.ceil(buttons.height) + 8 : 0) + 12

    Shield {
        id: shield
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: header.isNarrow ? 16 : 16 + Math.round((header.lineHeight - height) / 2)
        width: Math.round(34 * Tokens.textScale)
        height: Math.round(38 * Tokens.textScale)
        kind: header.panel.header.kind
        fill: Tokens.stateColor(header.panel.header.kind)
        mark: Tokens.panel
    }
    Column {
        id: texts
        anchors.left: parent.left
        anchors.leftMargin: header.textLeft
        y: header.textTop + Math.round((header.lineHeight - height) / 2)
        width: header.textWidth - (header.isStacked ? 0 : buttons.width + 12)
        spacing: 2
        Accessible.role: Accessible.Heading
        Accessible.name: header.panel.header.accessibleName

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
        y: header.isStacked ? header.textTop + header.lineHeight + 8 : 16 + Math.round((header.lineHeight - height) / 2)
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
