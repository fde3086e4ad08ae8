import QtQuick
import Ostrel.Views

/// A label with its value and, at the end, a button. The value is below where it does not fit beside the label.
Item {
    id: root

    required property PageLine line
    readonly property pageLineValue value: line.value
    readonly property real buttonRoom: button.active ? button.width + 16 : 0
    readonly property real room: width - 24 - buttonRoom
    readonly property bool isStacked: value.text !== "" && label.lineWidth() + 16 + text.needed > room

    implicitHeight: Math.max(Tokens.rowHeight, Math.ceil(texts.height + 16), button.active ? button.height + 14 : 0)

    Item {
        id: texts
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: root.room
        height: root.isStacked ? text.y + text.height : Math.max(label.height, text.height)
        Accessible.role: Accessible.StaticText
        Accessible.name: root.value.accessibleName

        Label {
            id: label
            anchors.left: parent.left
            width: root.isStacked || root.value.text === "" ? root.room : lineWidth()
            text: root.value.label
        }
        Flow {
            id: text
            readonly property real needed: state.lineWidth() + (addition.visible ? addition.lineWidth() : 0)
            anchors.right: parent.right
            y: root.isStacked ? label.height + 2 : 0
            width: root.isStacked ? root.room : needed

            Label {
                id: state
                width: Math.min(lineWidth(), root.room)
                text: root.value.text
                font.family: root.value.isCode ? Theme.codeFamily : Qt.application.font.family
                font.pixelSize: root.value.isCode ? Tokens.chipSize : Tokens.bodySize
                color: Tokens.stateInk(root.value.kind)
            }
            Label {
                id: addition
                visible: text !== ""
                width: Math.min(lineWidth(), root.room)
                text: root.value.addition
                color: Tokens.dim
            }
        }
    }
    Loader {
        id: button
        active: root.value.button.title !== ""
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(item?.implicitWidth ?? 0, root.width / 2)
        sourceComponent: PushButton {
            title: root.value.button.title
            enabled: root.value.button.isEnabled
            isPrimary: root.value.isPrimary
            onPressed: root.line.agent.pressLine(root.value)
        }
    }
}
