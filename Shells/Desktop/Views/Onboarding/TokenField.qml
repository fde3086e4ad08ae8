import QtQuick
import Ostrel.Views

/// A line for the token, which can be neither read nor copied.
Rectangle {
    id: field

    property string accessibleName
    property string accessibleDescription

    function secret(): string {
        return input.secret();
    }
    function clear(): void {
        input.clear();
    }
    function takeFocus(): void {
        input.forceActiveFocus();
    }

    implicitHeight: Math.round(31 * Tokens.textScale)
    radius: Tokens.buttonRadius
    color: Tokens.card
    border.color: input.activeFocus ? Tokens.accent : Tokens.edge
    border.width: input.activeFocus ? 2 : 1
    opacity: enabled ? 1 : 0.5

    PasswordField {
        id: input
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        anchors.topMargin: Math.round(7 * Tokens.textScale)
        anchors.bottomMargin: anchors.topMargin
        activeFocusOnTab: enabled
        dotSize: Math.round(6 * Tokens.textScale)
        ink: Tokens.ink
        selectionColor: Tokens.accent
        selectedInk: Tokens.accentInk
        // Not Accessible.passwordEdit: the toolkit then leaves out the name.
        Accessible.role: Accessible.EditableText
        Accessible.focusable: enabled
        Accessible.name: field.accessibleName
        Accessible.description: field.accessibleDescription
    }
}
