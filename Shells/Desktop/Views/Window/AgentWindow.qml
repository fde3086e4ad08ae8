import QtQuick
import Ostrel.Views

/// The agent window: a sidebar of pages and the shown one, which scrolls.
FocusScope {
    id: root

    required property AgentWindowState agent
    readonly property var containers: agent.isContainersPage ? containersLoader.item : null

    width: agent.size.width
    height: agent.size.height
    focus: true
    LayoutMirroring.enabled: agent.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onEscapePressed: agent.dismissed()
    Keys.onPressed: event => {
        const index = event.key - Qt.Key_1;
        if ((event.modifiers & Qt.ControlModifier) && index >= 0 && index < sidebar.count) {
            sidebar.choose(index);
            event.accepted = true;
        } else if ((event.modifiers & Qt.ControlModifier) && event.key === Qt.Key_W) {
            agent.dismissed();
            event.accepted = true;
        } else {
            event.accepted = (containers?.scroller ?? lines).scrollByKey(event.key);
        }
    }

    Connections {
        target: root.agent
        function onOpened() {
            sidebar.takeFocus();
            (root.containers?.scroller ?? lines).contentY = 0;
        }
        function onPageChanged() {
            lines.contentY = 0;
            // What had the focus has gone with its page.
            if (!sidebar.hasFocus)
                sidebar.takeFocus();
        }
    }
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            (root.containers ?? lines).reveal(root.Window.window.activeFocusItem);
        }
    }
    Rectangle {
        anchors.fill: parent
        color: Tokens.panel
    }
    Sidebar {
        id: sidebar
        anchors.left: parent.left
        width: Tokens.sidebarWidth
        height: parent.height
        agent: root.agent
    }
    Item {
        id: page
        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height

        PageLines {
            id: lines
            visible: !root.agent.isContainersPage
            anchors.fill: parent
            agent: root.agent
        }
        Loader {
            id: containersLoader
            // By its file's name, so that the file is not read before. It is kept, since making it takes long.
            readonly property bool isWanted: root.agent.isContainersPage
            anchors.fill: parent
            visible: isWanted
            onIsWantedChanged: {
                if (isWanted && !item)
                    setSource("ContainersPage.qml", {
                        agent: root.agent
                    });
            }
        }
        ScrollIndicator {
            visible: lines.visible && lines.interactive
            scroller: lines
        }
    }
}
