import QtQuick
import Ostrel.Views

/// What the onboarding and repair window holds.
FocusScope {
    id: root

    required property OnboardingState onboarding

    function pressPrimary(event: var): void {
        if (!event.isAutoRepeat)
            onboarding.pressPrimary(field.secret());
    }

    width: Math.min(Tokens.windowWidth, Math.floor(onboarding.room.width))
    height: Math.min(page.contentHeight, Math.floor(onboarding.room.height))
    focus: true
    LayoutMirroring.enabled: onboarding.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onReturnPressed: event => pressPrimary(event)
    Keys.onEnterPressed: event => pressPrimary(event)
    Keys.onPressed: event => event.accepted = page.scrollByKey(event.key)

    Connections {
        target: root.onboarding
        function onStageChanged() {
            page.contentY = 0;
            if (root.onboarding.tokenField.isShown)
                field.takeFocus();
            else
                focusSink.forceActiveFocus();
        }
        function onTokenCleared() {
            field.clear();
        }
    }
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            page.reveal(root.Window.window.activeFocusItem);
        }
    }
    Rectangle {
        anchors.fill: parent
        color: Tokens.panel
    }
    // Has the focus until the user moves it to a control.
    Item {
        id: focusSink
        focus: true
    }
    Scroller {
        id: page
        anchors.fill: parent
        contentHeight: Math.ceil(content.height)

        Column {
            id: content
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: Tokens.windowMargin
            topPadding: Tokens.windowMargin
            bottomPadding: Tokens.windowMargin
            spacing: 16

            OnboardingHeader {
                width: parent.width
                value: root.onboarding.header
            }
            Repeater {
                model: root.onboarding.paragraphs

                AccessibleLabel {
                    required property string entry
                    width: content.width
                    text: entry
                    lineHeight: Tokens.paragraph
                }
            }
            Column {
                visible: root.onboarding.tokenField.isShown
                width: parent.width
                spacing: 6

                TokenField {
                    id: field
                    width: parent.width
                    enabled: root.onboarding.tokenField.isEnabled
                    accessibleName: root.onboarding.tokenField.accessibleName
                    accessibleDescription: root.onboarding.tokenField.error
                }
                ErrorLine {
                    width: parent.width
                    text: root.onboarding.tokenField.error
                    onCame: root.onboarding.announce(this)
                }
            }
            WaitLine {
                width: parent.width
                text: root.onboarding.progress
            }
            Rectangle {
                visible: steps.count > 0
                width: parent.width
                height: rows.height
                radius: Tokens.cardRadius
                color: Tokens.card

                Column {
                    id: rows
                    width: parent.width

                    Repeater {
                        id: steps
                        model: root.onboarding.steps

                        ChecklistStep {
                            required property stepValue entry
                            required property int index
                            width: rows.width
                            isFirst: index === 0
                            value: entry
                            onPressed: button => root.onboarding.press(button, field.secret())
                            onFailed: item => root.onboarding.announce(item)
                        }
                    }
                }
            }
            AccessibleLabel {
                width: parent.width
                text: root.onboarding.closingNote
                font.pixelSize: Tokens.smallSize
                lineHeight: Tokens.paragraph
                color: Tokens.dim
            }
            Flow {
                width: parent.width
                spacing: Tokens.gap
                layoutDirection: Qt.RightToLeft

                Repeater {
                    model: root.onboarding.buttons

                    PushButton {
                        required property onboardingButtonValue entry
                        width: Math.min(implicitWidth, content.width)
                        fontSize: Tokens.bodySize
                        sidePadding: 16
                        title: entry.title
                        isPrimary: entry.isPrimary
                        enabled: entry.isEnabled
                        onPressed: root.onboarding.press(entry, field.secret())
                    }
                }
            }
        }
    }
    ScrollIndicator {
        scroller: page
    }
}
