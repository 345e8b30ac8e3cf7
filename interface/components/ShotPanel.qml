// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import Halvar 4.0
import HalvarStyle 1.0

// What the instrument does and what the operator has to do, while measures can be made.
Rectangle {
    id: panel

    readonly property string phase: Instrument.phase
    readonly property bool running: Instrument.shooting
    readonly property bool silent: phase === "silent"
    readonly property bool ready: phase === "ready" && error.readyForAcquisition
    readonly property int decision: Instrument.measure ? Instrument.measure.detectionDecision
                                                       : DetectionDecisionEnumClass.NO_DECISION
    readonly property bool tooFar: decision === DetectionDecisionEnumClass.COMPTON_ERROR
    readonly property bool found: decision === DetectionDecisionEnumClass.POSITIVE
                                  || decision === DetectionDecisionEnumClass.NEGATIVE
    readonly property bool skipped: Instrument.unit !== null && Instrument.unit.statut === UDStatutEnumClass.SKIPPED
    readonly property color ink: silent ? Theme.warningInk : running ? Theme.primaryInk : Theme.text
    property real started: 0
    property real elapsed: 0

    readonly property string state1: {
        switch (phase) {
        case "open": return qsTr("Obturateur ouvert");
        case "settling": return qsTr("La mesure s'établit");
        case "silent": return qsTr("L'instrument ne répond plus");
        case "measuring": return Instrument.decided ? qsTr("Décision acquise") : qsTr("Mesure en cours");
        case "done": return qsTr("Mesure terminée");
        case "lost": return qsTr("Mesure interrompue, sans résultat");
        case "ready": return ready ? qsTr("Prêt à mesurer") : qsTr("Pas prêt à mesurer");
        default: return skipped ? qsTr("Unité non mesurée") : qsTr("En veille");
        }
    }
    readonly property string advice: {
        switch (phase) {
        case "open":
        case "settling":
            return qsTr("Maintenez la détente et l'appareil contre la surface.");
        case "measuring":
            if (tooFar)
                return qsTr("Rapprochez l'appareil de la surface et maintenez la détente.");
            if (Instrument.measureMode === MeasureModeEnumClass.TRIGGER) {
                if (Instrument.decided)
                    return qsTr("La décision reste, la valeur peut encore changer : relâchez la détente.");
                // The first one found is shown, and may still turn.
                return found ? qsTr("Maintenez la détente jusqu'à la décision définitive.")
                             : qsTr("Maintenez la détente jusqu'à la décision.");
            }
            if (Instrument.measureMode === MeasureModeEnumClass.DEFINED)
                return qsTr("Maintenez : la mesure dure %1 s.").arg(controller.measureTime);
            return qsTr("Maintenez : la mesure s'arrête d'elle-même.");
        case "silent":
            return qsTr("Relâchez la détente et quittez cet écran.");
        case "lost":
        case "done":
            return after;
        case "ready":
            if (!ready)
                return qsTr("%1 °C, %2 V : attendez.").arg(Instrument.temperature).arg(Instrument.voltage);
            return qsTr("Appliquez l'appareil, pressez la détente et maintenez-la.");
        default:
            if (!Instrument.unit)
                return qsTr("La détente est sans effet.");
            if (!skipped)
                return qsTr("La détente est sans effet. L'unité a son résultat.");
            // The reason is kept there.
            var effect = qsTr("La détente est sans effet.");
            return Instrument.unit.observation === "" ? effect
                : effect + "\n" + qsTr("Noté : %1").arg(Instrument.unit.observation);
        }
    }
    // What to do once a shot is over. In the trigger's own mode, and when a shot was given up, its release was the end. A
    // shot that ended by itself left it pressed, and nothing tells when it is let go.
    readonly property string after: {
        if (error.errorMessage !== "")
            return qsTr("Acquittez l'erreur avant une nouvelle mesure.");
        if (phase === "lost" && !Instrument.spoiled)
            return qsTr("La détente a été relâchée trop tôt. Pressez-la de nouveau et maintenez-la.");
        var next = tooFar && phase === "done" && Instrument.armed
            ? qsTr("Trop loin de la surface : rapprochez l'appareil et pressez de nouveau la détente.")
            : Instrument.armed ? qsTr("Pressez de nouveau la détente pour une autre mesure.")
                               : qsTr("L'unité a son résultat.");
        return phase === "done" && Instrument.measureMode === MeasureModeEnumClass.TRIGGER
            ? next : qsTr("La détente peut être relâchée. %1", "followed by what comes next").arg(next);
    }
    readonly property string sign: {
        switch (phase) {
        case "open": return "open";
        case "settling": return "press";
        case "silent": return "warning";
        case "measuring": return tooFar ? "warning" : Instrument.decided ? "check" : "press";
        case "lost": return "warning";
        case "done": return Words.isFailure(decision) ? "warning" : "check";
        case "ready": return ready ? "target" : "warning";
        default: return "skip";
        }
    }

    implicitHeight: Math.max(72, words.implicitHeight + 2 * Theme.spacing)
    radius: Theme.radius
    color: silent ? Theme.warning : running ? Theme.primary : Theme.surface
    border {
        width: running ? 0 : 2
        color: phase !== "ready" ? Theme.outline : ready ? Theme.negative : Theme.undecided
    }
    Accessible.role: Accessible.StatusBar
    Accessible.name: state1 + ". " + advice

    onPhaseChanged: {
        if (phase !== "open")
            return;
        started = Date.now();
        elapsed = 0;
    }
    Timer {
        interval: 100
        repeat: true
        running: panel.running && !panel.silent
        onTriggered: panel.elapsed = (Date.now() - panel.started) / 1000
    }

    Icon {
        id: icon
        anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        name: panel.sign
        size: 40
        color: panel.ink
    }
    Column {
        id: words
        anchors {
            left: icon.right; leftMargin: Theme.margin
            right: time.left; rightMargin: Theme.spacingSmall
            verticalCenter: parent.verticalCenter
        }
        spacing: 2
        Text {
            width: parent.width
            text: panel.state1
            color: panel.ink
            font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            text: panel.advice
            color: panel.ink
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            maximumLineCount: 3
            elide: Text.ElideRight
        }
    }
    Text {
        id: time
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: panel.running ? 74 : 0
        visible: panel.running
        horizontalAlignment: Text.AlignRight
        text: qsTr("%1 s").arg(Words.number(panel.elapsed, 1))
        color: panel.ink
        font { pixelSize: Theme.fontLarge; weight: Font.DemiBold }
    }
}
