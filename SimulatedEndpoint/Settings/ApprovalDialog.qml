import QtQuick
import QtQuick.Window

// What the system shows while a request for the extension waits for the user.
Window {
    id: dialog

    required property var settings

    component Choice: Rectangle {
        id: choice

        property string text
        property bool isDefault: false

        signal chosen

        width: 132
        height: 30
        radius: 6
        color: isDefault ? "#0a64d8" : "#e4e4e6"
        border.width: activeFocus ? 2 : 0
        border.color: "#7db4ff"
        activeFocusOnTab: true
        Keys.onReturnPressed: chosen()
        Keys.onSpacePressed: chosen()
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: chosen()

        Text {
            anchors.centerIn: parent
            text: choice.text
            color: choice.isDefault ? "white" : "#1d1d1f"
        }
        MouseArea {
            anchors.fill: parent
            onClicked: choice.chosen()
        }
    }

    title: "System Settings (simulated)"
    flags: Qt.Dialog
    color: "#f2f2f4"
    width: 420
    height: column.height + 40
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    // Above the window that asked.
    x: (Screen.width - width) / 2
    y: Screen.height / 8
    onClosing: close => {
        close.accepted = false;
        settings.leaveOpen();
    }
    visible: settings.isAsking
    onVisibleChanged: if (visible)
        allow.forceActiveFocus()

    Column {
        id: column
        x: 20
        y: 20
        width: parent.width - 40
        spacing: 12

        Text {
            width: parent.width
            text: dialog.settings.isRemoval ? "“Ostrel Agent” wants to remove its network extension" : "“Ostrel Agent” wants to use a network extension"
            color: "#1d1d1f"
            font.bold: true
            wrapMode: Text.WordWrap
        }
        Text {
            width: parent.width
            text: "On a Mac this is a switch under General ▸ Login Items & Extensions. This dialog takes its place."
            color: "#5a5a5f"
            wrapMode: Text.WordWrap
        }
        Row {
            anchors.right: parent.right
            spacing: 10

            Choice {
                text: "Don’t Allow"
                onChosen: dialog.settings.deny()
            }
            Choice {
                id: allow
                text: "Allow"
                isDefault: true
                onChosen: dialog.settings.approve()
            }
        }
    }
}
