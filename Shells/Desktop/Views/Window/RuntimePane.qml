import QtQuick
import Ostrel.Views

/// The runtimes by section, as a list of one stop of the Tab key: the arrow keys choose.
Column {
    id: pane

    required property AgentWindowState agent

    topPadding: 8
    bottomPadding: 12
    activeFocusOnTab: true
    Keys.onUpPressed: agent.moveRuntime(-1)
    Keys.onDownPressed: agent.moveRuntime(1)
    Accessible.role: Accessible.List
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
                    width: visible ? implicitWidth : 0
                    text: first?.text ?? ""
                    isWarning: first?.isWarning ?? false
                    isOnSelection: runtime.entry.isSelected
                }
                FocusRing {
                    anchors.margins: 1
                    radius: 5
                    visible: pane.activeFocus && runtime.entry.isSelected
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: {
                        pane.forceActiveFocus();
                        pane.agent.runtimeSelected(runtime.entry.name);
                    }
                }
            }
        }
    }
}
