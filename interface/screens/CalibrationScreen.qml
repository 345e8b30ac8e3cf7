// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// The energy calibration: how it stands, and a new one.
Screen {
    id: screen

    readonly property bool running: Instrument.mode === AcquisitionModeEnumClass.CALIBRATION
    readonly property bool exhausted: Instrument.calibrationState === CalibrationEnumClass.TOO_MANY_ERRORS
    // One came to its end since the start: another one is done again.
    readonly property bool again: Instrument.calibrationOutcome === "done" || Instrument.calibrationOutcome === "error"
    property real started: 0
    property real elapsed: 0

    readonly property var face: {
        if (running)
            return { sign: "tune", tint: Theme.neutral, word: qsTr("Calibrage en cours") };
        if (exhausted)
            return { sign: "cross", tint: Theme.positive, word: qsTr("Trop d'échecs : appelez le service") };
        if (Instrument.calibrationState === CalibrationEnumClass.ERROR)
            return { sign: "cross", tint: Theme.positive, word: qsTr("Échec du calibrage") };
        if (Instrument.calibrationOutcome === "stopped")
            return { sign: "skip", tint: Theme.undecided, word: qsTr("Calibrage arrêté") };
        if (Instrument.calibrationOutcome === "done" || Instrument.calibrationState === CalibrationEnumClass.DONE)
            return { sign: "check", tint: Theme.negative, word: qsTr("Calibrage réussi") };
        return { sign: "question", tint: Theme.neutral, word: qsTr("Pas de calibrage depuis l'allumage") };
    }

    title: qsTr("Calibrage")

    first: running ? stopButton : startButton
    onShown: Instrument.expectant = true
    onHidden: Instrument.expectant = false
    function mayLeave() {
        if (!running)
            return true;
        leaveDialog.open();
        return false;
    }
    // One button takes the place of the other.
    function start() {
        if (Nav.settling)
            return;
        Nav.settle();
        started = Date.now();
        elapsed = 0;
        Instrument.startCalibration();
    }
    function stop() {
        Nav.settle();
        Instrument.stopCalibration();
    }
    Timer {
        interval: 100
        repeat: true
        running: screen.running
        onTriggered: screen.elapsed = (Date.now() - screen.started) / 1000
    }
    ConfirmDialog {
        id: leaveDialog
        title: qsTr("Calibrage en cours")
        question: qsTr("Arrêter le calibrage et quitter cet écran ?")
        yes: qsTr("Arrêter et quitter")
        no: qsTr("Continuer le calibrage")
        onAccepted: {
            screen.stop();
            Nav.leave();
        }
    }

    Sheet {
        anchors.fill: parent

        Card {
            width: parent.width

            SignChip {
                objectName: "calibrationState"
                width: Math.min(parent.width, implicitWidth)
                large: true
                sign: screen.face.sign
                word: screen.face.word
                tint: screen.face.tint
            }
            Body {
                width: parent.width
                text: controller.lastCalibrationDate === ""
                    ? qsTr("Date du dernier calibrage : inconnue")
                    : qsTr("Dernier calibrage réussi : %1").arg(controller.lastCalibrationDate)
            }
            Body {
                width: parent.width
                objectName: "attempts"
                // Only a failure ends it: one that was stopped may be started again.
                text: Instrument.calibrationAttemptsLeft === 0 && !screen.exhausted
                    ? qsTr("Plus qu'un essai : un échec bloquera le calibrage.")
                    : qsTr("Essais restants : %1 sur %2").arg(Instrument.calibrationAttemptsLeft)
                          .arg(config.Nbr_Energy_Adj_Test())
            }
            ProgressBar {
                width: parent.width
                visible: screen.running
                indeterminate: true
                Accessible.name: qsTr("Calibrage en cours")
            }
            Body {
                width: parent.width
                visible: screen.running
                text: qsTr("%1 s. Ne déplacez pas l'appareil.").arg(Words.number(screen.elapsed, 0))
            }
            Body {
                width: parent.width
                visible: !screen.running && !screen.exhausted
                text: screen.again
                    ? qsTr("Pour le refaire, tenez l'appareil, obturateur fermé, à l'écart de toute surface.")
                    : qsTr("Tenez l'appareil, obturateur fermé, à l'écart de toute surface, puis démarrez.")
                color: Theme.textSecondary
            }
            SignButton {
                id: startButton
                objectName: "startCalibration"
                width: parent.width
                visible: !screen.running
                enabled: !Instrument.busy && !screen.exhausted
                highlighted: Instrument.calibrationOutcome !== "done"
                sign: screen.again ? "refresh" : "tune"
                text: screen.again ? qsTr("Refaire le calibrage") : qsTr("Démarrer le calibrage")
                onClicked: screen.start()
            }
            SignButton {
                id: stopButton
                objectName: "stopCalibration"
                width: parent.width
                visible: screen.running
                sign: "cross"
                text: qsTr("Arrêter")
                onClicked: screen.stop()
            }
        }
    }
}
