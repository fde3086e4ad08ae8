import QtQuick
import Ostrel.Views

/// A caption, a note or what a page is for.
AccessibleLabel {
    id: root

    required property PageLine line

    readonly property bool isLede: root.line.value.type === LineType.Lede
    leftPadding: isLede ? 0 : 12
    rightPadding: leftPadding
    text: root.line.value.text
    lineHeight: Tokens.paragraph
    font.pixelSize: isLede ? Tokens.bodySize : Tokens.smallSize
    font.weight: root.line.value.type === LineType.Caption ? Font.DemiBold : Font.Normal
    color: isLede ? Tokens.ink : Tokens.dim
}
