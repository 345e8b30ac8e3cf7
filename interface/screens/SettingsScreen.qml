// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// How a measure ends, how long it lasts, and how many make a unit's result.
Screen {
    id: screen

    readonly property var modes: [
        { mode: MeasureModeEnumClass.TRIGGER, text: qsTr("La mesure dure tant que la détente est pressée.") },
        { mode: MeasureModeEnumClass.AUTO, text: qsTr("La mesure s'arrête dès que la décision est acquise.") },
        { mode: MeasureModeEnumClass.DEFINED, text: qsTr("La mesure dure le temps réglé.") }
    ]

    title: qsTr("Réglages de mesure")
    first: choices.count > 0 ? choices.itemAt(0) : null

    Sheet {
        anchors.fill: parent

        Grid {
            id: page
            width: parent.width
            columns: screen.wide ? 2 : 1
            spacing: Theme.spacing
            readonly property real column: (width - (columns - 1) * spacing) / columns

            Column {
                width: page.column
                spacing: Theme.spacingSmall

                Caption { text: qsTr("Fin de la mesure") }
                Repeater {
                    id: choices
                    model: screen.modes
                    ListRow {
                        id: choice
                        required property var modelData
                        readonly property bool chosen: Instrument.measureMode === choice.modelData.mode
                        objectName: "mode" + choice.modelData.mode
                        width: parent.width
                        enabled: !Instrument.busy
                        chevron: false
                        sign: chosen ? "chosen" : "open"
                        heading: Words.measureMode(choice.modelData.mode)
                        detail: choice.modelData.text
                        onClicked: Instrument.setMeasureMode(choice.modelData.mode)
                    }
                }
            }
            Column {
                width: page.column
                spacing: Theme.spacingSmall

                Caption { text: qsTr("Valeurs") }
                Stepper {
                    objectName: "measureTime"
                    width: parent.width
                    name: qsTr("Durée fixe d'une mesure")
                    unit: qsTr("s")
                    from: 1
                    to: 120
                    value: controller.measureTime
                    enabled: !Instrument.busy
                    onChosen: function(number) { controller.measureTime = number; }
                }
                Stepper {
                    objectName: "nbMeasures"
                    width: parent.width
                    name: qsTr("Mesures négatives pour une unité négative")
                    from: 1
                    to: 20
                    value: controller.nbMeasures
                    onChosen: function(number) { controller.nbMeasures = number; }
                }
            }
        }
    }
}
