// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// After switching on the instrument settles; nothing can be done until then.
Screen {
    id: screen

    readonly property int total: config.getWaiting_For_Go()
    property real started: 0
    property real elapsed: 0
    readonly property int remaining: Math.max(0, Math.ceil(total - elapsed))

    canGoBack: false
    Accessible.name: words.text
    Component.onCompleted: started = Date.now()

    Timer {
        interval: 200
        repeat: true
        running: controller.waitingForGo
        triggeredOnStart: true
        onTriggered: screen.elapsed = (Date.now() - screen.started) / 1000
    }
    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 4 * Theme.margin, 400)
        spacing: Theme.margin

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "pulse"
            size: 72
            color: Theme.primary
        }
        Text {
            id: words
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("L'instrument se met en condition")
            color: Theme.text
            font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: screen.remaining > 0 ? qsTr("%n seconde(s)", "", screen.remaining) : qsTr("encore un instant")
            color: Theme.text
            font { pixelSize: Theme.fontHuge; weight: Font.Bold }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        ProgressBar {
            width: parent.width
            value: screen.total > 0 ? Math.min(1, screen.elapsed / screen.total) : 1
            Accessible.name: qsTr("Attente au démarrage")
        }
        Body {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Posez l'appareil, n'actionnez pas la détente.")
            color: Theme.textSecondary
        }
    }
}
