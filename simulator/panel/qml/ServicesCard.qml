// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Both of the instrument's programs: killed, mute, slow, unwilling.
Card {
    id: card

    readonly property var nap: panel.state.nap
    readonly property var msp: panel.state.msp

    Caption {
        width: parent.width
        text: qsTr("Service d'analyse et microcontrôleur")
    }
    Button {
        objectName: "napLife"
        width: parent.width
        text: nap.alive ? qsTr("Tuer le service") : qsTr("Relancer le service")
        onClicked: Hand.run(nap.alive ? "napDie" : "napReturn")
    }
    Dial {
        objectName: "napDelay"
        width: parent.width
        name: qsTr("Réponse du service après")
        unit: qsTr("s")
        to: 10
        stepSize: 0.1
        current: nap.delay / 1000
        onChosen: Hand.run("napDelay", { ms: Math.round(number * 1000) })
    }
    CheckBox {
        objectName: "napSilent"
        width: parent.width
        text: qsTr("Le service se tait")
        checked: nap.silent
        onToggled: Hand.run("napSilent", { on: checked })
    }
    Button {
        objectName: "mspLife"
        width: parent.width
        text: msp.alive ? qsTr("Tuer le microcontrôleur") : qsTr("Relancer le microcontrôleur")
        onClicked: Hand.run(msp.alive ? "mspDie" : "mspReturn")
    }
    CheckBox {
        objectName: "mspRefuse"
        width: parent.width
        text: qsTr("Le microcontrôleur refuse tout")
        checked: msp.refusing.length > 0
        onToggled: Hand.run("mspRefuse", { commands: checked ? "all" : [] })
    }
}
