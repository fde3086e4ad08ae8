import QtQuick
import Ostrel.Views

/// Copies a text, and says for a while that it has.
PushButton {
    required property copyButtonValue value

    visible: title !== ""
    title: value.title
    doneTitle: value.copied
}
