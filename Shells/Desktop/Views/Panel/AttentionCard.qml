import QtQuick
import Ostrel.Views

Item {
    id: card

    required property cardValue value

    signal pressed

    implicitHeight: Math.ceil(content.height) + 20
    Accessible.role: Accessible.Grouping
    Accessible.name: value.accessibleName
    Accessible.description: value.accessibleDescription

    Item {
        width: Tokens.cardRadius + 2
        anchors.left: parent.left
        height: parent.height
        clip: true

        Rectangle {
            anchors.left: parent.left
            width: 3 * Tokens.cardRadius
            height: parent.height
            radius: Tokens.cardRadius
            color: Tokens.stateColor(card.value.kind)
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 3
        radius: Tokens.cardRadius
        color: Tokens.card
    }
    Column {
        id: content
        anchors.left: parent.left
        anchors.leftMargin: 15
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 10
        spacing: 3

        Flow {
            width: parent.width
            spacing: 8

            Label {
                width: Math.min(lineWidth(), content.width)
                text: card.value.title
                font.weight: Font.DemiBold
            }
            Label {
                visible: text !== ""
                width: Math.min(lineWidth(), content.width)
                topPadding: Tokens.bodySize - Tokens.smallSize
                text: card.value.text
                font.pixelSize: Tokens.smallSize
                font.weight: Font.Medium
                color: Tokens.stateInk(card.value.kind)
            }
        }
        Label {
            visible: text !== ""
            width: parent.width
            text: card.value.detail
            lineHeight: Tokens.paragraph
        }
        Label {
            visible: text !== ""
            width: parent.width
            text: card.value.action
            lineHeight: Tokens.paragraph
            font.pixelSize: Tokens.smallSize
            color: Tokens.dim
        }
        Item {
            visible: button.visible
            width: parent.width
            height: button.height + 6

            PushButton {
                id: button
                visible: title !== ""
                enabled: card.value.button.isEnabled
                anchors.left: parent.left
                y: 6
                width: Math.min(implicitWidth, parent.width)
                isPrimary: true
                title: card.value.button.title
                onPressed: card.pressed()
            }
        }
    }
}
