import QtQuick
import Ostrel.Views

/// A short word about a thing, such as "running".
Rectangle {
    id: chip

    property string text
    property bool isWarning: false
    property bool isOnSelection: false

    implicitWidth: label.lineWidth() + 14
    implicitHeight: Math.round(16 * Tokens.textScale)
    radius: height / 2
    color: isWarning || isOnSelection ? Tokens.card : Tokens.chip
    border.color: isWarning ? Tokens.warn : "transparent"

    Label {
        id: label
        anchors.centerIn: parent
        width: Math.min(lineWidth(), chip.width - 14)
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        text: chip.text
        font.pixelSize: Tokens.captionSize
        font.weight: Font.Medium
        color: chip.isWarning ? Tokens.warn : Tokens.ink
    }
}
