// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarStyle 1.0

// Shocks and faults, each by its name.
Card {
    Caption {
        width: parent.width
        text: qsTr("Chocs et pannes")
    }
    CommandGrid {
        width: parent.width
        commands: [
            { name: "shockIdle", text: qsTr("Choc à l'arrêt"), command: "mspEvent", members: { event: "SYS_ERR", code: 0 } },
            { name: "shockWorking", text: qsTr("Choc en marche"), command: "mspEvent", members: { event: "SYS_ERR", code: 1 } },
            { name: "shutterFault", text: qsTr("Obturateur en panne"), command: "mspEvent", members: { event: "SYS_ERR", code: 2 } },
            { name: "shutterStuck", text: qsTr("Ouverture ratée"), command: "mspShutter", members: { failures: 1 } },
            { name: "detectorFault", text: qsTr("Détecteur de chocs"), command: "mspEvent", members: { event: "SYS_ERR", code: 3 } },
            { name: "dacFault", text: qsTr("Convertisseur (DAC)"), command: "mspEvent", members: { event: "SYS_ERR", code: 4 } },
            { name: "voltageFault", text: qsTr("Haute tension"), command: "mspEvent", members: { event: "SYS_ERR", code: 5 } }
        ]
    }
    Caption {
        width: parent.width
        text: qsTr("Erreurs du service")
    }
    CommandGrid {
        width: parent.width
        commands: [
            { name: "temperatureError", text: qsTr("Température invalide"), command: "napError", members: { error: "INVALID_TEMPERATURE" } },
            { name: "acceleratingError", text: qsTr("Tension invalide"), command: "napError", members: { error: "INVALID_ACCELERATING_VOLTAGE" } },
            { name: "dppError", text: qsTr("Traitement (DPP)"), command: "napError", members: { error: "DPP_ERROR" } },
            { name: "dataError", text: qsTr("Gestion des données"), command: "napError", members: { error: "DATA_MANAGER_ERROR" } },
            { name: "timeoutError", text: qsTr("Délai dépassé"), command: "napError", members: { error: "TIMEOUT_ERROR" } },
            { name: "unknownError", text: qsTr("Erreur inconnue"), command: "napError", members: { error: "UNKNOWN_ERROR" } }
        ]
    }
    CheckBox {
        objectName: "calibrationFails"
        width: parent.width
        text: qsTr("Les calibrages échouent")
        checked: panel.state.nap.calibrationFails
        onToggled: Hand.run("calibration", { outcome: checked ? "error" : "success" })
    }
}
