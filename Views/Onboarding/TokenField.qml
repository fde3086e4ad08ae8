import QtQuick
import Ostrel.Views

/// A line for the token, which nobody can read or copy.
Rectangle {
    id: field

    property alias text: input.text
    property string spoken
    property string spokenDescription

    function clear(): void {
        input.clear();
    }
    function takeFocus(): void {
        input.forceActiveFocus();
    }

    implicitHeight: Math.ceil(input.implicitHeight) + 14
    radius: Tokens.buttonRadius
    color: Tokens.card
    border.color: input.activeFocus ? Tokens.accent : Tokens.edge
    border.width: input.activeFocus ? 2 : 1
    opacity: enabled ? 1 : 0.5

    TextInput {
        id: input
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        verticalAlignment: TextInput.AlignVCenter
        clip: true
        activeFocusOnTab: enabled
        echoMode: TextInput.Password
        passwordMaskDelay: 0
        inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
        maximumLength: 0x7fffffff
        selectByMouse: true
        color: Tokens.ink
        selectionColor: Tokens.accent
        selectedTextColor: Tokens.accentInk
        font.pixelSize: Tokens.bodySize
        Accessible.role: Accessible.EditableText
        Accessible.passwordEdit: true
        Accessible.name: field.spoken
        Accessible.description: field.spokenDescription
    }
}
