// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: statusBar; StatusBar { width: stage.width } }

    ComponentTest {
        name: "StatusBar"

        function test_temperatureAndVoltage_areTrueWhicheverChanges() {
            var bar = createTemporaryObject(statusBar, stage);
            bench.conditions(true, 21, 1200);
            verify(says(bar, "21 °C · 1200 V"));
            bench.conditions(true, 27, 1200);
            verify(says(bar, "27 °C · 1200 V"));
            bench.conditions(true, 27, 1188);
            verify(says(bar, "27 °C · 1188 V"));
        }
        function test_readiness_isAWordAndASign() {
            var bar = createTemporaryObject(statusBar, stage);
            bench.conditions(false, 21, 1200);
            verify(says(bar, "Pas prêt"));
            verify(itemsOf(bar).some(function(item) { return item.name === "warning"; }));
            bench.conditions(true, 21, 1200);
            verify(!says(bar, "Pas prêt"));
            verify(says(bar, "Prêt"));
            verify(itemsOf(bar).some(function(item) { return item.name === "check"; }));
        }
        function test_beforeAnybodyCanMeasure_itWaits() {
            var bar = createTemporaryObject(statusBar, stage, { waiting: true });
            bench.conditions(true, 21, 1200);
            verify(says(bar, "En attente"));
            verify(!says(bar, "Prêt"));
            bench.conditions(false, 21, 1200);
            verify(says(bar, "Pas prêt"));
            bench.conditions(true, 21, 1200);
            bar.waiting = false;
            verify(says(bar, "Prêt"));
        }
        function test_errorOrSilence_isNotReady_data() {
            return [{ tag: "error", message: "Anomalie DAC - Erreur S4", silent: false, word: "Erreur" },
                    { tag: "silence", message: "", silent: true, word: "Sans réponse" },
                    { tag: "both", message: "Anomalie DAC - Erreur S4", silent: true, word: "Erreur" }];
        }
        function test_errorOrSilence_isNotReady(data) {
            var bar = createTemporaryObject(statusBar, stage);
            bench.conditions(true, 21, 1200);
            verify(says(bar, "Prêt"));
            bench.setError(data.message);
            Instrument.silent = data.silent;
            var told = says(bar, data.word) && !says(bar, "Prêt");
            var sign = itemsOf(bar).some(function(item) { return item.name === "check"; });
            bench.setError("");
            Instrument.silent = false;
            verify(told);
            verify(!sign);
            verify(says(bar, "Prêt"));
        }
        function test_battery_isAWord_data() {
            return [{ tag: "full", microvolts: 4100000 }, { tag: "low", microvolts: 3480000 }];
        }
        function test_battery_isAWord(data) {
            var bar = createTemporaryObject(statusBar, stage);
            bench.setBattery(data.microvolts);
            verify(Words.battery(battery.level) !== "Inconnue");
            verify(says(bar, Words.battery(battery.level)));
            compare(Words.batteryQuarters(battery.level) > 2, data.tag === "full");
        }
        function test_source_isToldByItsEnd_data() {
            return [{ tag: "long", days: 2000, text: "" },
                    { tag: "soon", days: 20, text: "Source : fin le " },
                    { tag: "expired", days: -3, text: "Source périmée depuis 3 jours" },
                    { tag: "expired yesterday", days: -1, text: "Source périmée depuis 1 jour" }];
        }
        function test_source_isToldByItsEnd(data) {
            bench.setSourceEnd(data.days);
            var bar = createTemporaryObject(statusBar, stage);
            compare(says(bar, "Source"), data.text !== "");
            verify(data.text === "" || says(bar, data.text));
            compare(bench.complaints(bar).join("\n"), "");
            bench.setSourceEnd(9000);
        }
        function test_light_isSwitchedAndCountsDown() {
            var bar = createTemporaryObject(statusBar, stage);
            var button = named(bar, "lightButton");
            mouseClick(button);
            verify(controller.light);
            verify(says(bar, String(config.Led_Light_Off())));
            verify(button.Accessible.name.indexOf("éteindre") > 0);
            mouseClick(button);
            verify(!controller.light);
        }
        function test_wifiAndShocks_waitForTheCode() {
            var bar = createTemporaryObject(statusBar, stage);
            verify(!named(bar, "wifiButton").enabled);
            verify(!named(bar, "shockButton").enabled);
            verify(named(bar, "lightButton").enabled);
        }
        function test_shock_isHighlightedUntilItIsReset() {
            var bar = createTemporaryObject(statusBar, stage);
            bench.setShock(true);
            verify(named(bar, "shockButton").highlighted);
            bench.setShock(false);
            verify(!named(bar, "shockButton").highlighted);
        }
    }
}
