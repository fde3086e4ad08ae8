import QtQuick
import Ostrel.Views

/// How containers are started so that they trust the device certificate.
Column {
    id: inside

    required property AgentWindowState agent
    readonly property insideValue value: agent.inside

    topPadding: 6
    spacing: 10

    HeadingLabel {
        width: parent.width
        text: inside.value.title
    }
    AccessibleLabel {
        width: parent.width
        text: inside.value.lede
        lineHeight: Tokens.paragraph
        font.pixelSize: Tokens.smallSize
        color: Tokens.dim
    }
    SegmentedControl {
        width: parent.width
        name: inside.value.title
        titles: inside.value.choices
        chosen: inside.value.chosen
        onChoose: index => inside.agent.snippetChosen(index)
    }
    CodeBox {
        width: parent.width
        text: inside.value.snippet.shown
        name: inside.value.choices[inside.value.chosen] ?? ""
    }
    CopyButton {
        width: Math.min(implicitWidth, parent.width)
        value: inside.value.snippet.button
        onPressed: inside.agent.copy(inside.value.snippet.button)
    }
    AccessibleLabel {
        width: parent.width
        text: inside.value.covers
        lineHeight: Tokens.paragraph
        font.pixelSize: Tokens.smallSize
        color: Tokens.dim
    }
}
