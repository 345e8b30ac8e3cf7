// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// What is held before the instrument.
Card {
    readonly property var sample: panel.state.sample

    Caption {
        width: parent.width
        text: qsTr("Échantillon")
    }
    CommandGrid {
        width: parent.width
        commands: [
            { name: "presetLow", text: qsTr("Bien sous le seuil"), command: "sample", members: { concentration: 0.2, substrate: "plâtre", distance: 0 } },
            { name: "presetHigh", text: qsTr("Bien au-dessus"), command: "sample", members: { concentration: 2.4, substrate: "bois", distance: 0 } },
            { name: "presetNear", text: qsTr("Près du seuil"), command: "sample", members: { concentration: 1, substrate: "plâtre", distance: 0 } },
            { name: "presetFar", text: qsTr("Trop loin"), command: "sample", members: { concentration: 2.4, substrate: "bois", distance: 35 } }
        ]
    }
    Dial {
        objectName: "concentration"
        width: parent.width
        name: qsTr("Concentration")
        unit: qsTr("mg/cm²")
        decimals: 2
        to: 10
        stepSize: 0.05
        current: sample.concentration
        onChosen: Hand.run("sample", { concentration: number })
    }
    Dial {
        objectName: "distance"
        width: parent.width
        name: qsTr("Distance")
        unit: qsTr("mm")
        decimals: 0
        to: 50
        stepSize: 1
        current: sample.distance
        onChosen: Hand.run("sample", { distance: number })
    }
    Text {
        width: parent.width
        text: qsTr("Substrat : %1").arg(sample.substrate)
        color: Theme.text
        font.pixelSize: Theme.fontSmall
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    Grid {
        width: parent.width
        columns: 3
        spacing: Theme.spacingSmall

        Repeater {
            // The simulator's own names, which tell how much each scatters back.
            model: ["bois", "plâtre", "brique", "béton", "pierre", "métal"]
            Button {
                objectName: "substrate" + index
                width: (parent.width - 2 * Theme.spacingSmall) / 3
                leftPadding: 4
                rightPadding: 4
                text: modelData
                highlighted: sample.substrate === modelData
                Accessible.name: qsTr("Substrat : %1").arg(modelData)
                onClicked: Hand.run("sample", { substrate: modelData })
            }
        }
    }
}
