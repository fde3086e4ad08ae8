import QtQuick
import Ostrel.Views

/// What an alert's window holds. Its buttons stay while the texts above them scroll; where they would leave too little
/// room for that, all of it scrolls.
FocusScope {
    id: root

    required property AlertState alert
    readonly property real leastRoom: 3 * Tokens.rowHeight
    readonly property real leastHeight: Math.min(page.contentHeight, leastRoom) + footer.height

    function pressPrimary(event: var): void {
        if (!event.isAutoRepeat)
            alert.press(0);
    }

    width: Math.min(Tokens.alertWidth, Math.floor(alert.room.width))
    height: Math.min(page.contentHeight + footer.height, Math.floor(alert.room.height))
    focus: true
    LayoutMirroring.enabled: alert.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onReturnPressed: event => pressPrimary(event)
    Keys.onEnterPressed: event => pressPrimary(event)
    Keys.onEscapePressed: alert.press(alert.buttons.length - 1)
    Keys.onPressed: event => event.accepted = page.scrollByKey(event.key)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: alert.title

    Connections {
        target: root.alert
        function onOpened() {
            page.contentY = 0;
            everything.contentY = 0;
            buttons.itemAt(0).forceActiveFocus();
            root.alert.announce(root);
        }
    }
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            everything.reveal(root.Window.window.activeFocusItem);
        }
    }
    Rectangle {
        anchors.fill: parent
        color: Tokens.panel
    }
    Scroller {
        id: everything
        anchors.fill: parent
        contentHeight: Math.max(root.height, root.leastHeight)

        Scroller {
            id: page
            width: parent.width
            height: everything.contentHeight - footer.height
            contentHeight: Math.ceil(Math.max(shield.height, texts.height)) + Tokens.windowMargin + Tokens.gap

            Shield {
                id: shield
                anchors.left: parent.left
                anchors.leftMargin: Tokens.windowMargin
                y: Tokens.windowMargin
                width: Math.round(40 * Tokens.textScale)
                height: Math.round(44.7 * Tokens.textScale)
                form: ShieldForm.HalfFilled
                isMarked: false
                fill: Tokens.accent
            }
            Column {
                id: texts
                anchors.left: shield.right
                anchors.leftMargin: 16
                anchors.right: parent.right
                anchors.rightMargin: Tokens.windowMargin
                y: Tokens.windowMargin
                spacing: 6

                AccessibleLabel {
                    width: parent.width
                    text: root.alert.title
                    font.pixelSize: Tokens.titleSize
                    font.weight: Font.Bold
                    Accessible.role: Accessible.Heading
                }
                AccessibleLabel {
                    width: parent.width
                    text: root.alert.text
                    lineHeight: Tokens.paragraph
                }
            }
        }
        ScrollIndicator {
            scroller: page
            inset: 3
        }
        Item {
            id: footer
            anchors.top: page.bottom
            width: parent.width
            height: flow.y + Math.ceil(flow.height) + Tokens.windowMargin

            Separator {
                visible: page.interactive
                width: parent.width
            }
            Flow {
                id: flow
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.leftMargin: Tokens.windowMargin
                anchors.rightMargin: Tokens.windowMargin
                y: 2 * Tokens.gap
                spacing: Tokens.gap
                layoutDirection: Qt.RightToLeft

                Repeater {
                    id: buttons
                    model: root.alert.buttons

                    PushButton {
                        required property string modelData
                        required property int index
                        width: Math.min(implicitWidth, flow.width)
                        fontSize: Tokens.bodySize
                        sidePadding: 16
                        title: modelData
                        isPrimary: index === 0
                        onPressed: root.alert.press(index)
                    }
                }
            }
        }
    }
    ScrollIndicator {
        scroller: everything
    }
}
