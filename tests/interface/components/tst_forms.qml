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
        function test_uncalibratedCheck_asksForACalibration() {
            var screen = createTemporaryObject(accuracyScreen, stage);
            var advice = "Calibrez l'instrument, puis refaites le contrôle.";
            verify(!says(screen, advice));
            var before = screen.result.detectionDecision;
            bench.setCheck(DetectionDecisionEnumClass.UNCALIBRATED);
            var said = says(screen, advice);
            bench.setCheck(before);
            verify(said);
            verify(says(screen, "Posez l'appareil sur le bloc de référence"));
        }
        function test_attempts_areCountedUntilAFailureWouldBeFinal_data() {
            return [{ tag: "none yet", attempts: 0, text: "Essais restants : 3 sur 3" },
                    { tag: "one left", attempts: 2, text: "Essais restants : 1 sur 3" },
                    { tag: "none left", attempts: 3, text: "Dernier essai : un échec bloquera le calibrage." },
                    { tag: "more were stopped", attempts: 5, text: "Dernier essai : un échec bloquera le calibrage." }];
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
            verify(says(screen, "Dernier essai"));
        }
    }
}
