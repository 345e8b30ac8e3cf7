// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import Halvar 4.0
import HalvarScreens 1.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: newDiagnostic; NewDiagnosticScreen { anchors.fill: parent } }
    Component { id: accuracyScreen; AccuracyScreen { anchors.fill: parent } }
    Component { id: calibrationScreen; CalibrationScreen { anchors.fill: parent } }

    ComponentTest {
        name: "Forms"

        function cleanupTestCase() { Instrument.calibrationAttempts = 0; }

        function test_refusedName_isGoneOnWithAtItsEnd() {
            var screen = createTemporaryObject(newDiagnostic, stage);
            var field = named(screen, "name");
            mouseClick(field);
            field.text = "Cave/7";
            mouseClick(named(screen, "create"));
            verify(says(screen, "Le nom ne peut pas contenir"));
            verify(field.activeFocus);
            compare(field.cursorPosition, 6);
        }
        function test_emptyFields_doNotLookFilledIn() {
            var screen = createTemporaryObject(newDiagnostic, stage);
            ["name", "place"].forEach(function(name) { compare(textsOf(named(screen, name)), []); });
        }
        function test_uncalibratedCheck_asksForACalibration() {
            var screen = createTemporaryObject(accuracyScreen, stage);
            var advice = "Calibrez l'instrument, puis refaites le contrôle.";
            verify(!says(screen, advice));
            verify(!named(screen, "calibrate"));
            var before = screen.result.detectionDecision;
            bench.setCheck(DetectionDecisionEnumClass.UNCALIBRATED);
            var said = says(screen, advice);
            var leading = named(screen, "calibrate");
            var repeating = named(screen, "startAccuracy");
            var offered = leading && leading.highlighted && !repeating.highlighted;
            // Once it is calibrated, the check is what is left to do.
            Instrument.calibrationOutcome = "done";
            var gone = !named(screen, "calibrate") && repeating.highlighted && !says(screen, advice);
            Instrument.calibrationOutcome = "";
            bench.setCheck(before);
            verify(said);
            verify(offered);
            verify(gone);
            verify(says(screen, "Posez l'appareil sur le bloc de référence"));
        }
        function test_words_fitTheButton() {
            var screen = createTemporaryObject(accuracyScreen, stage);
            verify(says(screen, "puis démarrez"));
            verify(says(screen, "Démarrer le contrôle"));
            screen.result.idNAP = 5;
            var repeated = says(screen, "pour refaire le contrôle") && says(screen, "Refaire le contrôle")
                && !says(screen, "démarrez");
            screen.result.idNAP = -1;
            verify(repeated);
        }
        function test_calibration_isStartedThenRepeated_data() {
            return [{ tag: "none yet", outcome: "", again: false, main: true },
                    { tag: "stopped", outcome: "stopped", again: false, main: true },
                    { tag: "done", outcome: "done", again: true, main: false },
                    { tag: "failed", outcome: "error", again: true, main: true }];
        }
        function test_calibration_isStartedThenRepeated(data) {
            Instrument.calibrationOutcome = data.outcome;
            var screen = createTemporaryObject(calibrationScreen, stage);
            compare(says(screen, "Refaire le calibrage"), data.again);
            compare(says(screen, "Pour le refaire"), data.again);
            compare(says(screen, "puis démarrez"), !data.again);
            compare(named(screen, "startCalibration").highlighted, data.main);
            Instrument.calibrationOutcome = "";
        }
        function test_calibration_saysWhenTheLastOneWas() {
            controller.lastCalibrationDate = "02-03-2026";
            var screen = createTemporaryObject(calibrationScreen, stage);
            verify(says(screen, "Dernier calibrage réussi : 02-03-2026"));
            controller.lastCalibrationDate = "";
        }
        function test_attempts_areCountedUntilAFailureWouldBeFinal_data() {
            return [{ tag: "none yet", attempts: 0, text: "Essais restants : 3 sur 3" },
                    { tag: "one left", attempts: 2, text: "Essais restants : 1 sur 3" },
                    { tag: "none left", attempts: 3, text: "Plus qu'un essai : un échec bloquera le calibrage." },
                    { tag: "more were stopped", attempts: 5, text: "Plus qu'un essai : un échec bloquera le calibrage." }];
        }
        function test_attempts_areCountedUntilAFailureWouldBeFinal(data) {
            compare(config.Nbr_Energy_Adj_Test(), 3);
            Instrument.calibrationAttempts = data.attempts;
            var screen = createTemporaryObject(calibrationScreen, stage);
            compare(named(screen, "attempts").text.replace(/\u00a0/g, " "), data.text);
            verify(named(screen, "startCalibration").enabled);
        }
        function test_lastAttempt_isOverOnceCalibrationIsBlocked() {
            Instrument.calibrationAttempts = 3;
            var screen = createTemporaryObject(calibrationScreen, stage);
            Instrument.calibrationState = CalibrationEnumClass.TOO_MANY_ERRORS;
            verify(says(screen, "Essais restants : 0 sur 3"));
            Instrument.refresh();
            verify(says(screen, "Plus qu'un essai"));
        }
    }
}
