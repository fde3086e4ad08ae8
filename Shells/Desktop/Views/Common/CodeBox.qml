import QtQuick
import Ostrel.Views

/// A command or a file's text: it wraps, between words where it can, and its text can be selected.
Rectangle {
    id: box

    property string text
    property string name // for assistive tools

    implicitHeight: Math.ceil(code.implicitHeight) + 16
    radius: 8
    color: Tokens.code
    border.color: Tokens.line

    TextEdit {
        id: code
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        anchors.topMargin: 8
        anchors.bottomMargin: 8
        // Commands run from left to right in every language.
        LayoutMirroring.enabled: false
        horizontalAlignment: TextEdit.AlignLeft
        text: box.text
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        readOnly: true
        selectByMouse: true
        selectByKeyboard: true
        cursorDelegate: Item {}
        activeFocusOnTab: true
        color: Tokens.ink
        selectionColor: Tokens.accent
        selectedTextColor: Tokens.accentInk
        font.family: Theme.codeFamily
        font.pixelSize: Tokens.captionSize
        Accessible.role: Accessible.EditableText
        Accessible.ignored: !visible
        Accessible.readOnly: true
        Accessible.multiLine: true
        Accessible.name: box.name
        onActiveFocusChanged: {
            if (!activeFocus)
                deselect();
        }
        // Tab leaves the text.
        KeyNavigation.priority: KeyNavigation.BeforeItem
        Keys.onTabPressed: event => (nextItemInFocusChain(true)?.forceActiveFocus(Qt.TabFocusReason), event.accepted = true)
        Keys.onBacktabPressed: event => (nextItemInFocusChain(false)?.forceActiveFocus(Qt.BacktabFocusReason), event.accepted = true)
    }
    FocusRing {
        radius: box.radius + 3
        visible: code.activeFocus
    }
}
