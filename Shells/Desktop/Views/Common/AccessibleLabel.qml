import QtQuick
import Ostrel.Views

/// A text that assistive tools read as a part of its own; without text there is none.
Label {
    visible: text !== ""
    Accessible.ignored: !visible
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
