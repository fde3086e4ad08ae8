import QtQuick
import Ostrel.Views

/// The title of a page, or of a part of one.
Label {
    font.pixelSize: Tokens.titleSize
    font.weight: Font.DemiBold
    Accessible.ignored: !visible || text === ""
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
