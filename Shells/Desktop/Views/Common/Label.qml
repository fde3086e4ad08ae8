import QtQuick
import Ostrel.Views

/// A text, whatever its length and characters. What it belongs to says it to assistive tools.
Text {
    // Without a wrap. The implicit width changes with the width, so no width may depend on it.
    function lineWidth(): real {
        return Math.ceil(Look.widthOf(text, font)) + 1;
    }
    function widestWord(): real {
        return Math.max(...text.split(" ").map(word => Math.ceil(Look.widthOf(word, font)) + 1));
    }

    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft // as the panel runs, whichever way the text does
    color: Tokens.ink
    font.pixelSize: Tokens.bodySize
    Accessible.ignored: true
}
