import QtQuick
import Ostrel.Views

/// The containers page: the runtimes with the selected one beside them or, where that has no room, in one column.
Item {
    id: page

    required property AgentWindowState agent
    readonly property bool isNarrow: width < 560 * Tokens.textScale
    readonly property Scroller scroller: isNarrow ? column : detail
    readonly property real panesTop: status.value.text === "" ? 0 : status.height + 12

    function reveal(item: Item): void {
        list.reveal(item);
        detail.reveal(item);
        column.reveal(item);
    }

    StatusLine {
        id: status
        visible: page.panesTop > 0
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: page.isNarrow ? 20 : 12
        y: 12
        value: page.agent.status
    }
    Item {
        id: panes
        visible: !page.isNarrow
        anchors.fill: parent
        anchors.topMargin: page.panesTop

        Scroller {
            id: list
            width: Math.round(208 * Math.min(Tokens.textScale, 1.6))
            height: parent.height
            anchors.left: parent.left
            contentHeight: pane.height

            RuntimePane {
                id: pane
                width: parent.width
                agent: page.agent
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
                    text: page.agent.noSelection
                    color: Tokens.dim
                    Accessible.ignored: !visible
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                RuntimeDetail {
                    visible: page.agent.detail.name !== ""
                    width: parent.width
                    agent: page.agent
                }
                InsideContainers {
                    width: parent.width
                    agent: page.agent
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
    Scroller {
        id: column
        visible: page.isNarrow
        anchors.fill: parent
        anchors.topMargin: page.panesTop
        contentHeight: Math.ceil(runtimes.height)

        RuntimeColumn {
            id: runtimes
            x: 20
            width: parent.width - 40
            agent: page.agent
            isActive: page.isNarrow
        }
    }
    ScrollIndicator {
        visible: page.isNarrow && column.interactive
        scroller: column
    }
}
