// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

// The accuracy check on the reference block: one for practice, and the three that a diagnostic keeps.
Screen {
    id: screen

    readonly property real reference: config.Nist_InformationValue()
    readonly property real precision: config.Nist_InformationPrecision()
    readonly property bool running: Instrument.mode === AcquisitionModeEnumClass.ACCURACY
    readonly property QtObject result: controller.currentAccuracy
    readonly property bool made: result !== null && result.idNAP >= 0
    // A calibration since then is not seen in the result.
    property bool calibrated: false
    readonly property bool uncalibrated: result !== null && !calibrated
                                         && result.detectionDecision === DetectionDecisionEnumClass.UNCALIBRATED
    property real started: 0
    property real elapsed: 0

    title: qsTr("Contrôle de justesse")
    subtitle: qsTr("Bloc de référence : %1 ± %2 mg/cm²").arg(Words.concentration(reference))
        .arg(Words.concentration(precision))

    first: running ? stopButton : calibrateButton.visible ? calibrateButton : startButton
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
        calibrated = false;
        controller.startAccuracyCheck();
        Instrument.refresh();
    }
    function stop() {
        Nav.settle();
        controller.stopAccuracyCheck();
        Instrument.refresh();
        Nav.say(qsTr("Contrôle arrêté, sans résultat."));
    }

    onRunningChanged: {
        // What the diagnostic keeps is in its file at once.
        if (!running)
            Instrument.save();
    }
    Connections {
        target: Instrument
        function onCalibrationOutcomeChanged() {
            if (Instrument.calibrationOutcome === "done")
                screen.calibrated = true;
        }
    }
    Timer {
        interval: 100
        repeat: true
        running: screen.running
        onTriggered: screen.elapsed = (Date.now() - screen.started) / 1000
    }
    ConfirmDialog {
        id: leaveDialog
        title: qsTr("Contrôle en cours")
        question: qsTr("Arrêter le contrôle de justesse et quitter cet écran ?")
        yes: qsTr("Arrêter et quitter")
        no: qsTr("Continuer le contrôle")
        onAccepted: {
            screen.stop();
            Nav.leave();
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

                Item {
                    width: parent.width
                    height: Math.max(stageName.implicitHeight, verdict.implicitHeight)
                    Column {
                        id: stageName
                        Caption { text: qsTr("Justesse : %1").arg(Words.accuracyStage(controller.accuracyStage)) }
                        // The unit is small: the outcome stands beside it.
                        Row {
                            spacing: 6
                            Text {
                                id: checked
                                objectName: "checkedValue"
                                text: screen.result && screen.result.sigma > 0
                                    ? qsTr("%1 ± %2").arg(Words.concentration(screen.result.concentration))
                                          .arg(Words.concentration(screen.result.sigma)) : "–"
                                color: Theme.text
                                font { pixelSize: Theme.fontLarge; weight: Font.Bold }
                            }
                            Text {
                                anchors.baseline: checked.baseline
                                visible: checked.text !== "–"
                                text: qsTr("mg/cm²")
                                color: Theme.textSecondary
                                font.pixelSize: Theme.fontSmall
                            }
                        }
                    }
                    SignChip {
                        id: verdict
                        objectName: "verdict"
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                        visible: screen.made
                        large: !screen.wide
                        sign: screen.result ? Words.decisionSign(screen.result.detectionDecision) : ""
                        word: screen.result ? Words.decision(screen.result.detectionDecision) : ""
                        tint: screen.result ? Words.decisionColor(screen.result.detectionDecision) : Theme.neutral
                    }
                }
                MeasureBar {
                    width: parent.width
                    concentration: screen.result ? screen.result.concentration : 0
                    sigma: screen.result ? screen.result.sigma : 0
                    tint: screen.result ? Words.decisionColor(screen.result.detectionDecision) : Theme.neutral
                    threshold: screen.reference > 0 ? screen.reference : Words.threshold
                    precision: screen.precision
                }
                Body {
                    width: parent.width
                    text: {
                        if (screen.running)
                            return qsTr("Contrôle en cours : %1 s. Laissez l'appareil sur le bloc de référence.")
                                .arg(Words.number(screen.elapsed, 0));
                        if (screen.uncalibrated)
                            return qsTr("Calibrez l'instrument, puis refaites le contrôle.");
                        if (screen.made)
                            return qsTr("Posez l'appareil sur le bloc de référence pour refaire le contrôle.");
                        return qsTr("Posez l'appareil sur le bloc de référence, puis démarrez.");
                    }
                }
                ProgressBar {
                    width: parent.width
                    visible: screen.running
                    indeterminate: true
                    Accessible.name: qsTr("Contrôle en cours")
                }
                SignButton {
                    id: calibrateButton
                    objectName: "calibrate"
                    width: parent.width
                    visible: screen.uncalibrated && !screen.running
                    highlighted: true
                    sign: "tune"
                    text: qsTr("Calibrer l'instrument")
                    onClicked: Nav.open("CalibrationScreen")
                }
                SignButton {
                    id: startButton
                    objectName: "startAccuracy"
                    width: parent.width
                    visible: !screen.running
                    enabled: !Instrument.busy && screen.result !== null
                    highlighted: !screen.uncalibrated
                    sign: "balance"
                    text: screen.made ? qsTr("Refaire le contrôle") : qsTr("Démarrer le contrôle")
                    onClicked: screen.start()
                }
                SignButton {
                    id: stopButton
                    objectName: "stopAccuracy"
                    width: parent.width
                    visible: screen.running
                    sign: "cross"
                    text: qsTr("Arrêter")
                    onClicked: screen.stop()
                }
            }
            Column {
                width: page.column
                spacing: Theme.spacing

                Caption { text: qsTr("Quel contrôle ?") }
                Column {
                    width: parent.width
                    spacing: Theme.spacingSmall

                    Repeater {
                        model: accuracyMeasures
                        ListRow {
                            id: stageRow
                            required property int index
                            required property QtObject modelData
                            readonly property bool chosen: controller.accuracyStage === stageRow.index
                            // What a diagnostic keeps needs one.
                            readonly property bool possible: stageRow.index === AccuracyStageEnumClass.ACCURACY_LIVE
                                                             || controller.fileName !== ""
                            objectName: "stage" + stageRow.index
                            width: parent.width
                            enabled: !screen.running && possible
                            chevron: false
                            sign: chosen ? "chosen" : "open"
                            heading: Words.accuracyStage(stageRow.index)
                            detail: {
                                if (stageRow.index === AccuracyStageEnumClass.ACCURACY_LIVE)
                                    return qsTr("hors diagnostic");
                                if (!possible)
                                    return qsTr("ouvrez d'abord un diagnostic");
                                return stageRow.modelData.idNAP < 0 ? qsTr("pas encore fait")
                                                           : qsTr("tir n° %1").arg(stageRow.modelData.idNAP);
                            }
                            onClicked: controller.accuracyStage = stageRow.index

                            Column {
                                visible: stageRow.modelData.idNAP >= 0
                                SignChip {
                                    anchors.right: parent.right
                                    sign: Words.decisionSign(stageRow.modelData.detectionDecision)
                                    word: Words.decision(stageRow.modelData.detectionDecision)
                                    tint: Words.decisionColor(stageRow.modelData.detectionDecision)
                                }
                                Text {
                                    anchors.right: parent.right
                                    text: stageRow.modelData.sigma > 0 ? qsTr("%1 ± %2").arg(Words.concentration(stageRow.modelData.concentration))
                                                                    .arg(Words.concentration(stageRow.modelData.sigma)) : ""
                                    visible: text !== ""
                                    color: Theme.text
                                    font.pixelSize: Theme.fontSmall
                                }
                            }
                        }
                    }
                }
            }
        }
    }
    // A fresh instrument shows no stage's result until one is chosen.
    Component.onCompleted: controller.accuracyStage = controller.fileName === "" ? AccuracyStageEnumClass.ACCURACY_LIVE
                                                                                : controller.accuracyStage
}
