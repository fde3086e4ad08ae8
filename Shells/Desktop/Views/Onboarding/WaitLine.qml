import QtQuick
import Ostrel.Views

/// A text about work in progress, beside a clock that is not animated.
Item {
    id: line

    property string text
    property int fontSize: Tokens.bodySize

    visible: text !== ""
    implicitHeight: Math.ceil(Math.max(label.height, clock.height))
    Accessible.role: Accessible.StaticText
    Accessible.ignored: !visible
    Accessible.name: text

    RoundMark {
        id: clock
        anchors.left: parent.left
        y: Math.round((label.height / label.lineCount - height) / 2)
        width: Math.round(1.1 * line.fontSize)
        height: width
        kind: StateKind.Info
        color: Tokens.dim
    }
    Label {
        id: label
        anchors.left: clock.right
        anchors.leftMargin: Tokens.gap
        anchors.right: parent.right
        text: line.text
        font.pixelSize: line.fontSize
        lineHeight: Tokens.paragraph
    }
}
