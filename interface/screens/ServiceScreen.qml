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
    // The MSP tells its versions in its answer at start-up, and nothing announces them.
    property string mspFirmware
    property string mspServer
    readonly property bool mspKnown: mspFirmware !== ""
    // It does not change, but is not declared so.
    property string home
    property bool showWifi: false

    title: qsTr("Service")
    subtitle: qsTr("Appareil %1").arg(config.getSN_Analyzer())

    // From the top of what is to be read.
    first: backButton

    function refresh() {
        if (!Instrument.busy)
            Instrument.ask();
        readMsp();
    }
    function readMsp() {
        mspFirmware = controller.getMSPFwVersion();
        mspServer = controller.getMSPVersion();
        // The library writes it with the MSP's answer.
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
    Component.onCompleted: home = controller.home
    onShown: screen.refresh()
    Timer {
        interval: 500
        repeat: true
        running: screen.isShown && !screen.mspKnown
        onTriggered: {
            if (controller.getMSPFwVersion() !== "")
                screen.readMsp();
        }
    }

    ConfirmDialog {
        id: shutdownDialog
        title: qsTr("Éteindre ?")
        question: controller.fileName === "" ? qsTr("Éteindre l'instrument ?")
                                             : qsTr("« %1 » est enregistré, puis l'instrument s'éteint.").arg(controller.fileName)
        yes: qsTr("Éteindre")
        onAccepted: unsavedDialog.saveThen(function() { controller.shutdown(); })
    }
    UnsavedDialog { id: unsavedDialog }
    ConfirmDialog {
        id: removeDialog
        title: qsTr("Effacer les fichiers de mesure ?")
        dangerous: true
        // The history that is in memory stays.
        question: qsTr("Tous les diagnostics et les journaux de l'instrument seront effacés, et au prochain démarrage l'historique des chocs.")
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

        Grid {
            id: page
            width: parent.width
            columns: screen.wide ? 2 : 1
            spacing: Theme.spacing
            readonly property real column: (width - (columns - 1) * spacing) / columns

            Card {
                width: page.column
                spacing: 4
                // The configuration and the library's version are read before the first screen, and stay.
                Fact { width: parent.width; name: qsTr("Numéro de série"); value: config.getSN_Analyzer() }
                Fact { width: parent.width; name: qsTr("Numéro ASN"); value: config.getN_ASN() }
                Fact { width: parent.width; name: qsTr("Numéro VISA"); value: config.getN_VISA() }
                Fact { width: parent.width; name: qsTr("Bibliothèque"); value: controller.getLibControllerVersion() }
                Fact { width: parent.width; name: qsTr("MSP, micrologiciel"); value: screen.mspFirmware }
                Fact { width: parent.width; name: qsTr("MSP, serveur"); value: screen.mspServer }
                // As the configuration has them; the information file may name others.
                Fact { width: parent.width; name: qsTr("Lambrik, configuration"); value: config.VersionLambrik() }
                Fact { width: parent.width; name: qsTr("Marten, configuration"); value: config.VersionMarten() }
                Fact { width: parent.width; name: qsTr("Application SAV, configuration"); value: config.VersionAppSAV() }
                Fact { width: parent.width; name: qsTr("Fichier de configuration"); value: config.VersionXMLFile() }
                Fact { width: parent.width; name: qsTr("Fin de la source"); value: Qt.formatDate(config.DateEndSource(), "dd-MM-yyyy") }
                Fact { width: parent.width; name: qsTr("Alerte avant la fin"); value: qsTr("%n mois", "", config.Remaining_Time_Before_EndSource()) }
                Fact { width: parent.width; name: qsTr("Dernier calibrage"); value: controller.lastCalibrationDate }
                Fact { width: parent.width; name: qsTr("Fin de mesure à l'allumage"); value: Words.measureMode(Instrument.modeOf(config.Type_End_Measure())) }
                Fact { width: parent.width; name: qsTr("Durée d'une mesure"); value: qsTr("%1 s").arg(config.Time_Measure()) }
                Fact { width: parent.width; name: qsTr("Négatives par unité à l'allumage"); value: config.Nbr_Measure() }
                Fact { width: parent.width; name: qsTr("Attente avant mesure"); value: qsTr("%1 s").arg(Words.number(config.Time_Before_Open_Shutter() / 1000, 1)) }
                Fact { width: parent.width; name: qsTr("Bip"); value: qsTr("%1 s").arg(config.Beep_Time()) }
                Fact { width: parent.width; name: qsTr("Lampe"); value: qsTr("%1 s").arg(config.Led_Light_Off()) }
                Fact { width: parent.width; name: qsTr("Durée maximale d'une erreur"); value: qsTr("%1 s").arg(config.Maxtime_Error_Status()) }
                Fact { width: parent.width; name: qsTr("Répertoire"); value: screen.home }
            }
            Column {
                width: page.column
                spacing: Theme.spacing

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
    }
}
