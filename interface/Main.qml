// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15 as Window
import HalvarComponents 1.0
import HalvarStyle 1.0

ApplicationWindow {
    id: window

    property bool night: false
    property bool landscape: false
    readonly property Item screen: stack.currentItem
    // Taps are not taken yet: the screen has just changed.
    readonly property bool settling: Nav.settling

    // What there is for windows. On a screen larger than the instrument's own, a frame and a bar stand beside them; one
    // that is very low takes the window lying.
    property size desktop: Qt.size(Window.Screen.desktopAvailableWidth, Window.Screen.desktopAvailableHeight)
    readonly property real room: desktop.width > 800 ? desktop.height - 80 : 800
    readonly property bool lying: landscape || room < 600

    onNightChanged: Theme.night = night
    onActiveFocusItemChanged: {
        var reason = activeFocusItem ? activeFocusItem.focusReason : Qt.NoFocusReason;
        if (reason === Qt.TabFocusReason || reason === Qt.BacktabFocusReason)
            Nav.byKeys = true;
    }
    title: qsTr("Analyseur")
    width: lying ? 800 : 480
    height: Math.max(minimumHeight, Math.min(lying ? 480 : 800, room))
    minimumWidth: 400
    minimumHeight: 400
    visible: true

    Component.onCompleted: {
        Theme.night = night;
        Nav.stack = stack;
        go();
    }

    // Out of the hold-off, once.
    property bool held: true
    function go() {
        if (!held || controller.waitingForGo)
            return;
        held = false;
        Nav.replaceAll("PinScreen");
    }

    StatusBar {
        id: statusBar
        waiting: controller.waitingForGo || !pin.accepted
        width: parent.width
    }
    Banners {
        id: banners
        anchors.top: statusBar.bottom
        width: parent.width
    }
    StackView {
        id: stack
        anchors { top: banners.bottom; bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        // On a desktop a line of text is not wider than the eye follows.
        width: Math.min(parent.width, 1000)
        focus: true
        initialItem: Nav.urlOf("HoldOffScreen")
        onCurrentItemChanged: {
            if (currentItem)
                currentItem.takeFocus();
        }
        Keys.onPressed: function(event) {
            Nav.seeKey(event);
            event.accepted = false;
        }
    }
    MouseArea {
        anchors.fill: stack
        enabled: window.settling
        visible: enabled
    }
    Toast {
        id: toast
        objectName: "toast"
        anchors { bottom: parent.bottom; bottomMargin: Theme.margin; horizontalCenter: parent.horizontalCenter }
        width: Math.min(parent.width - 2 * Theme.margin, 560)
    }

    // Sees every touch, and takes none.
    Item {
        anchors.fill: parent
        PointHandler {
            onActiveChanged: {
                if (active)
                    Nav.byKeys = false;
            }
        }
    }

    Shortcut {
        sequences: ["Escape", "Back"]
        onActivated: {
            Nav.byKeys = true;
            Nav.back();
        }
    }
    Connections {
        target: Nav
        function onSaid(text) { toast.show(text); }
    }
    Connections {
        target: controller
        function onWaitingForGoUpdated() { window.go(); }
    }
}
