// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0

// A screen on which the trigger is live: it is not left in the middle of a shot without a question.
Screen {
    id: screen

    function mayLeave() {
        if (!Instrument.shooting)
            return true;
        leaveDialog.open();
        leaveDialog.interrupted = Instrument.silent;
        return false;
    }

    // How the shot is to be ended: "", "result", "interrupt".
    property string ending
    property int patience: 2500

    function stop() {
        if (ending === "interrupt")
            Instrument.interrupt();
        else if (ending === "result")
            controller.stopMeasureProperly();
    }
    function end(how) {
        ending = how;
        waiting.restart();
        stop();
    }

    ConfirmDialog {
        id: leaveDialog
        property bool interrupted: false

        title: qsTr("Mesure en cours")
        question: interrupted
            ? qsTr("L'instrument ne répond pas. Quitter quand même ? La mesure s'arrête avec ses derniers résultats.")
            : Instrument.measureMode === MeasureModeEnumClass.TRIGGER
            ? qsTr("Relâchez la détente pour terminer la mesure. Interrompue, elle reste sans résultat.")
            : qsTr("La mesure se termine d'elle-même. Interrompue, elle reste sans résultat.")
        yes: interrupted ? qsTr("Quitter quand même") : qsTr("Terminer avec le résultat et quitter")
        other: interrupted ? "" : qsTr("Interrompre et quitter")
        no: qsTr("Continuer la mesure")
        onOpened: interrupted = false
        onOtherChosen: screen.end("interrupt")
        onAccepted: {
            if (interrupted) {
                Instrument.abandon();
                Nav.leave();
                return;
            }
            screen.end("result");
        }
    }
    // The service has this long to end the shot, once it runs.
    Timer {
        id: waiting
        interval: screen.patience + (Instrument.mode === AcquisitionModeEnumClass.START_MEASURE
                                     ? config.Time_Before_Open_Shutter() : 0)
        onTriggered: {
            screen.ending = "";
            if (Instrument.shooting) {
                leaveDialog.open();
                leaveDialog.interrupted = true;
            }
        }
    }
    Connections {
        target: Instrument
        // A stop does nothing before the measure has begun; and it begins after its mode is told.
        function onModeChanged() {
            if (screen.ending !== "" && Instrument.mode === AcquisitionModeEnumClass.MEASURE)
                Qt.callLater(screen.stop);
        }
        function onShotEnded() {
            screen.ending = "";
            leaveDialog.close();
            if (waiting.running) {
                waiting.stop();
                Nav.leave();
            }
        }
    }
}
