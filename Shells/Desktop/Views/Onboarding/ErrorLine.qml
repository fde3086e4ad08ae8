import QtQuick
import Ostrel.Views

/// Why something failed.
AccessibleLabel {
    id: line

    /// There is another error to announce.
    signal came

    font.pixelSize: Tokens.smallSize
    lineHeight: Tokens.paragraph
    color: Tokens.badText
    Accessible.role: Accessible.AlertMessage
    onTextChanged: {
        if (text !== "")
            came();
    }
}
