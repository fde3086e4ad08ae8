import QtQuick
import Ostrel.Views

/// A switch. What it shows is what is stored: a press asks for the other state.
Item {
    id: toggle

    property string name
    property bool isOn: false

    signal toggled(isOn: bool)

    function press(event: var): void {
        if (!event || !event.isAutoRepeat)
            toggled(!isOn);
    }
    // Assistive tools may press a switch that is disabled.
    function pressBySpeech(): void {
        if (enabled)
            press(null);
    }

    width: Math.round(34 * Tokens.textScale)
    height: Math.round(20 * Tokens.textScale)
    opacity: enabled ? 1 : 0.5
    activeFocusOnTab: enabled
    Keys.onSpacePressed: event => press(event)
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Accessible.role: Accessible.CheckBox
    Accessible.ignored: !visible
    Accessible.name: name
    Accessible.focusable: enabled
    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.onPressAction: pressBySpeech()
    Accessible.onToggleAction: pressBySpeech()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: toggle.isOn ? Tokens.switchOn : Tokens.card
        border.color: toggle.isOn ? color : Tokens.edge
    }
    Rectangle {
        readonly property real gap: (toggle.height - height) / 2
        readonly property bool isRight: toggle.isOn !== LayoutMirroring.enabled
        width: Math.round(14 * Tokens.textScale)
        height: width
        radius: width / 2
        x: isRight ? toggle.width - width - gap : gap
        y: gap
        color: toggle.isOn ? Tokens.switchKnob : Tokens.edge
    }
    FocusRing {
        radius: toggle.height / 2 + 3
    }
    MouseArea {
        anchors.fill: parent
        anchors.margins: -4
        onClicked: toggle.press(null)
    }
}
