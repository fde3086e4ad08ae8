import QtQuick
import Ostrel.Views

/// A label with a switch.
Item {
    id: root

    required property PageLine line

    implicitHeight: Math.max(Tokens.rowHeight, label.height + 16)

    Label {
        id: label
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: knob.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: root.line.value.label
    }
    ToggleSwitch {
        id: knob
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        name: root.line.value.label
        isOn: root.line.value.isOn
        enabled: root.line.value.isEnabled
        onToggled: isOn => root.line.agent.notifySwitched(root.line.value.id, isOn)
    }
}
