// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

// What the service asks for on the telephone, and what only the service does.
Screen {
    id: screen

    property string information
    property var facts: []
    property bool showWifi: false

    title: qsTr("Service")
    subtitle: qsTr("Appareil %1").arg(config.getSN_Analyzer())

    function refresh() {
        if (!Instrument.busy)
            Instrument.ask();
        // Those of the MSP come with its answer at start-up.
        facts = [
            [qsTr("Numéro de série"), config.getSN_Analyzer()],
            [qsTr("Numéro ASN"), config.getN_ASN()],
            [qsTr("Numéro VISA"), config.getN_VISA()],
            [qsTr("Bibliothèque"), controller.getLibControllerVersion()],
            [qsTr("MSP, micrologiciel"), controller.getMSPFwVersion()],
            [qsTr("MSP, serveur"), controller.getMSPVersion()],
            [qsTr("Lambrik"), config.VersionLambrik()],
            [qsTr("Marten"), config.VersionMarten()],
            [qsTr("Application SAV"), config.VersionAppSAV()],
            [qsTr("Fichier de configuration"), config.VersionXMLFile()],
            [qsTr("Fin de la source"), Qt.formatDate(config.DateEndSource(), "dd-MM-yyyy")],
            [qsTr("Alerte avant la fin"), qsTr("%n mois", "", config.Remaining_Time_Before_EndSource())],
            [qsTr("Dernier calibrage"), controller.lastCalibrationDate],
            [qsTr("Fin de mesure à l'allumage"), config.Type_End_Measure()],
            [qsTr("Durée et nombre de mesures"), qsTr("%1 s, %2").arg(config.Time_Measure()).arg(config.Nbr_Measure())],
            [qsTr("Attente avant mesure"), qsTr("%1 ms").arg(config.Time_Before_Open_Shutter())],
            [qsTr("Bip, lampe"), qsTr("%1 s, %2 s").arg(config.Beep_Time()).arg(config.Led_Light_Off())],
            [qsTr("Durée maximale d'une erreur"), qsTr("%1 s").arg(config.Maxtime_Error_Status())],
            [qsTr("Répertoire"), controller.home]
        ];
        readInformation();
    }
    function readInformation() {
        var request = new XMLHttpRequest();
        request.onreadystatechange = function() {
            if (request.readyState === XMLHttpRequest.DONE)
                screen.information = request.responseText || qsTr("Ce fichier n'a pas encore été écrit.");
        };
        request.open("GET", "file:///data/lambrik/info.txt");
        request.send();
    }
    onShown: screen.refresh()

    ConfirmDialog {
        id: shutdownDialog
        title: qsTr("Éteindre")
        question: controller.fileName === "" ? qsTr("Éteindre l'instrument ?")
                                             : qsTr("« %1 » est enregistré, puis l'instrument s'éteint.").arg(controller.fileName)
        yes: qsTr("Éteindre")
        onAccepted: unsavedDialog.saveThen(function() { controller.shutdown(); })
    }
    UnsavedDialog { id: unsavedDialog }
    ConfirmDialog {
        id: removeDialog
        title: qsTr("Effacer les fichiers de mesure")
        question: qsTr("Tous les diagnostics, l'historique des chocs et les journaux de l'instrument seront effacés.")
        yes: qsTr("Tout effacer")
        onAccepted: {
            controller.initFile();
            controller.removeMeasureFiles();
            diagnosticFiles.refresh();
            Nav.say(diagnosticFiles.count === 0
                ? qsTr("Les fichiers de mesure sont effacés.")
                : qsTr("%n diagnostic(s) n'ont pas pu être effacés.", "", diagnosticFiles.count));
        }
    }

    Sheet {
        anchors.fill: parent

        Card {
            width: parent.width
            spacing: 4
            Repeater {
                model: screen.facts
                Item {
                    id: fact
                    required property var modelData
                    width: parent.width
                    height: Math.max(name.implicitHeight, value.implicitHeight) + 6
                    Body {
                        id: name
                        width: parent.width * 0.48
                        text: fact.modelData[0]
                        color: Theme.textSecondary
                        font.pixelSize: Theme.fontSmall
                    }
                    Body {
                        id: value
                        anchors.right: parent.right
                        width: parent.width * 0.5
                        horizontalAlignment: Text.AlignRight
                        text: fact.modelData[1] === "" ? "–" : fact.modelData[1]
                        font.pixelSize: Theme.fontSmall
                        font.weight: Font.DemiBold
                        wrapMode: Text.WrapAnywhere
                    }
                }
            }
        }
        ListRow {
            objectName: "wifiPassword"
            width: parent.width
            sign: "wifi"
            chevron: false
            heading: qsTr("Mot de passe du Wi-Fi")
            detail: screen.showWifi ? config.getWifiPassword() : qsTr("toucher pour l'afficher")
            onClicked: screen.showWifi = !screen.showWifi
        }
        ListRow {
            objectName: "log"
            width: parent.width
            sign: "document"
            heading: qsTr("Journal")
            detail: qsTr("ce que l'instrument note, ligne par ligne")
            onClicked: Nav.open("LogScreen")
        }
        Card {
            width: parent.width
            Caption { text: qsTr("Fichier d'information") }
            Body {
                objectName: "information"
                width: parent.width
                text: screen.information
                font { family: "monospace"; pixelSize: Theme.fontSmall }
                wrapMode: Text.WrapAnywhere
            }
        }
        SignButton {
            objectName: "refresh"
            width: parent.width
            sign: "refresh"
            text: qsTr("Interroger l'instrument")
            enabled: !Instrument.busy
            onClicked: screen.refresh()
        }
        SignButton {
            objectName: "removeMeasureFiles"
            width: parent.width
            sign: "bin"
            text: qsTr("Effacer les fichiers de mesure")
            enabled: !Instrument.busy
            onClicked: removeDialog.open()
        }
        SignButton {
            objectName: "shutdown"
            width: parent.width
            sign: "power"
            text: qsTr("Éteindre l'instrument")
            onClicked: shutdownDialog.open()
        }
    }
}
