import QtQuick
import Ostrel.Views

/// One line of a page, on the ground of its list where it belongs to one.
Item {
    id: line

    required property AgentWindowState agent
    required property pageLineValue value

    implicitHeight: value.gap + Math.ceil(content.height)

    // The ground of a list is drawn in pieces, one a line.
    Item {
        visible: line.value.isListed
        y: line.value.gap
        width: parent.width
        height: parent.height - y
        clip: true

        Rectangle {
            readonly property real above: line.value.isFirst ? 0 : 2 * radius
            readonly property real below: line.value.isLast ? 0 : 2 * radius
            y: -above
            width: parent.width
            height: parent.height + above + below
            radius: Tokens.cardRadius
            color: Tokens.card
            border.color: Tokens.listRim
        }
        Separator {
            visible: !line.value.isFirst
            anchors.left: parent.left
            anchors.leftMargin: line.value.type === LineType.State || line.value.type === LineType.Card ? 12 + Tokens.markSize + 8 : 12
            anchors.right: parent.right
        }
    }
    Loader {
        id: content
        y: line.value.gap
        width: parent.width
        // By the files' names, so that only those are read that a page needs.
        Component.onCompleted: setSource(["State", "Fact", "Card", "Switch", "Text", "Text", "Text", "Buttons", "Notice"][line.value.type] + "Line.qml", {
            line: line
        })
    }
}
