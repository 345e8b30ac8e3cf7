// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: shotPanel; ShotPanel { width: 452 } }

    ComponentTest {
        name: "ShotPanel"

        function cleanupTestCase() { Instrument.standby(); }

        function test_standby_saysThatTheTriggerDoesNothing() {
            Instrument.standby();
            var panel = createTemporaryObject(shotPanel, stage);
            verify(says(panel, "En veille"));
            verify(says(panel, "La détente est sans effet."));
        }
        function test_notReady_isToldBeforeTheShot() {
            var panel = createTemporaryObject(shotPanel, stage);
            bench.conditions(false, 60, 1200);
            Instrument.measureDirect();
            verify(says(panel, "Pas prêt à mesurer"));
            verify(says(panel, "60 °C, 1200 V : attendez."));
            compareColors(panel.border.color, Theme.undecided);
            bench.conditions(true, 21, 1200);
            verify(says(panel, "Prêt à mesurer"));
            compareColors(panel.border.color, Theme.negative);
            verify(says(panel, "pressez la détente et maintenez-la"));
        }
        function test_everyPhase_saysWhatHappensAndWhatToDo() {
            bench.conditions(true, 21, 1200);
            Instrument.setMeasureMode(MeasureModeEnumClass.TRIGGER);
            Instrument.measureDirect();
            var panel = createTemporaryObject(shotPanel, stage);
            verify(says(panel, "Prêt à mesurer"));
            bench.openShutter();
            verify(says(panel, "Obturateur ouvert"));
            verify(says(panel, "Maintenez la détente"));
            bench.startMeasure();
            verify(says(panel, "La mesure s'établit"));
            bench.tellResult(2.5, 0.3, DetectionDecisionEnumClass.POSITIVE);
            bench.tellResult(2.6, 0.28, DetectionDecisionEnumClass.POSITIVE);
            verify(says(panel, "Mesure en cours"));
            verify(says(panel, "jusqu'à la décision définitive"));
            for (var i = 0; i < 4; ++i)
                bench.tellResult(2.7 + i / 10, 0.2, DetectionDecisionEnumClass.POSITIVE);
            verify(says(panel, "La décision reste, la valeur peut encore changer : relâchez la détente."));
            compare(bench.complaints(panel).join("\n"), "");
            bench.tellEnd();
            verify(says(panel, "Mesure terminée"));
            compare(directMeasures.count, 1);
        }
        function test_unitAtRest_tellsWhy_data() {
            return [{ tag: "measured", statut: UDStatutEnumClass.NEGATIVE, state: "En veille",
                      text: "L'unité a son résultat" },
                    { tag: "left out", statut: UDStatutEnumClass.SKIPPED, state: "Unité non mesurée",
                      text: "La détente est sans effet.\nNoté : Hors d'atteinte" }];
        }
        function test_unitAtRest_tellsWhy(data) {
            bench.addUnit("Cuisine", "Mur", data.statut);
            uds.get(0).observation = "Hors d'atteinte";
            Instrument.measureUnit(0);
            var panel = createTemporaryObject(shotPanel, stage);
            verify(says(panel, data.state));
            verify(says(panel, data.text));
            uds.get(0).observation = "";
            verify(!says(panel, "Noté"));
            Instrument.standby();
        }
        function test_tooFarAway_isToComeNearer() {
            bench.conditions(true, 21, 1200);
            Instrument.setMeasureMode(MeasureModeEnumClass.TRIGGER);
            Instrument.measureDirect();
            var panel = createTemporaryObject(shotPanel, stage);
            bench.openShutter();
            bench.startMeasure();
            for (var i = 0; i < 2; ++i)
                bench.tellResult(1.3, 1.4 - i / 10, DetectionDecisionEnumClass.COMPTON_ERROR);
            verify(says(panel, "Rapprochez l'appareil de la surface"));
            bench.tellEnd();
            verify(says(panel, "Mesure terminée"));
            compare(panel.sign, "warning");
            verify(says(panel, "Trop loin de la surface : rapprochez l'appareil"));
        }
        function test_modes_adviseTheirOwn_data() {
            return [{ tag: "defined", mode: MeasureModeEnumClass.DEFINED, text: "Maintenez : la mesure dure" },
                    { tag: "auto", mode: MeasureModeEnumClass.AUTO, text: "la mesure s'arrête d'elle-même" }];
        }
        function test_modes_adviseTheirOwn(data) {
            Instrument.setMeasureMode(data.mode);
            Instrument.measureDirect();
            var panel = createTemporaryObject(shotPanel, stage);
            bench.openShutter();
            bench.startMeasure();
            bench.tellResult(2.5, 0.3, DetectionDecisionEnumClass.NOT_DETERMINED);
            bench.tellResult(2.4, 0.2, DetectionDecisionEnumClass.NOT_DETERMINED);
            verify(says(panel, data.text));
            bench.tellEnd();
        }
    }
}
