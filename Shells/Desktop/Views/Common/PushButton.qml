import QtQuick
import Ostrel.Views

Item {
    id: button

    property string title
    property string doneTitle // stands in place of the title, with a tick, while the button has just done its work
    property bool isPrimary: false
    property bool isQuiet: false
    property real fontSize: Tokens.smallSize
    property int sidePadding: isQuiet ? 5 : 10
    readonly property bool isLit: area.pressed || area.containsMouse

    signal pressed

    function widthOf(text: string): real {
        return Math.ceil(Theme.widthOf(text, label.font)) + 1;
    }
    function press(event: var): void {
        if (!event.isAutoRepeat)
            pressed();
    }
    // Assistive tools may press a button that is disabled or hidden.
    function pressBySpeech(): void {
        if (enabled && visible)
            pressed();
    }

    // The width stays when the title changes for a while.
    implicitWidth: Math.max(widthOf(title), doneTitle === "" ? 0 : tick.width + 5 + widthOf(doneTitle)) + 2 * sidePadding
    implicitHeight: Math.max(Math.round(24 * Tokens.textScale), Math.ceil(label.height) + 8)
    activeFocusOnTab: enabled
    opacity: enabled ? 1 : 0.5
    Keys.onSpacePressed: event => press(event)
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Accessible.role: Accessible.Button
    Accessible.ignored: !visible
    Accessible.name: label.text
    Accessible.focusable: enabled
    Accessible.onPressAction: pressBySpeech()

    Rectangle {
        anchors.fill: parent
        radius: Tokens.buttonRadius
        color: button.isPrimary ? Tokens.accent : Tokens.button
        border.color: button.isPrimary || button.isQuiet ? color : Tokens.edge
        opacity: button.isQuiet && !button.isLit ? 0 : area.pressed ? 0.7 : 1
    }
    Tick {
        id: tick
        visible: button.doneTitle !== ""
        anchors.right: label.left
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        color: button.isPrimary ? Tokens.accentInk : Tokens.ok
    }
    Label {
        id: label
        anchors.centerIn: parent
        anchors.horizontalCenterOffset: tick.visible ? (LayoutMirroring.enabled ? -1 : 1) * (tick.width + 5) / 2 : 0
        width: Math.min(lineWidth(), button.width - 2 * button.sidePadding)
        horizontalAlignment: Text.AlignHCenter
        text: button.doneTitle || button.title
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
