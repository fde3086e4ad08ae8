import QtQuick
import Ostrel.Views

/// The runtimes by section, as a list of one stop of the Tab key: the arrow keys choose.
Column {
    id: pane

    required property AgentWindowState agent
    // Only the keyboard shows where the focus is.
    property bool showsFocus: true

    function move(by: int): void {
        showsFocus = true;
        agent.moveRuntime(by);
    }

    /// A runtime has been selected.
    signal selected(row: Item)

    topPadding: 8
    bottomPadding: 12
    activeFocusOnTab: true
    Keys.onUpPressed: move(-1)
    Keys.onDownPressed: move(1)
    onActiveFocusChanged: {
        if (!activeFocus)
            showsFocus = true;
    }
    Accessible.role: Accessible.List
    Accessible.ignored: !visible
    Accessible.name: agent.detail.name || agent.title
    Accessible.focusable: true

    Label {
        visible: text !== ""
        x: 16
        topPadding: 8
        width: parent.width - 32
        text: pane.agent.checking
        color: Tokens.dim
        Accessible.ignored: !visible
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Repeater {
        model: pane.agent.runtimes

        Column {
            id: runtime
            required property runtimeValue entry
            required property int index
            width: pane.width

            Label {
                visible: text !== ""
                leftPadding: 16
                rightPadding: 16
                topPadding: 8
                bottomPadding: 4
                width: parent.width
                text: runtime.entry.caption
                font.pixelSize: Tokens.captionSize
                font.weight: Font.DemiBold
                color: Tokens.dim
                Accessible.ignored: !visible
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Rectangle {
                x: 8
                width: parent.width - 16
                height: Math.max(Math.round(28 * Tokens.textScale), name.height + 8)
                radius: 6
                color: runtime.entry.isSelected ? Tokens.selection : "transparent"
                // Without a selection at the first one, which the arrow keys select.
                readonly property bool isCurrent: runtime.entry.isSelected || (pane.agent.detail.name === "" && runtime.index === 0)
                readonly property bool isSelected: runtime.entry.isSelected
                onIsSelectedChanged: {
                    if (isSelected)
                        pane.selected(this);
                }
                border.color: Tokens.accent
                border.width: pane.activeFocus && pane.showsFocus && isCurrent ? 2 : 0
                Accessible.role: Accessible.ListItem
                Accessible.name: runtime.entry.accessibleName
                Accessible.selectable: true
                Accessible.selected: runtime.entry.isSelected
                Accessible.onPressAction: pane.agent.runtimeSelected(runtime.entry.name)

                Label {
                    id: name
                    anchors.left: parent.left
                    anchors.leftMargin: 8
                    anchors.right: chip.left
                    anchors.rightMargin: 4
                    anchors.verticalCenter: parent.verticalCenter
                    text: runtime.entry.name
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                    font.weight: runtime.entry.isSelected ? Font.DemiBold : Font.Normal
                    color: runtime.entry.isDim && !runtime.entry.isSelected ? Tokens.dim : Tokens.ink
                }
                Chip {
                    id: chip
                    readonly property var first: runtime.entry.chips[0]
                    visible: text !== ""
                    anchors.right: parent.right
                    anchors.rightMargin: 8
                    anchors.verticalCenter: parent.verticalCenter
                    width: visible ? Math.min(implicitWidth, parent.width / 2) : 0
                    text: first?.text ?? ""
                    isWarning: first?.isWarning ?? false
                    isOnSelection: runtime.entry.isSelected
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: {
                        pane.forceActiveFocus();
                        pane.showsFocus = false;
                        pane.agent.runtimeSelected(runtime.entry.name);
                    }
                }
            }
        }
    }
}
