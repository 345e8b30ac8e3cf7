// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarStyle 1.0

// Errors and shocks, on every screen, until the operator has seen them.
Column {
    Banner {
        objectName: "errorBanner"
        width: parent.width
        visible: error.errorMessage !== ""
        color: Theme.alarm
        heading: error.errorMessage
        detail: qsTr("Notez ce texte pour le service (erreur n° %1).").arg(controller.ackErrorNb)
        action: qsTr("Acquitter")
        onActed: Instrument.acknowledge()
    }
    Banner {
        objectName: "shockBanner"
        width: parent.width
        visible: error.shock
        color: Theme.warning
        ink: Theme.warningInk
        sign: "shock"
        heading: qsTr("Choc détecté")
        detail: error.lastShock
        action: qsTr("Vu")
        onActed: controller.resetShock()
    }
}
