import QtQuick
import Ostrel.Views

/// Notices, if there are any, and below them the buttons that are always there.
Item {
    id: footer

    required property PanelState panel
    readonly property bool hasMore: panel.moreName !== ""
    property bool showsMore: false

    implicitHeight: line.y + Math.ceil(content.height) + 18

    Column {
        id: notices
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Tokens.margin + 4 // as the facts above
        bottomPadding: texts.count > 0 ? 10 : 0
        spacing: 5

        Repeater {
            id: texts
            model: footer.panel.notices

            Label {
                required property string entry
                width: notices.width
                text: entry
                lineHeight: Tokens.paragraph
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
                Accessible.ignored: false
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
    }
    Separator {
        id: line
        y: Math.ceil(notices.height)
        width: parent.width
    }
    Column {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Tokens.margin
        y: line.y + 9
        spacing: 5

        Item {
            visible: buttons.count > 0 || footer.hasMore
            width: parent.width
            height: Math.max(flow.height, more.height)

            Flow {
                id: flow
                anchors.left: parent.left
                anchors.right: more.left
                anchors.rightMargin: spacing
                spacing: 5

                // In a single line the first button is at the left and the others are at the right.
                readonly property real slack: {
                    let left = width + spacing;
                    for (let i = 0; i < buttons.count; ++i)
                        left -= (buttons.itemAt(i)?.implicitWidth ?? 0) + spacing;
                    return Math.max(0, Math.floor(left));
                }

                Repeater {
                    id: buttons
                    model: footer.panel.footerButtons

                    Item {
                        id: place
                        required property buttonValue entry
                        required property int index
                        implicitWidth: button.implicitWidth
                        implicitHeight: button.implicitHeight
                        width: button.width + (index === 1 ? flow.slack : 0)

                        PushButton {
                            id: button
                            anchors.right: parent.right
                            width: Math.min(implicitWidth, flow.width)
                            fontSize: Tokens.chipSize
                            isQuiet: place.index > 0
                            sidePadding: isQuiet ? 4 : 8
                            title: place.entry.title
                            enabled: place.entry.isEnabled
                            onPressed: footer.panel.press(place.entry)
                        }
                    }
                }
            }
            PushButton {
                id: more
                visible: footer.hasMore
                anchors.right: parent.right
                isQuiet: true
                fontSize: Tokens.chipSize
                title: "⋯"
                Accessible.name: footer.panel.moreName
                Accessible.description: footer.panel.moreTitles
                Accessible.checkable: true
                Accessible.checked: footer.showsMore
                onPressed: {
                    footer.showsMore = !footer.showsMore;
                    footer.panel.folded();
                }
            }
        }
        Flow {
            visible: footer.showsMore
            width: parent.width
            spacing: 5

            Repeater {
                model: footer.showsMore ? footer.panel.moreButtons : null

                PushButton {
                    required property buttonValue entry
                    width: Math.min(implicitWidth, content.width)
                    fontSize: Tokens.chipSize
                    isQuiet: true
                    sidePadding: 4
                    title: entry.title
                    enabled: entry.isEnabled
                    onPressed: footer.panel.press(entry)
                }
            }
        }
    }
}
