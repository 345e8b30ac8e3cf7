// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
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

    ConfirmDialog {
        id: leaveDialog
        property bool interrupted: false

        title: qsTr("Mesure en cours")
        question: interrupted
            ? qsTr("L'instrument ne répond pas. Quitter quand même ? La mesure s'arrête avec ses derniers résultats.")
            : qsTr("Relâchez la détente pour terminer la mesure. Interrompue, elle reste sans résultat.")
        yes: interrupted ? qsTr("Quitter quand même") : qsTr("Terminer avec le résultat et quitter")
        other: interrupted ? "" : qsTr("Interrompre et quitter")
        no: qsTr("Continuer la mesure")
        onOpened: interrupted = false
        onOtherChosen: {
            Instrument.interrupt();
            waiting.restart();
        }
        onAccepted: {
            if (interrupted) {
                Instrument.abandon();
                Nav.leave();
                return;
            }
            controller.stopMeasureProperly();
            waiting.restart();
        }
    }
    // The service has this long to end the shot.
    Timer {
        id: waiting
        interval: 2500
        onTriggered: {
            if (Instrument.shooting) {
                leaveDialog.open();
                leaveDialog.interrupted = true;
            }
        }
    }
    Connections {
        target: Instrument
        function onShotEnded() {
            leaveDialog.close();
            if (waiting.running) {
                waiting.stop();
                Nav.leave();
            }
        }
    }
}
