import QtQuick
import Ostrel.Views

/// The roll-up row, which folds and unfolds the components below it.
Rectangle {
    id: list

    required property PanelState panel
    readonly property bool isUnfolded: userToggled ? isPersonUnfolded : panel.health.startsExpanded
    property bool userToggled: false
    property bool isPersonUnfolded: false

    function fold(event: var): void {
        if (event && event.isAutoRepeat)
            return;
        isPersonUnfolded = !isUnfolded;
        userToggled = true;
        panel.folded();
    }

    implicitHeight: rows.height
    radius: Tokens.cardRadius
    color: Tokens.card

    Column {
        id: rows
        width: parent.width

        StateRow {
            id: rollup
            width: parent.width
            isFirst: true
            trailing: Tokens.arrowSize + 6
            value: list.panel.health.rollup
            activeFocusOnTab: true
            Keys.onSpacePressed: event => list.fold(event)
            Keys.onReturnPressed: event => list.fold(event)
            Keys.onEnterPressed: event => list.fold(event)
            Accessible.role: Accessible.Button
            Accessible.focusable: true
            Accessible.checkable: true
            Accessible.checked: list.isUnfolded
            Accessible.onPressAction: list.fold(null)

            Arrow {
                anchors.right: parent.right
                anchors.rightMargin: 12
                y: Math.round(rollup.padding + (rollup.lineHeight - height) / 2)
                isOpen: list.isUnfolded
            }
            FocusRing {
                anchors.margins: 1
                radius: Tokens.cardRadius - 1
            }
            MouseArea {
                anchors.fill: parent
                onClicked: list.fold(null)
            }
        }
        Repeater {
            model: list.isUnfolded ? list.panel.components : null

            StateRow {
                required property rowValue entry
                width: rows.width
                value: entry
            }
        }
    }
}
