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
        for (const title of titles)
            sum += partWidth(title);
        return sum;
    }
    // Beside each other they share the width that is left.
    readonly property real slack: titles.length > 0 ? Math.max(0, Math.floor((width - needed) / titles.length)) : 0

    function partWidth(title: string): real {
        return Math.ceil(Theme.widthOf(title, metrics.font)) + 12;
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
    Accessible.name: name
    Accessible.focusable: true

    Label {
        id: metrics
        visible: false
        font.pixelSize: Tokens.smallSize
        font.weight: Font.DemiBold
    }
    Flow {
        id: parts
        width: parent.width

        Repeater {
            model: control.titles.length

            Rectangle {
                id: part
                required property int index
                readonly property bool isChosen: index === control.chosen
                readonly property string title: control.titles[index] ?? ""
                // Neighbours share their line.
                width: Math.min(control.partWidth(title) + control.slack, control.width) - (index > 0 ? 0 : 1)
                height: Math.round(24 * Tokens.textScale)
                color: isChosen ? Tokens.selection : Tokens.button
                border.color: Tokens.edge
                radius: index === 0 || index === control.titles.length - 1 ? Tokens.buttonRadius : 0
                Accessible.role: Accessible.RadioButton
                Accessible.name: title
                Accessible.checkable: true
                Accessible.checked: isChosen
                Accessible.onPressAction: control.choose(index)

                Label {
                    anchors.centerIn: parent
                    width: Math.min(lineWidth(), part.width - 4)
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
