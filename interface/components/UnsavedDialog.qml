// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15

// Before what would drop the open diagnostic: it is saved, and when that fails the operator decides.
ConfirmDialog {
    id: dialog

    property var action

    function saveThen(next) {
        if (Instrument.save()) {
            next();
            return;
        }
        action = next;
        open();
    }

    title: qsTr("Diagnostic non enregistré")
    question: qsTr("« %1 » n'a pas pu être écrit. Continuer perd ce qui n'est pas encore dans son fichier.")
        .arg(controller.fileName)
    yes: qsTr("Continuer sans enregistrer")
    onAccepted: action()
}
