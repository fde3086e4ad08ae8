import QtQuick
import Ostrel.Views

/// The containers page: the runtimes with the selected one beside them or, where that has no room, in one column.
Item {
    id: page

    required property AgentWindowState agent
    readonly property bool isNarrow: width < 560 * Tokens.textScale
    readonly property real panesTop: status.value.text === "" ? 0 : status.height + 12
    readonly property Scroller scroller: body.item?.scroller ?? null

    function reveal(item: Item): void {
        body.item?.reveal(item);
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
    Loader {
        id: body
        anchors.fill: parent
        anchors.topMargin: page.panesTop
        sourceComponent: page.isNarrow ? column : panes
    }
    Component {
        id: panes

        RuntimePanes {
            agent: page.agent
        }
    }
    Component {
        id: column

        RuntimeColumn {
            agent: page.agent
        }
    }
}
