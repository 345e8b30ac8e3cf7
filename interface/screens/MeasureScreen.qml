// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// What the operator notes about one measure.
Screen {
    id: screen

    property QtObject measure
    property int number: 0

    title: qsTr("Mesure %1").arg(number)
    readonly property bool interrupted: Instrument.interrupted.indexOf(measure) >= 0
    subtitle: measure && measure.idNAP >= 0 && !interrupted ? qsTr("tir n° %1").arg(measure.idNAP) : ""

    // States of conservation go with the nature of the degradation.
    readonly property var states: {
        if (!measure)
            return null;
        if (measure.degradationState === DegradationStateEnumClass.ETAT_USAGE)
            return statesOfUse;
        if (measure.degradationState === DegradationStateEnumClass.DEGRADE)
            return statesOfDegradation;
        return null;
    }
    // A measure announces its state of conservation by the signal of its degradation.
    readonly property string conservation: {
        if (!measure)
            return "";
        measure.degradationState;
        return measure.conservationState;
    }
    first: cross.first
    onHidden: Instrument.save()

    Sheet {
        anchors.fill: parent

        Item {
            id: page
            // On a wide screen everything is in sight: what is noted about the place at the right.
            readonly property real column: screen.wide ? (width - Theme.spacing) / 2 : width
            width: parent.width
            height: Math.max(degradationCard.y + degradationCard.height, conservation.y + conservation.height)

            Card {
                id: result
                width: page.column
                MeasureFace {
                    width: parent.width
                    heading: qsTr("Résultat")
                    concentration: screen.measure ? screen.measure.concentration : 0
                    sigma: screen.measure ? screen.measure.sigma : 0
                    decision: screen.measure ? screen.measure.detectionDecision : DetectionDecisionEnumClass.NO_DECISION
                    interrupted: screen.interrupted
                }
            }
            Card {
                id: place
                x: screen.wide ? page.column + Theme.spacing : 0
                y: screen.wide ? 0 : result.height + Theme.spacing
                width: page.column
                LocalisationCross {
                    id: cross
                    anchors.horizontalCenter: parent.horizontalCenter
                    value: screen.measure ? screen.measure.localisation : LocalisationEnumClass.NOT_DETERMINED
                    onChosen: function(localisation) { screen.measure.localisation = localisation; }
                }
            }
            Card {
                id: degradationCard
                y: (screen.wide ? result.height : place.y + place.height) + Theme.spacing
                width: page.column
                Caption { text: qsTr("Nature de la dégradation") }
                Grid {
                    id: degradations
                    width: parent.width
                    columns: 2
                    spacing: Theme.spacingSmall

                    Repeater {
                        model: [DegradationStateEnumClass.NON_DEGRADE, DegradationStateEnumClass.NON_VISIBLE,
                            DegradationStateEnumClass.ETAT_USAGE, DegradationStateEnumClass.DEGRADE]
                        SignButton {
                            id: degradation
                            required property int modelData
                            readonly property bool chosen: screen.measure && screen.measure.degradationState === degradation.modelData
                            objectName: "degradation" + degradation.modelData
                            width: (degradations.width - (degradations.columns - 1) * degradations.spacing)
                                   / degradations.columns
                            leftPadding: Theme.spacingSmall
                            rightPadding: Theme.spacingSmall
                            sign: chosen ? "chosen" : "open"
                            highlighted: chosen
                            text: Words.degradation(degradation.modelData)
                            onClicked: {
                                screen.measure.degradationState = degradation.modelData;
                                if (!screen.states)
                                    screen.measure.conservationState = "";
                            }
                        }
                    }
                }
            }
            ListRow {
                id: conservation
                objectName: "conservation"
                x: place.x
                y: screen.wide ? place.height + Theme.spacing : degradationCard.y + degradationCard.height + Theme.spacing
                width: page.column
                sign: "edit"
                heading: qsTr("État de conservation")
                detail: screen.conservation !== "" ? screen.conservation : qsTr("rien de noté")
                onClicked: Nav.open("PickScreen", {
                    title: qsTr("État de conservation"),
                    items: screen.states || statesOfUse,
                    allowNew: false,
                    allowNone: true,
                    current: screen.conservation,
                    picked: function(title) { screen.measure.conservationState = title; }
                })
            }
        }
    }
}
