// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// The open diagnostic: where it is, its checks, the state of the building, and the way to its rooms.
Screen {
    id: screen

    title: controller.fileName === "" ? qsTr("Diagnostic") : controller.fileName
    subtitle: controller.localization

    first: roomsRow
    onHidden: Instrument.save()

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
                spacing: Theme.spacing

                ListRow {
                    id: roomsRow
                    objectName: "rooms"
                    width: parent.width
                    sign: "room"
                    heading: qsTr("Locaux et unités")
                    detail: uds.count === 0 ? qsTr("rien d'enregistré encore") : qsTr("%n unité(s)", "", uds.count)
                    onClicked: Nav.open("RoomsScreen")
                }
                ListRow {
                    objectName: "checks"
                    width: parent.width
                    sign: "balance"
                    heading: qsTr("Justesse")
                    detail: {
                        var made = [];
                        for (var stage = AccuracyStageEnumClass.ACCURACY_INIT; stage <= AccuracyStageEnumClass.ACCURACY_FINAL; ++stage) {
                            if (accuracyMeasures[stage].idNAP >= 0)
                                made.push(qsTr("%1 : %2").arg(Words.accuracyStage(stage))
                                    .arg(Words.decision(accuracyMeasures[stage].detectionDecision).toLowerCase()));
                        }
                        return made.length > 0 ? made.join(" · ") : qsTr("aucun contrôle fait");
                    }
                    onClicked: Nav.open("AccuracyScreen")
                }
                Caption { text: qsTr("Adresse ou lieu") }
                TextField {
                    objectName: "place"
                    width: parent.width
                    text: controller.localization
                    Accessible.name: qsTr("Adresse ou lieu")
                    onEditingFinished: {
                        controller.localization = text;
                        Instrument.save();
                    }
                }
            }
            Card {
                width: page.column
                spacing: 2
                Caption { text: qsTr("Dégradations du bâtiment") }
                CheckBox {
                    objectName: "effondrement"
                    width: parent.width
                    text: qsTr("Effondrement de plancher ou de plafond")
                    checked: controller.effondrement
                    onToggled: controller.effondrement = checked
                }
                CheckBox {
                    objectName: "coulures"
                    width: parent.width
                    text: qsTr("Coulures ou ruissellements d'eau")
                    checked: controller.coulures
                    onToggled: controller.coulures = checked
                }
                CheckBox {
                    objectName: "humidite"
                    width: parent.width
                    text: qsTr("Humidité, moisissures")
                    checked: controller.humidite
                    onToggled: controller.humidite = checked
                }
            }
        }
    }
}
