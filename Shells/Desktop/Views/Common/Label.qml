import QtQuick
import Ostrel.Views

/// A plain text of any length. Assistive tools read it from the item that it belongs to.
Text {
    // Without a wrap. The implicit width changes with the width, so no width may depend on it.
    function lineWidth(): real {
        return Math.ceil(Theme.widthOf(text, font)) + 1;
    }
    function widestWord(): real {
        return Math.max(...text.split(" ").map(word => Math.ceil(Theme.widthOf(word, font)) + 1));
    }

    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft // by the direction of the panel, not of the text
    color: Tokens.ink
    font.pixelSize: Tokens.bodySize
    Accessible.ignored: true
}
