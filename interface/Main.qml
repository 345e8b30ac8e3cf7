// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

ApplicationWindow {
    id: window

    property bool night: false
    property bool landscape: false
    readonly property Item screen: stack.currentItem
    // Taps are not taken yet: the screen has just changed.
    readonly property bool settling: Nav.settling

    onNightChanged: Theme.night = night
    onActiveFocusItemChanged: {
        var reason = activeFocusItem ? activeFocusItem.focusReason : Qt.NoFocusReason;
        if (reason === Qt.TabFocusReason || reason === Qt.BacktabFocusReason)
            Nav.byKeys = true;
    }
    title: qsTr("Analyseur")
    width: landscape ? 800 : 480
    height: landscape ? 480 : 800
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
            Nav.byKeys = true;
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
