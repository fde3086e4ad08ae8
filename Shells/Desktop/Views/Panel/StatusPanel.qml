import QtQuick
import Ostrel.Views

/// The panel below the status item. Its header and footer stay while what is between them scrolls; where they would
/// leave too little room for that, all of it scrolls.
FocusScope {
    id: root

    required property PanelState panel
    readonly property int cornerRadius: Tokens.panelRadius
    readonly property color edgeColor: Tokens.rim
    readonly property real leastRoom: 3 * Tokens.rowHeight
    readonly property real room: Math.floor(Math.max(panel.maxHeight, leastRoom))
    readonly property real ends: header.height + footer.height
    readonly property bool scrollsAll: ends + Math.min(body.contentHeight, leastRoom) > room
    readonly property Scroller scroller: scrollsAll ? everything : body

    width: Tokens.panelWidth
    height: Math.min(ends + body.contentHeight, room)
    focus: true
    LayoutMirroring.enabled: panel.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onEscapePressed: panel.dismissed()
    Keys.onPressed: event => event.accepted = scroller.scrollByKey(event.key)

    Connections {
        target: root.panel
        function onOpened(fadesIn) {
            focusSink.forceActiveFocus();
            health.userToggled = false;
            footer.showsMore = false;
            everything.contentY = 0;
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
            root.scroller.reveal(root.Window.window.activeFocusItem);
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: root.cornerRadius
        color: Tokens.panel
        border.color: Tokens.rim
        border.width: 1
    }
    // Has the focus until the user moves it to a button.
    Item {
        id: focusSink
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
        Scroller {
            id: everything
            anchors.fill: parent
            // Scrolled content does not cover the panel's border.
            anchors.topMargin: root.scrollsAll ? 1 : 0
            anchors.bottomMargin: root.scrollsAll ? 1 : 0
            contentHeight: header.height + body.height + footer.height

            PanelHeader {
                id: header
                width: parent.width
                panel: root.panel
            }
            Scroller {
                id: body
                width: parent.width
                height: root.scrollsAll ? contentHeight : root.height - root.ends
                anchors.top: header.bottom
                contentHeight: Math.ceil(rows.height)

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
            Separator {
                visible: body.contentY > 0
                anchors.top: body.top
                width: parent.width
            }
            PanelFooter {
                id: footer
                width: parent.width
                anchors.top: body.bottom
                panel: root.panel
            }
        }
        ScrollIndicator {
            scroller: root.scroller
            inset: root.scrollsAll ? root.cornerRadius : 0
        }
    }
}
