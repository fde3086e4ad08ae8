import QtQuick
import Ostrel.Views

/// The containers page in one column: the selected runtime's detail is below its row.
Item {
    id: root

    required property AgentWindowState agent
    readonly property Scroller scroller: page

    function reveal(item: Item): void {
        page.reveal(item);
    }

    Scroller {
        id: page
        anchors.fill: parent
        contentHeight: Math.ceil(column.height)

        Column {
            id: column
            x: 20
            width: parent.width - 40
            topPadding: 20
            bottomPadding: 20

            HeadingLabel {
                width: parent.width
                text: root.agent.title
                font.pixelSize: Tokens.wordSize
                font.letterSpacing: -0.2
            }
            AccessibleLabel {
                width: parent.width
                topPadding: 10
                text: root.agent.checking
                color: Tokens.dim
            }
            Repeater {
                model: root.agent.runtimes

                Column {
                    id: runtime
                    required property runtimeValue entry
                    readonly property bool isOpen: entry.isSelected
                    width: column.width

                    AccessibleLabel {
                        leftPadding: 12
                        rightPadding: 12
                        topPadding: 14
                        bottomPadding: 4
                        width: parent.width
                        text: runtime.entry.caption
                        font.pixelSize: Tokens.smallSize
                        font.weight: Font.DemiBold
                        color: Tokens.dim
                    }
                    Item {
                        width: parent.width
                        height: row.height + (detail.active ? detail.height + 12 : 0)
                        clip: true

                        // The ground of a section is drawn in pieces, one a runtime.
                        Rectangle {
                            readonly property real above: runtime.entry.isFirst ? 0 : 2 * radius
                            readonly property real below: runtime.entry.isLast ? 0 : 2 * radius
                            y: -above
                            width: parent.width
                            height: parent.height + above + below
                            radius: Tokens.cardRadius
                            color: Tokens.card
                            border.color: Tokens.listRim
                        }
                        Separator {
                            visible: !runtime.entry.isFirst
                            anchors.left: parent.left
                            anchors.leftMargin: name.x
                            anchors.right: parent.right
                        }
                        Item {
                            id: row
                            width: parent.width
                            height: Math.max(Tokens.rowHeight, chips.height + 12, name.height + 12)
                            activeFocusOnTab: true
                            Keys.onSpacePressed: event => toggle(event)
                            Keys.onReturnPressed: event => toggle(event)
                            Keys.onEnterPressed: event => toggle(event)
                            Accessible.role: Accessible.Button
                            Accessible.name: runtime.entry.accessibleName
                            Accessible.focusable: true
                            Accessible.checkable: true
                            Accessible.checked: runtime.isOpen
                            Accessible.onPressAction: toggle(null)

                            function toggle(event: var): void {
                                if (!event || !event.isAutoRepeat)
                                    root.agent.toggleRuntime(runtime.entry.name);
                            }

                            StateMark {
                                id: mark
                                anchors.left: parent.left
                                anchors.leftMargin: 12
                                anchors.verticalCenter: parent.verticalCenter
                                width: Tokens.markSize
                                height: Tokens.markSize
                                kind: runtime.entry.kind
                                color: Tokens.stateColor(runtime.entry.kind)
                                ground: Tokens.card
                            }
                            Label {
                                id: name
                                anchors.left: mark.right
                                anchors.leftMargin: 8
                                anchors.right: chips.left
                                anchors.rightMargin: 8
                                anchors.verticalCenter: parent.verticalCenter
                                text: runtime.entry.name
                                font.weight: Font.Medium
                            }
                            Flow {
                                id: chips
                                readonly property real needed: {
                                    let sum = 0;
                                    for (let i = 0; i < words.count; ++i)
                                        sum += (words.itemAt(i)?.implicitWidth ?? 0) + spacing;
                                    return sum;
                                }
                                anchors.right: arrow.left
                                anchors.rightMargin: 8 - (words.count > 0 ? spacing : 0)
                                anchors.verticalCenter: parent.verticalCenter
                                width: Math.min(needed, parent.width / 2)
                                spacing: 4

                                Repeater {
                                    id: words
                                    model: runtime.entry.chips.length

                                    Chip {
                                        width: Math.min(implicitWidth, chips.width)
                                        required property int index
                                        readonly property var chip: runtime.entry.chips[index]
                                        text: chip?.text ?? ""
                                        isWarning: chip?.isWarning ?? false
                                    }
                                }
                            }
                            Arrow {
                                id: arrow
                                anchors.right: parent.right
                                anchors.rightMargin: 12
                                anchors.verticalCenter: parent.verticalCenter
                                isOpen: runtime.isOpen
                            }
                            FocusRing {
                                anchors.margins: 1
                                radius: Tokens.cardRadius - 1
                            }
                            MouseArea {
                                anchors.fill: parent
                                onClicked: row.toggle(null)
                            }
                        }
                        Loader {
                            id: detail
                            active: runtime.isOpen
                            anchors.left: parent.left
                            anchors.leftMargin: 12 + Tokens.markSize + 8
                            anchors.right: parent.right
                            anchors.rightMargin: 12
                            anchors.top: row.bottom
                            sourceComponent: RuntimeDetail {
                                agent: root.agent
                                isNarrow: true
                            }
                        }
                    }
                }
            }
            Item {
                width: 1
                height: 18
            }
            InsideContainers {
                width: parent.width
                agent: root.agent
            }
        }
    }
    ScrollIndicator {
        visible: page.interactive
        scroller: page
    }
}
