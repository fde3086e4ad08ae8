import QtQuick
import Ostrel.Views

/// A step with its state: title, note, progress, error and the buttons that help.
Item {
    id: step

    required property stepValue value
    property bool isFirst: false

    signal pressed(button: onboardingButtonValue)
    signal failed(item: Item)

    implicitHeight: Math.ceil(texts.height) + 24
    Accessible.role: Accessible.Grouping
    Accessible.name: value.title
    Accessible.description: value.note

    Separator {
        visible: !step.isFirst
        width: parent.width
    }
    RoundMark {
        id: mark
        anchors.left: parent.left
        anchors.leftMargin: 14
        y: 12 + Math.round((title.height / title.lineCount - height) / 2)
        width: Math.round(18 * Tokens.textScale)
        height: width
        kind: step.value.kind
        color: Tokens.stateColor(step.value.kind)
        ground: Tokens.card
    }
    Column {
        id: texts
        anchors.left: mark.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 14
        y: 12
        spacing: 3

        Label {
            id: title
            width: parent.width
            text: step.value.title
            font.weight: Font.Medium
        }
        Label {
            width: parent.width
            text: step.value.note
            font.pixelSize: Tokens.smallSize
            lineHeight: Tokens.paragraph
            color: Tokens.dim
        }
        WaitLine {
            width: parent.width
            text: step.value.progress
            fontSize: Tokens.smallSize
        }
        ErrorLine {
            width: parent.width
            text: step.value.error
            onCame: step.failed(this)
        }
        Item {
            visible: buttons.count > 0
            width: parent.width
            height: flow.height + 6

            Flow {
                id: flow
                y: 6
                width: parent.width
                spacing: Tokens.gap

                Repeater {
                    id: buttons
                    // A number as the model keeps the items, and so the focus, when a button changes.
                    model: step.value.buttons.length

                    PushButton {
                        required property int index
                        readonly property var entry: step.value.buttons[index]
                        width: Math.min(implicitWidth, flow.width)
                        title: entry?.title ?? ""
                        isPrimary: entry?.isPrimary ?? false
                        enabled: entry?.isEnabled ?? false
                        onPressed: step.pressed(entry)
                    }
                }
            }
        }
    }
}
