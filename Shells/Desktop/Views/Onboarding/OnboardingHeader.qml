import QtQuick
import Ostrel.Views

Item {
    id: header

    required property onboardingHeaderValue value
    readonly property color tint: value.tint === StateKind.Info ? Tokens.accent : Tokens.stateColor(value.tint)

    implicitHeight: Math.ceil(Math.max(shield.height, texts.height))

    Shield {
        id: shield
        anchors.left: parent.left
        width: Math.round(40 * Tokens.textScale)
        height: Math.round(44.7 * Tokens.textScale)
        form: header.value.form
        isMarked: header.value.isMarked
        kind: header.value.mark
        fill: header.tint
        mark: header.value.form === ShieldForm.Filled ? Tokens.panel : header.tint
    }
    Column {
        id: texts
        anchors.left: shield.right
        anchors.leftMargin: 16
        anchors.right: parent.right
        y: Math.max(0, Math.round((shield.height - height) / 2))
        spacing: 4

        AccessibleLabel {
            width: parent.width
            text: header.value.title
            font.pixelSize: Tokens.wordSize
            font.weight: Font.DemiBold
            font.letterSpacing: -0.2
            Accessible.role: Accessible.Heading
        }
        AccessibleLabel {
            width: parent.width
            text: header.value.subtitle
            lineHeight: Tokens.paragraph
            color: Tokens.dim
        }
    }
}
