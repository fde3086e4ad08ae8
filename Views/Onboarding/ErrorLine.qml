import QtQuick
import Ostrel.Views

/// Why something failed.
Label {
    id: line

    /// There is another error to tell.
    signal came

    visible: text !== ""
    font.pixelSize: Tokens.smallSize
    lineHeight: Tokens.paragraph
    color: Tokens.bad
    Accessible.ignored: !visible
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    onTextChanged: {
        if (text !== "")
            came();
    }
}
