// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import HalvarStyle 1.0

// The simulated instrument's panel: what a person does to it, and what it does.
ApplicationWindow {
    id: window

    // By night, beside the interface by day: what is of the instrument and what is around it stay apart.
    property bool night: true

    onNightChanged: Theme.night = night
    title: qsTr("Instrument simulé")
    // What the screen has to the right of and below where the window begins, its frame included.
    width: Math.max(minimumWidth, Math.min(1280, Screen.desktopAvailableWidth - Math.max(x, 0) - 10))
    height: Math.max(minimumHeight, Math.min(940, Screen.desktopAvailableHeight - Math.max(y, 0) - 40))
    minimumWidth: 420
    minimumHeight: 600
    onClosing: bar.letGo()

    Component.onCompleted: Theme.night = night

    TriggerBar {
        id: bar
        width: parent.width
    }
    Flickable {
        id: sheet
        objectName: "sheet"
        anchors { top: bar.bottom; bottom: traffic.top; left: parent.left; right: parent.right }
        contentHeight: cards.implicitHeight + 2 * Theme.spacing
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar { }

        Masonry {
            id: cards
            x: Theme.margin
            y: Theme.spacing
            width: parent.width - 2 * Theme.margin

            Card {
                visible: !bar.wide
                LastDone { width: parent.width }
            }
            SampleCard { }
            ConditionsCard { }
            FaultsCard { }
            ServicesCard { }
            SpeedCard { }
        }
    }
    TrafficPane {
        id: traffic
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.max(150, Math.min(300, parent.height * 0.24))
    }
    Toast {
        id: toast
        anchors { bottom: parent.bottom; bottomMargin: Theme.margin; horizontalCenter: parent.horizontalCenter }
        width: Math.min(parent.width - 2 * Theme.margin, 560)
    }
    Connections {
        target: Hand
        function onRefused(reason) { toast.show(qsTr("Refusé : %1").arg(reason)); }
    }
}
