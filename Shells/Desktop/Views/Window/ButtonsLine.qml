import QtQuick
import Ostrel.Views

/// Buttons beside each other.
Flow {
    id: root

    required property PageLine line

    spacing: 8

    Repeater {
        // A number as the model keeps the items, and so the focus, when a button changes.
        model: root.line.value.buttons.length

        PushButton {
            required property int index
            readonly property var entry: root.line.value.buttons[index]
            width: Math.min(implicitWidth, root.width)
            title: entry?.title ?? ""
            enabled: entry?.isEnabled ?? false
            onPressed: root.line.agent.press(entry)
        }
    }
}
