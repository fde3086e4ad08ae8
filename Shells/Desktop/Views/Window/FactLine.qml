import QtQuick
import Ostrel.Views

/// A label with its value and, at the end, a button. The value is below where it does not fit beside the label.
Item {
    id: line

    required property pageLineValue value
    readonly property real buttonRoom: button.visible ? button.width + 16 : pageButton.visible ? pageButton.width + 16 : 0
    readonly property real room: width - 24 - buttonRoom
    readonly property bool isStacked: value.text !== "" && label.lineWidth() + 16 + text.needed > room

    signal pressed
    signal pagePressed

    implicitHeight: Math.max(Tokens.rowHeight, Math.ceil(texts.height + 16), button.visible ? button.height + 14 : 0, pageButton.visible ? pageButton.height + 14 : 0)

    Item {
        id: texts
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: line.room
        height: line.isStacked ? text.y + text.height : Math.max(label.height, text.height)
        Accessible.role: Accessible.StaticText
        Accessible.name: line.value.accessibleName

        Label {
            id: label
            anchors.left: parent.left
            width: line.isStacked || line.value.text === "" ? line.room : lineWidth()
            text: line.value.label
        }
        Row {
            id: text
            readonly property real needed: state.lineWidth() + (addition.visible ? addition.lineWidth() : 0)
            anchors.right: parent.right
            y: line.isStacked ? label.height + 2 : 0
            width: line.isStacked ? line.room : needed
            layoutDirection: LayoutMirroring.enabled ? Qt.RightToLeft : Qt.LeftToRight

            Label {
                id: state
                width: Math.min(lineWidth(), line.room - (addition.visible ? addition.width : 0))
                text: line.value.text
                font.family: line.value.isCode ? Theme.codeFamily : Qt.application.font.family
                font.pixelSize: line.value.isCode ? Tokens.chipSize : Tokens.bodySize
                color: Tokens.stateInk(line.value.kind)
            }
            Label {
                id: addition
                visible: text !== ""
                width: lineWidth()
                text: line.value.addition
                color: Tokens.dim
            }
        }
    }
    PushButton {
        id: button
        visible: title !== ""
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, line.width / 2)
        title: line.value.button.title
        enabled: line.value.button.isEnabled
        isPrimary: line.value.isPrimary
        onPressed: line.pressed()
    }
    PushButton {
        id: pageButton
        visible: title !== ""
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, line.width / 2)
        title: line.value.pageButton.title
        isPrimary: line.value.pageButton.isPrimary
        onPressed: line.pagePressed()
    }
}
