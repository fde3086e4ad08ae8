import QtQuick
import Ostrel.Views

/// The buttons that are always there; notices take their place.
Item {
    id: footer

    required property PanelState panel
    readonly property bool hasNotices: notices.count > 0
    readonly property bool hasMore: panel.moreName !== ""
    property bool showsMore: false

    implicitHeight: Math.ceil(content.height) + 18

    Separator {
        width: parent.width
    }
    Column {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Tokens.margin
        y: 9
        spacing: 5

        Repeater {
            id: notices
            model: footer.panel.notices

            Label {
                required property string entry
                width: content.width
                text: entry
                lineHeight: Tokens.paragraph
                font.pixelSize: Tokens.smallSize
                color: Tokens.dim
                Accessible.ignored: false
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }
        Item {
            visible: !footer.hasNotices && (buttons.count > 0 || footer.hasMore)
            enabled: visible
            width: parent.width
            height: Math.max(flow.height, more.height)

            Flow {
                id: flow
                anchors.left: parent.left
                anchors.right: more.left
                anchors.rightMargin: spacing
                spacing: 5

                // What is left of a single line goes between the first button and the others.
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
            visible: !footer.hasNotices && footer.showsMore
            enabled: visible
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
