import QtQuick
import Ostrel.Views

/// A page of lines from top to bottom.
Scroller {
    id: page

    required property AgentWindowState agent

    contentHeight: Math.ceil(column.height)

    Column {
        id: column
        x: Math.round((page.width - width) / 2)
        width: Math.min(Tokens.pageWidth, page.width - 2 * Tokens.windowMargin)
        topPadding: 20
        bottomPadding: 20

        HeadingLabel {
            width: parent.width
            text: page.agent.title
            font.pixelSize: Tokens.wordSize
            font.letterSpacing: -0.2
        }
        Item {
            visible: status.value.text !== ""
            width: parent.width
            height: status.height + 12

            StatusLine {
                id: status
                y: 12
                width: parent.width
                value: page.agent.status
            }
        }
        Repeater {
            model: page.agent.lines

            PageLine {
                required property pageLineValue entry
                width: column.width
                agent: page.agent
                value: entry
            }
        }
    }
}
