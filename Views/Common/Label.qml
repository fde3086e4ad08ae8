import QtQuick
import Ostrel.Views

/// A text, whatever its length and characters. What it belongs to says it to assistive tools.
Text {
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    color: Tokens.ink
    font.pixelSize: Tokens.bodySize
    Accessible.ignored: true
}
