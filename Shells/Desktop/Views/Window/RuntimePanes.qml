import QtQuick
import Ostrel.Views

/// The list of runtimes with the selected one beside it. Each scrolls by itself.
Item {
    id: root

    required property AgentWindowState agent
    readonly property Scroller scroller: detail

    function reveal(item: Item): void {
        detail.reveal(item);
    }

    Scroller {
        id: list
        width: Math.round(208 * Math.min(Tokens.textScale, 1.6))
        height: parent.height
        anchors.left: parent.left
        contentHeight: pane.height

        RuntimePane {
            id: pane
            width: parent.width
            agent: root.agent
            onSelected: row => list.reveal(row)
        }
    }
    Separator {
        anchors.left: list.right
        width: 1 / Screen.devicePixelRatio
        height: parent.height
    }
    Scroller {
        id: detail
        anchors.left: list.right
        anchors.leftMargin: 1
        anchors.right: parent.right
        height: parent.height
        contentHeight: Math.ceil(texts.height)

        // Another runtime is read from its top.
        readonly property string name: root.agent.detail.name
        onNameChanged: contentY = 0

        Column {
            id: texts
            x: 20
            width: parent.width - 40
            topPadding: 16
            bottomPadding: 16
            spacing: 10

            Label {
                visible: text !== ""
                width: parent.width
                height: 140
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: root.agent.noSelection
                color: Tokens.dim
                Accessible.ignored: !visible
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Loader {
                visible: active
                active: root.agent.detail.name !== ""
                width: parent.width
                sourceComponent: RuntimeDetail {
                    agent: root.agent
                }
            }
            InsideContainers {
                width: parent.width
                agent: root.agent
            }
        }
    }
    ScrollIndicator {
        visible: list.interactive
        anchors.right: list.right
        scroller: list
    }
    ScrollIndicator {
        visible: detail.interactive
        scroller: detail
    }
}
