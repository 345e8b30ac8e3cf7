// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// Measures outside any unit, the newest on top.
MeasuringScreen {
    id: screen

    title: qsTr("Mesures directes")
    subtitle: Words.measureMode(Instrument.measureMode)
    first: list.count > 0 ? list : settingsButton
    actions: [
        IconButton {
            objectName: "clearMeasures"
            sign: "bin"
            text: qsTr("Vider la liste")
            enabled: !Instrument.busy && list.count > 0
            onClicked: clearDialog.open()
        },
        IconButton {
            id: settingsButton
            objectName: "measureSettings"
            sign: "tune"
            text: qsTr("Réglages de mesure")
            enabled: !Instrument.busy
            onClicked: Nav.open("SettingsScreen")
        }
    ]

    ConfirmDialog {
        id: clearDialog
        title: qsTr("Vider la liste ?")
        dangerous: true
        question: qsTr("Les mesures directes ne sont dans aucun fichier : elles seront perdues.")
        yes: qsTr("Vider la liste")
        onAccepted: directMeasures.clear()
    }

    onShown: Instrument.measureDirect()
    onHidden: Instrument.standby()
    BarScale {
        id: barScale
        list: directMeasures
    }
    ShotPanel {
        id: panel
        x: Theme.margin
        y: Theme.spacingSmall
        width: parent.width - 2 * Theme.margin
    }
    Choices {
        id: list
        objectName: "directList"
        anchors { top: panel.bottom; topMargin: Theme.spacingSmall; bottom: parent.bottom; left: parent.left; right: parent.right }
        model: directMeasures
        emptyText: qsTr("Pas encore de mesure.")
        Accessible.name: qsTr("Mesures directes")

        delegate: MeasureRow {
            id: entry
            width: list.width - 2 * Theme.margin
            number: list.count - entry.index
            scale: barScale.full
            live: Instrument.shooting && entry.index === 0 && Instrument.measure !== null
        }
    }
    Connections {
        target: directMeasures
        function onRowsInserted() { list.positionViewAtBeginning(); }
    }
}
