import QtQuick
import Ostrel.Views

/// The selected runtime: its state, the commands to copy, and its notification switch.
Column {
    id: root

    required property AgentWindowState agent
    property bool isNarrow: false
    readonly property runtimeDetailValue value: agent.detail

    spacing: 10

    Flow {
        visible: !root.isNarrow
        width: parent.width
        spacing: 8

        HeadingLabel {
            id: name
            width: Math.min(lineWidth(), root.width)
            text: root.value.name
        }
        Repeater {
            model: root.value.chips.length

            Item {
                required property int index
                readonly property var chip: root.value.chips[index]
                width: word.implicitWidth
                height: Math.max(name.height / name.lineCount, word.height)
                Accessible.role: Accessible.StaticText
                Accessible.name: word.text

                Chip {
                    id: word
                    anchors.verticalCenter: parent.verticalCenter
                    text: parent.chip?.text ?? ""
                    isWarning: parent.chip?.isWarning ?? false
                }
            }
        }
    }
    AccessibleLabel {
        width: parent.width
        text: root.value.state
        lineHeight: Tokens.paragraph
        font.pixelSize: root.isNarrow ? Tokens.smallSize : Tokens.bodySize
    }
    Item {
        visible: root.value.blocked !== ""
        width: parent.width
        height: blocked.height

        StateMark {
            id: mark
            visible: !root.isNarrow
            anchors.left: parent.left
            y: Math.round((blocked.height / blocked.lineCount - height) / 2)
            width: Tokens.markSize
            height: Tokens.markSize
            kind: StateKind.Warn
            color: Tokens.warn
            ground: Tokens.panel
        }
        AccessibleLabel {
            id: blocked
            anchors.left: parent.left
            anchors.leftMargin: mark.visible ? mark.width + 8 : 0
            anchors.right: parent.right
            text: root.value.blocked
            lineHeight: Tokens.paragraph
            font.pixelSize: Tokens.smallSize
            color: root.isNarrow ? Tokens.dim : Tokens.ink
        }
    }
    Repeater {
        model: 2

        Column {
            id: command
            required property int index
            readonly property commandValue value: index === 0 ? root.value.setup : root.value.guest
            visible: value.button.title !== ""
            width: root.width
            spacing: 8

            CodeBox {
                width: parent.width
                text: command.value.shown
                name: root.value.name
            }
            CopyButton {
                width: Math.min(implicitWidth, parent.width)
                value: command.value.button
                isPrimary: root.value.blocked !== ""
                onPressed: root.agent.copy(command.value.button)
            }
        }
    }
    Flow {
        width: parent.width
        spacing: 8

        PushButton {
            width: Math.min(implicitWidth, root.width)
            title: root.value.reveal.title
            onPressed: root.agent.pressPageButton(root.value.reveal)
        }
        CopyButton {
            width: Math.min(implicitWidth, root.width)
            value: root.value.copyPath
            onPressed: root.agent.copy(root.value.copyPath)
        }
    }
    Rectangle {
        readonly property int inset: root.isNarrow ? 0 : 12
        width: parent.width
        height: Math.ceil(choices.height)
        radius: Tokens.cardRadius
        color: root.isNarrow ? "transparent" : Tokens.card
        border.color: root.isNarrow ? "transparent" : Tokens.listRim

        Column {
            id: choices
            x: parent.inset
            width: parent.width - 2 * x

            Item {
                width: parent.width
                height: Math.max(Tokens.rowHeight, label.height + (root.isNarrow ? 4 : 14))

                Label {
                    id: label
                    anchors.left: parent.left
                    anchors.right: toggle.left
                    anchors.rightMargin: 16
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.value.notifyLabel
                }
                ToggleSwitch {
                    id: toggle
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    name: root.value.notifyLabel
                    isOn: root.value.isNotifyOn
                    onToggled: isOn => root.agent.notifySwitched(root.value.name, isOn)
                }
            }
            Item {
                visible: root.value.authorization !== ""
                width: parent.width
                height: sentence.height + allow.height + 20

                Separator {
                    visible: !root.isNarrow
                    width: parent.width
                }
                AccessibleLabel {
                    id: sentence
                    y: 7
                    width: parent.width
                    text: root.value.authorization
                    font.pixelSize: Tokens.smallSize
                    color: Tokens.dim
                }
                PushButton {
                    id: allow
                    anchors.left: parent.left
                    anchors.top: sentence.bottom
                    anchors.topMargin: 6
                    width: Math.min(implicitWidth, parent.width)
                    title: root.value.authorizationButton.title
                    isPrimary: root.value.authorizationButton.isPrimary
                    onPressed: root.agent.pressPageButton(root.value.authorizationButton)
                }
            }
        }
    }
}
