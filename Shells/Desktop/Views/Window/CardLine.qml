import QtQuick
import Ostrel.Views

/// A card as a line of a list: its title, with a button or an arrow at the end, and below it detail, action and facts.
Item {
    id: card

    required property PageLine line
    readonly property pageLineValue value: line.value
    readonly property real textLeft: 12 + Tokens.markSize + 8
    readonly property real room: width - textLeft - 12
    readonly property bool isPlain: value.kind !== StateKind.Warn && value.kind !== StateKind.Bad
    readonly property bool hasArrow: value.isFoldable && !button.active
    readonly property real arrowRoom: hasArrow ? Tokens.arrowSize + 8 : 0
    readonly property bool isButtonBelow: button.active && heading.lineWidth() + 16 + button.implicitWidth + arrowRoom > room
    readonly property real endRoom: arrowRoom + (button.active && !isButtonBelow ? button.width + 16 : 0)
    // A grey or green state stands at the end of a row that folds, and beside the title of one that does not.
    readonly property bool isStateAtEnd: value.isFoldable && isPlain && !button.active
    readonly property real stateRoom: room - endRoom
    readonly property bool isStateBelow: heading.lineWidth() + 8 + state.lineWidth() > stateRoom
    readonly property real rowTop: button.active && !isButtonBelow ? 7 + Math.round((button.height - heading.height / heading.lineCount) / 2) : Math.round((Tokens.rowHeight - heading.height / heading.lineCount) / 2)

    function fold(event: var): void {
        if (value.isFoldable && (!event || !event.isAutoRepeat))
            line.agent.fold(value);
    }

    implicitHeight: Math.max(value.isOpen ? 0 : Tokens.rowHeight, Math.ceil(head.height) + (body.visible ? Math.ceil(body.height) + 12 : 0))

    Item {
        id: head
        readonly property real textBottom: card.isStateBelow && state.text !== "" ? state.y + state.height : heading.y + heading.height
        width: parent.width
        height: Math.max(Tokens.rowHeight, textBottom + 7, button.active && !card.isButtonBelow ? button.height + 14 : 0) - (body.visible ? 3 : 0)
        activeFocusOnTab: card.value.isFoldable
        Keys.onSpacePressed: event => card.fold(event)
        Keys.onReturnPressed: event => card.fold(event)
        Keys.onEnterPressed: event => card.fold(event)
        Accessible.role: card.value.isFoldable ? Accessible.Button : Accessible.StaticText
        Accessible.name: card.value.accessibleName
        Accessible.description: card.value.isFoldable ? "" : [card.value.detail, card.value.action].filter(text => text !== "").join(" ")
        Accessible.focusable: card.value.isFoldable
        Accessible.checkable: card.value.isFoldable
        Accessible.checked: card.value.isFoldable && card.value.isOpen
        Accessible.onPressAction: card.fold(null)

        StateMark {
            anchors.left: parent.left
            anchors.leftMargin: 12
            y: Math.round(heading.y + (heading.height / heading.lineCount - height) / 2)
            width: Tokens.markSize
            height: Tokens.markSize
            kind: card.value.kind
            color: Tokens.stateColor(card.value.kind)
            ground: Tokens.card
        }
        Label {
            id: heading
            anchors.left: parent.left
            anchors.leftMargin: card.textLeft
            y: card.rowTop
            width: Math.min(lineWidth(), card.room - card.endRoom)
            text: card.value.label
            font.weight: card.isStateAtEnd ? Font.Medium : Font.DemiBold
        }
        Label {
            id: state
            anchors.left: card.isStateBelow || !card.isStateAtEnd ? parent.left : undefined
            anchors.leftMargin: card.textLeft + (card.isStateBelow ? 0 : heading.width + 8)
            anchors.right: card.isStateBelow || !card.isStateAtEnd ? undefined : parent.right
            anchors.rightMargin: 12 + card.endRoom
            y: card.isStateBelow ? heading.y + heading.height + 1 : heading.y + heading.height - height - (card.isStateAtEnd ? 0 : 1)
            width: card.isStateBelow ? card.stateRoom : lineWidth()
            text: card.value.text
            font.pixelSize: card.isStateAtEnd ? Tokens.bodySize : Tokens.smallSize
            font.weight: card.isStateAtEnd || card.isPlain ? Font.Normal : Font.Medium
            color: Tokens.stateInk(card.value.kind)
        }
        Loader {
            active: card.hasArrow
            anchors.right: parent.right
            anchors.rightMargin: 12
            y: Math.round(heading.y + (heading.height / heading.lineCount - height) / 2)
            sourceComponent: Arrow {
                isOpen: card.value.isOpen
            }
        }
        FocusRing {
            anchors.margins: 1
            radius: Tokens.cardRadius - 1
        }
        MouseArea {
            enabled: card.value.isFoldable
            anchors.fill: parent
            onClicked: card.fold(null)
        }
    }
    Loader {
        id: button
        active: card.value.button.title !== ""
        anchors.left: card.isButtonBelow ? parent.left : undefined
        anchors.leftMargin: card.textLeft
        anchors.right: card.isButtonBelow ? undefined : parent.right
        anchors.rightMargin: 12 + card.arrowRoom
        y: card.isButtonBelow ? body.y + spacer.y + 4 : 7
        width: Math.min(implicitWidth, card.room)
        sourceComponent: PushButton {
            title: card.value.button.title
            enabled: card.value.button.isEnabled
            isPrimary: card.value.isPrimary
            onPressed: card.line.agent.pressLine(card.value)
        }
    }
    Column {
        id: body
        visible: card.value.isOpen && height > 0
        anchors.left: parent.left
        anchors.leftMargin: card.textLeft
        y: head.height
        width: card.room
        spacing: 4

        Label {
            visible: card.value.isOpen && text !== ""
            width: parent.width
            text: card.value.detail
            font.pixelSize: Tokens.smallSize
            lineHeight: Tokens.paragraph
            Accessible.ignored: !visible || !card.value.isFoldable
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            visible: card.value.isOpen && text !== ""
            width: parent.width
            text: card.value.action
            font.pixelSize: Tokens.smallSize
            lineHeight: Tokens.paragraph
            color: Tokens.dim
            Accessible.ignored: !visible || !card.value.isFoldable
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Column {
            visible: card.value.isOpen && facts.count > 0
            width: parent.width
            topPadding: 2
            spacing: 2

            Repeater {
                id: facts
                model: card.value.facts.length

                Item {
                    id: fact
                    required property int index
                    readonly property var entry: card.value.facts[index]
                    width: parent.width
                    height: Math.max(name.height, text.height)
                    Accessible.role: Accessible.StaticText
                    Accessible.name: name.text + ", " + text.text

                    Label {
                        id: name
                        anchors.left: parent.left
                        width: Math.min(lineWidth(), parent.width / 2)
                        text: fact.entry?.label ?? ""
                        font.pixelSize: Tokens.smallSize
                        color: Tokens.dim
                    }
                    Label {
                        id: text
                        anchors.left: name.right
                        anchors.leftMargin: 16
                        anchors.right: parent.right
                        horizontalAlignment: Text.AlignRight
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        text: fact.entry?.text ?? ""
                        font.family: fact.entry?.isCode ? Theme.codeFamily : Qt.application.font.family
                        font.pixelSize: fact.entry?.isCode ? Tokens.captionSize : Tokens.smallSize
                    }
                }
            }
        }
        Item {
            id: spacer
            visible: card.isButtonBelow
            width: 1
            height: button.height + 4
        }
    }
}
