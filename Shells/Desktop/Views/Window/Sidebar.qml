import QtQuick
import Ostrel.Views

/// What the Mac's state is, and the pages. One stop of the Tab key: the arrow keys choose the page.
Rectangle {
    id: sidebar

    required property AgentWindowState agent
    readonly property int count: items.count
    readonly property bool hasFocus: list.activeFocus
    // Only the keyboard shows where the focus is.
    property bool showsFocus: false

    function takeFocus(): void {
        list.forceActiveFocus();
        showsFocus = false;
    }
    function move(by: int): void {
        showsFocus = true;
        agent.movePage(by);
    }
    function choose(index: int): void {
        agent.choosePage(items.itemAt(index).entry.page);
    }

    color: Tokens.sidebar

    Item {
        id: who
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 16
        y: 16
        height: Math.max(shield.height, words.height)
        Accessible.role: Accessible.Heading
        Accessible.name: words.accessibleName

        Shield {
            id: shield
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: Math.round(27 * Tokens.textScale)
            height: Math.round(30 * Tokens.textScale)
            kind: sidebar.agent.header.kind
            fill: Tokens.stateColor(sidebar.agent.header.kind)
            mark: Tokens.sidebar
        }
        Column {
            id: words
            readonly property string accessibleName: [word.text, enrolment.text].filter(text => text !== "").join(", ")
            anchors.left: shield.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter

            Label {
                id: word
                width: parent.width
                text: sidebar.agent.header.word
                font.pixelSize: Tokens.titleSize
                font.weight: Font.DemiBold
            }
            Label {
                id: enrolment
                visible: text !== ""
                width: parent.width
                text: sidebar.agent.enrolment
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
            }
        }
    }
    Scroller {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: who.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        contentHeight: column.height + 16
        activeFocusOnTab: true
        Keys.onUpPressed: sidebar.move(-1)
        Keys.onDownPressed: sidebar.move(1)
        onActiveFocusChanged: {
            if (!activeFocus)
                sidebar.showsFocus = true;
        }
        // What is chosen is spoken when the list gets the focus, and when that changes.
        Accessible.role: Accessible.List
        Accessible.name: sidebar.agent.title
        Accessible.focusable: true

        Column {
            id: column
            width: parent.width

            Repeater {
                id: items
                model: sidebar.agent.sidebar

                Column {
                    id: item
                    required property sidebarItemValue entry
                    readonly property bool isShown: entry.page === sidebar.agent.page
                    width: column.width

                    Label {
                        visible: text !== ""
                        leftPadding: 16
                        rightPadding: 16
                        topPadding: 8
                        bottomPadding: 4
                        width: parent.width
                        text: item.entry.caption
                        font.pixelSize: Tokens.captionSize
                        font.weight: Font.DemiBold
                        color: Tokens.dim
                    }
                    Rectangle {
                        id: row
                        x: 8
                        width: parent.width - 16
                        height: Math.max(Math.round(28 * Tokens.textScale), title.height + 8)
                        radius: 6
                        color: item.isShown ? Tokens.selection : "transparent"
                        border.color: Tokens.accent
                        readonly property bool isShown: item.isShown
                        onIsShownChanged: {
                            if (isShown)
                                list.reveal(this);
                        }
                        border.width: item.isShown && list.activeFocus && sidebar.showsFocus ? 2 : 0
                        Accessible.role: Accessible.ListItem
                        Accessible.name: item.entry.accessibleName
                        Accessible.selectable: true
                        Accessible.selected: item.isShown
                        Accessible.onPressAction: sidebar.agent.choosePage(item.entry.page)

                        Label {
                            id: title
                            anchors.left: parent.left
                            anchors.leftMargin: 8
                            anchors.right: parent.right
                            anchors.rightMargin: 8 + (mark.visible ? mark.width + 8 : 0)
                            anchors.verticalCenter: parent.verticalCenter
                            text: item.entry.title
                            font.weight: item.isShown ? Font.DemiBold : Font.Normal
                        }
                        StateMark {
                            id: mark
                            visible: item.entry.hasMark
                            anchors.right: parent.right
                            anchors.rightMargin: 8
                            anchors.verticalCenter: parent.verticalCenter
                            width: Tokens.markSize
                            height: Tokens.markSize
                            kind: item.entry.kind
                            color: Tokens.stateColor(item.entry.kind)
                            ground: item.isShown ? Tokens.selection : Tokens.sidebar
                        }
                        MouseArea {
                            anchors.fill: parent
                            onClicked: {
                                sidebar.takeFocus();
                                sidebar.agent.choosePage(item.entry.page);
                            }
                        }
                    }
                }
            }
        }
    }
    Separator {
        anchors.right: parent.right
        width: 1 / Screen.devicePixelRatio
        height: parent.height
    }
}
