import QtQuick
import Ostrel.Views

Rectangle {
    id: list

    required property PanelState panel
    readonly property protectionValue value: panel.protection

    implicitHeight: rows.height
    radius: Tokens.cardRadius
    color: Tokens.card

    Column {
        id: rows
        width: parent.width

        StateRow {
            id: guard
            width: parent.width
            isFirst: true
            value: list.value.guard
        }
        Flow {
            id: chips
            visible: ecosystems.count > 0
            leftPadding: LayoutMirroring.enabled ? 12 : guard.textLeft
            rightPadding: LayoutMirroring.enabled ? guard.textLeft : 12
            bottomPadding: 10
            width: parent.width
            spacing: 6

            Repeater {
                id: ecosystems
                model: list.panel.ecosystems

                EcosystemChip {
                    required property rowValue entry
                    value: entry
                    maxWidth: list.width - guard.textLeft - 12
                }
            }
        }
        Repeater {
            model: [list.value.offNote, list.value.noEcosystems]

            Label {
                required property string modelData
                visible: text !== ""
                width: rows.width
                leftPadding: chips.leftPadding
                rightPadding: chips.rightPadding
                bottomPadding: 9
                text: modelData
                lineHeight: Tokens.paragraph
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
                Accessible.ignored: !visible
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        StateRow {
            width: parent.width
            value: list.value.egressLock
        }
        StateRow {
            width: parent.width
            value: list.value.containers
        }
    }
}
