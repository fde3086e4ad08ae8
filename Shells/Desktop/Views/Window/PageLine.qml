import QtQuick
import Ostrel.Views

/// One line of a page, on the ground of its list where it belongs to one.
Item {
    id: line

    required property AgentWindowState agent
    required property pageLineValue value

    implicitHeight: value.gap + Math.ceil(content.height)

    // The ground of a list is drawn in pieces, one a line.
    Item {
        visible: line.value.isListed
        y: line.value.gap
        width: parent.width
        height: parent.height - y
        clip: true

        Rectangle {
            readonly property real above: line.value.isFirst ? 0 : 2 * radius
            readonly property real below: line.value.isLast ? 0 : 2 * radius
            y: -above
            width: parent.width
            height: parent.height + above + below
            radius: Tokens.cardRadius
            color: Tokens.card
            border.color: Tokens.listRim
        }
        Separator {
            visible: !line.value.isFirst
            anchors.left: parent.left
            anchors.leftMargin: line.value.type === LineType.State || line.value.type === LineType.Card ? 12 + Tokens.markSize + 8 : 12
            anchors.right: parent.right
        }
    }
    Loader {
        id: content
        y: line.value.gap
        width: parent.width
        sourceComponent: {
            switch (line.value.type) {
            case LineType.State:
                return state;
            case LineType.Fact:
                return fact;
            case LineType.Card:
                return card;
            case LineType.Switch:
                return toggle;
            case LineType.Buttons:
                return buttons;
            case LineType.Notice:
                return notice;
            default:
                return text;
            }
        }
    }

    Component {
        id: state

        StateLine {
            value: line.value
        }
    }
    Component {
        id: fact

        FactLine {
            value: line.value
            onPressed: line.agent.press(line.value.button)
            onPagePressed: line.agent.pressPageButton(line.value.pageButton)
        }
    }
    Component {
        id: card

        CardLine {
            value: line.value
            onPressed: line.agent.press(line.value.button)
            onFolded: line.agent.fold(line.value.id)
        }
    }
    Component {
        id: toggle

        Item {
            implicitHeight: Math.max(Tokens.rowHeight, label.height + 16)

            Label {
                id: label
                anchors.left: parent.left
                anchors.leftMargin: 12
                anchors.right: knob.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                text: line.value.label
            }
            ToggleSwitch {
                id: knob
                anchors.right: parent.right
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                name: line.value.label
                isOn: line.value.isOn
                enabled: line.value.isEnabled
                onToggled: isOn => line.agent.notifySwitched(line.value.id, isOn)
            }
        }
    }
    Component {
        id: buttons

        Flow {
            id: flow
            spacing: 8

            Repeater {
                // A number as the model keeps the items, and so the focus, when a button changes.
                model: line.value.buttons.length

                PushButton {
                    required property int index
                    readonly property var entry: line.value.buttons[index]
                    width: Math.min(implicitWidth, flow.width)
                    title: entry?.title ?? ""
                    enabled: entry?.isEnabled ?? false
                    onPressed: line.agent.press(entry)
                }
            }
        }
    }
    Component {
        id: notice

        Item {
            implicitHeight: label.height
            Accessible.role: Accessible.AlertMessage
            Accessible.name: label.text

            Tick {
                id: tick
                readonly property bool isBad: line.value.kind === StateKind.Bad
                visible: isBad || line.value.kind === StateKind.Ok
                anchors.left: parent.left
                y: Math.round((label.height / label.lineCount - height) / 2)
                isCross: isBad
                color: isBad ? Tokens.bad : Tokens.ok
            }
            Label {
                id: label
                anchors.left: parent.left
                anchors.leftMargin: tick.visible ? tick.width + 8 : 0
                anchors.right: parent.right
                text: line.value.text
                font.pixelSize: Tokens.smallSize
                color: Tokens.stateInk(line.value.kind)
            }
        }
    }
    Component {
        id: text

        AccessibleLabel {
            readonly property bool isLede: line.value.type === LineType.Lede
            leftPadding: isLede ? 0 : 12
            rightPadding: leftPadding
            text: line.value.text
            lineHeight: Tokens.paragraph
            font.pixelSize: isLede ? Tokens.bodySize : Tokens.smallSize
            font.weight: line.value.type === LineType.Caption ? Font.DemiBold : Font.Normal
            color: isLede ? Tokens.ink : Tokens.dim
        }
    }
}
