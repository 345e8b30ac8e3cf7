// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// One page of the interface: a title with the way back, and below it whatever the page holds.
FocusScope {
    id: screen

    property string title
    property string subtitle
    property bool canGoBack: true
    default property alias content: body.data
    // Buttons at the right of the title.
    property alias actions: actionRow.data
    readonly property alias backButton: backButton
    readonly property bool wide: width > height

    // When it comes to the top of the stack, also after others above it have gone; and when it is left, for whichever
    // reason.
    signal shown()
    signal hidden()
    property bool isShown: false
    // The control that the keys are on when the screen opens.
    property Item first
    readonly property bool lost: {
        var item = Window.activeFocusItem;
        return item === screen || (item !== null && !item.visible);
    }

    function follow() {
        var now = StackView.status === StackView.Active || StackView.status === StackView.Activating;
        if (now === isShown)
            return;
        isShown = now;
        if (now)
            shown();
        else
            hidden();
    }
    StackView.onStatusChanged: follow()
    Component.onDestruction: {
        if (isShown)
            hidden();
    }

    // Where the keys were, or at first where most will want to go on.
    function takeFocus() {
        forceActiveFocus();
        var item = screen.Window.activeFocusItem;
        Nav.focus(item && item !== screen ? item : first || screen);
    }
    // The control that they were on is gone, or cannot be used now.
    onLostChanged: Qt.callLater(settleFocus)
    onFirstChanged: Qt.callLater(settleFocus)
    function settleFocus() {
        if (lost && isShown && first && first.visible && first.enabled)
            Nav.focus(first);
    }

    // Arrows lead from control to control where none of them takes them for itself.
    function step(forward) {
        var from = screen.Window.activeFocusItem || screen;
        var next = from.nextItemInFocusChain(forward);
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }
    Keys.onUpPressed: step(false)
    Keys.onDownPressed: step(true)
    Keys.onLeftPressed: step(false)
    Keys.onRightPressed: step(true)

    // A screen that has a reason to stay says so and returns false.
    function mayLeave() { return true; }

    Accessible.role: Accessible.Pane
    Accessible.name: title

    Item {
        id: head
        width: parent.width
        height: screen.title === "" ? 0 : Theme.touch + 8
        visible: height > 0

        IconButton {
            id: backButton
            objectName: "back"
            anchors { left: parent.left; leftMargin: 4; verticalCenter: parent.verticalCenter }
            visible: screen.canGoBack
            sign: "back"
            text: qsTr("Retour")
            onClicked: Nav.back()
        }
        Column {
            anchors {
                left: backButton.visible ? backButton.right : parent.left
                leftMargin: backButton.visible ? 4 : Theme.margin
                right: actionRow.left
                rightMargin: Theme.spacing
                verticalCenter: parent.verticalCenter
            }
            Text {
                width: parent.width
                text: screen.title
                color: Theme.text
                font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Theme.fontSmall
                elide: Text.ElideRight
                textFormat: Text.PlainText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                width: parent.width
                visible: text !== ""
                text: screen.subtitle
                color: Theme.textSecondary
                font.pixelSize: Theme.fontSmall
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }
        }
        Row {
            id: actionRow
            anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
            spacing: Theme.spacingSmall
        }
    }
    Item {
        id: body
        anchors { top: head.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
    }
}
