import QtQuick
import Ostrel.Views

/// A choice of one among a few. The arrow keys choose; where its parts do not fit beside each other, they wrap.
Item {
    id: control

    property string name
    property var titles: []
    property int chosen: 0

    signal choose(index: int)

    readonly property real needed: {
        let sum = 0;
        for (let i = 0; i < titles.length; ++i)
            sum += partWidth(i);
        return sum;
    }
    // Beside each other they share the width that is left.
    readonly property bool isWrapped: needed > width
    readonly property real slack: titles.length > 0 ? Math.max(0, (width - needed) / titles.length) : 0

    function partWidth(index: int): real {
        const font = index === chosen ? chosenMetrics.font : metrics.font;
        return Math.ceil(Theme.widthOf(titles[index], font)) + 10;
    }
    function move(by: int): void {
        const next = chosen + (LayoutMirroring.enabled ? -by : by);
        if (next >= 0 && next < titles.length)
            choose(next);
    }

    implicitHeight: parts.height
    activeFocusOnTab: true
    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)
    Accessible.role: Accessible.Grouping
    Accessible.ignored: !visible
    Accessible.name: name
    Accessible.focusable: true

    Label {
        id: metrics
        visible: false
        font.pixelSize: Tokens.smallSize
        font.weight: Font.Medium
    }
    Label {
        id: chosenMetrics
        visible: false
        font.pixelSize: Tokens.smallSize
        font.weight: Font.DemiBold
    }
    Flow {
        id: parts
        width: parent.width
        spacing: control.isWrapped ? 4 : 0

        Repeater {
            model: control.titles.length

            Rectangle {
                id: part
                required property int index
                readonly property bool isChosen: index === control.chosen
                readonly property string title: control.titles[index] ?? ""
                readonly property bool isFirst: index === 0
                readonly property bool isLast: index === control.titles.length - 1
                width: Math.min(control.partWidth(index) + control.slack, control.width)
                height: Math.round(24 * Tokens.textScale)
                color: "transparent"
                clip: true
                Accessible.role: Accessible.RadioButton
                Accessible.ignored: !visible
                Accessible.name: title
                Accessible.checkable: true
                Accessible.checked: isChosen
                Accessible.onPressAction: control.choose(index)

                // Only the ends of the row are round; neighbours share their line.
                Rectangle {
                    readonly property real beyondLeft: part.isFirst || control.isWrapped ? 0 : 2 * radius
                    readonly property real beyondRight: part.isLast || control.isWrapped ? 0 : 2 * radius
                    x: (LayoutMirroring.enabled ? -beyondRight : -beyondLeft)
                    width: parent.width + beyondLeft + beyondRight
                    height: parent.height
                    radius: Tokens.buttonRadius
                    color: part.isChosen ? Tokens.selection : Tokens.button
                    border.color: Tokens.edge
                }
                Rectangle {
                    visible: !part.isFirst && !control.isWrapped
                    anchors.left: parent.left
                    width: 1
                    height: parent.height
                    color: Tokens.edge
                }
                Label {
                    anchors.centerIn: parent
                    width: Math.min(lineWidth(), part.width)
                    horizontalAlignment: Text.AlignHCenter
                    text: part.title
                    font.pixelSize: Tokens.smallSize
                    font.weight: part.isChosen ? Font.DemiBold : Font.Medium
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: control.choose(part.index)
                }
            }
        }
    }
    FocusRing {}
}
