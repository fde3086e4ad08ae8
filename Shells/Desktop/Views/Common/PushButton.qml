import QtQuick
import Ostrel.Views

Item {
    id: button

    property string title
    property bool isPrimary: false
    property bool isQuiet: false
    property real fontSize: Tokens.smallSize
    property int sidePadding: isQuiet ? 5 : 10
    readonly property bool isLit: area.pressed || area.containsMouse

    signal pressed

    function press(event: var): void {
        if (!event.isAutoRepeat)
            pressed();
    }
    // Assistive tools may press a button that is disabled or hidden.
    function pressBySpeech(): void {
        if (enabled && visible)
            pressed();
    }

    implicitWidth: label.lineWidth() + 2 * sidePadding
    implicitHeight: Math.ceil(label.height) + 10
    activeFocusOnTab: enabled
    opacity: enabled ? 1 : 0.5
    Keys.onSpacePressed: event => press(event)
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Accessible.role: Accessible.Button
    Accessible.ignored: !visible
    Accessible.name: title
    Accessible.focusable: enabled
    Accessible.onPressAction: pressBySpeech()

    Rectangle {
        anchors.fill: parent
        radius: Tokens.buttonRadius
        color: button.isPrimary ? Tokens.accent : Tokens.button
        opacity: button.isQuiet && !button.isLit ? 0 : area.pressed ? 0.7 : 1
    }
    Label {
        id: label
        anchors.centerIn: parent
        width: Math.min(lineWidth(), button.width - 2 * button.sidePadding)
        horizontalAlignment: Text.AlignHCenter
        text: button.title
        font.pixelSize: button.fontSize
        font.weight: Font.Medium
        color: button.isPrimary ? Tokens.accentInk : button.isQuiet ? Tokens.dim : Tokens.ink
    }
    FocusRing {}
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.pressed()
    }
}
