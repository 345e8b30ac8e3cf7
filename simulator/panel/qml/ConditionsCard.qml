// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// The instrument's temperature, high voltage and battery.
Card {
    id: card

    readonly property var conditions: panel.state.conditions
    readonly property bool gauge: typeof panel.state.battery === "number"

    Caption {
        width: parent.width
        text: conditions.ready ? qsTr("Conditions : prêt à mesurer") : qsTr("Conditions : hors limites")
    }
    Dial {
        objectName: "temperature"
        width: parent.width
        name: qsTr("Température")
        unit: qsTr("°C")
        from: -20
        to: 60
        stepSize: 0.5
        current: conditions.temperature
        onChosen: Hand.run("conditions", { temperature: number })
    }
    Dial {
        objectName: "voltage"
        width: parent.width
        name: qsTr("Haute tension")
        unit: qsTr("V")
        decimals: 0
        from: 1100
        to: 1300
        stepSize: 1
        current: conditions.voltage
        onChosen: Hand.run("conditions", { voltage: number })
    }
    Dial {
        objectName: "battery"
        width: parent.width
        enabled: card.gauge
        name: qsTr("Batterie")
        unit: qsTr("V")
        decimals: 2
        from: 3
        to: 4.3
        stepSize: 0.01
        current: card.gauge ? panel.state.battery / 1e6 : from
        onChosen: Hand.run("battery", { value: Math.round(number * 1e6) })
    }
    CheckBox {
        objectName: "gaugeMissing"
        width: parent.width
        text: qsTr("Jauge de batterie absente")
        checked: !card.gauge
        onToggled: Hand.run("battery", { value: checked ? "missing" : 4050000 })
    }
}
