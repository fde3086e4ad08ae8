import QtQuick
import Ostrel.Views

/// The panel below the status item.
FocusScope {
    id: root

    required property PanelState panel
    readonly property real ends: header.height + footer.height

    width: Tokens.panelWidth
    height: ends + Math.min(body.contentHeight, Math.max(0, Math.floor(panel.maxHeight - ends)))
    focus: true
    LayoutMirroring.enabled: panel.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onEscapePressed: panel.dismissed()
    Keys.onUpPressed: body.scroll(-Tokens.rowHeight)
    Keys.onDownPressed: body.scroll(Tokens.rowHeight)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageUp)
            body.scroll(-body.height);
        else if (event.key === Qt.Key_PageDown)
            body.scroll(body.height);
        else
            return;
        event.accepted = true;
    }

    Connections {
        target: root.panel
        function onOpened(fadesIn) {
            nowhere.forceActiveFocus();
            health.personFolds = false;
            footer.showsMore = false;
            body.contentY = 0;
            fade.stop();
            content.opacity = 1;
            if (fadesIn)
                fade.start();
        }
    }
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            body.reveal(root.Window.window.activeFocusItem);
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Tokens.panelRadius
        color: Tokens.panel
        border.color: Tokens.edge
        border.width: 1
    }
    // Has the focus until the person goes to a button.
    Item {
        id: nowhere
        focus: true
    }
    Item {
        id: content
        anchors.fill: parent

        NumberAnimation on opacity {
            id: fade
            running: false
            from: 0
            to: 1
            duration: 120
        }
        PanelHeader {
            id: header
            width: parent.width
            panel: root.panel
        }
        Flickable {
            id: body

            function scroll(by: real): void {
                contentY = Math.max(0, Math.min(contentY + by, contentHeight - height));
            }
            function reveal(item: Item): void {
                for (let outer = item; outer !== rows; outer = outer.parent) {
                    if (!outer)
                        return;
                }
                const top = item.mapToItem(rows, 0, 0).y - Tokens.gap;
                const bottom = top + item.height + 2 * Tokens.gap;
                if (top < contentY)
                    contentY = Math.max(0, top);
                else if (bottom > contentY + height)
                    contentY = Math.min(bottom, contentHeight) - height;
            }

            width: parent.width
            anchors.top: header.bottom
            anchors.bottom: footer.top
            contentHeight: Math.ceil(rows.height)
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Column {
                id: rows
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.leftMargin: Tokens.margin
                anchors.rightMargin: Tokens.margin
                bottomPadding: Tokens.margin
                spacing: Tokens.gap

                StatusLine {
                    visible: value.text !== ""
                    width: parent.width
                    value: root.panel.status
                }
                Repeater {
                    model: root.panel.cards

                    AttentionCard {
                        required property cardValue entry
                        width: rows.width
                        value: entry
                        onPressed: root.panel.press(entry.button)
                    }
                }
                ProtectionList {
                    visible: root.panel.protection.isShown
                    width: parent.width
                    panel: root.panel
                }
                HealthList {
                    id: health
                    visible: root.panel.health.isShown
                    width: parent.width
                    panel: root.panel
                }
                FactList {
                    anchors.left: parent.left
                    anchors.right: parent.right
                    anchors.margins: 4
                    topPadding: 8
                    panel: root.panel
                }
            }
        }
        Hairline {
            visible: body.contentY > 0
            anchors.top: body.top
            width: parent.width
        }
        Rectangle {
            visible: body.interactive
            anchors.right: parent.right
            anchors.rightMargin: 3
            width: 4
            radius: 2
            y: body.y + body.visibleArea.yPosition * body.height
            height: body.visibleArea.heightRatio * body.height
            color: Tokens.off
            opacity: 0.6
        }
        PanelFooter {
            id: footer
            width: parent.width
            anchors.bottom: parent.bottom
            panel: root.panel
        }
    }
}
