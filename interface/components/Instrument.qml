// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15
import Halvar 4.0

// What the instrument is doing, as the screens see it at every moment.
//
// The library announces temperature and voltage by each other's signal, says nothing when the measure mode changes,
// and goes back to NONE in silence after an accuracy check or a calibration. All of that is made up for here, once.
Item {
    id: instrument

    // Reading both makes both signals refresh both.
    readonly property int temperature: { controller.voltage; return controller.temperature; }
    readonly property int voltage: { controller.temperature; return controller.voltage; }

    property int mode: AcquisitionModeEnumClass.NONE
    property int measureMode: MeasureModeEnumClass.TRIGGER
    property int calibrationState: CalibrationEnumClass.NOT_STARTED
    property int calibrationAttempts: 0
    // Of the last calibration: "", "done", "error", "stopped".
    property string calibrationOutcome: ""
    readonly property int calibrationAttemptsLeft: Math.max(0, config.Nbr_Energy_Adj_Test() - calibrationAttempts)

    readonly property bool busy: mode !== AcquisitionModeEnumClass.NONE
    readonly property bool shooting: !stray && (mode === AcquisitionModeEnumClass.START_MEASURE
                                                || mode === AcquisitionModeEnumClass.MEASURE)

    // Whether the trigger opens the shutter now.
    property bool armed: false
    property QtObject unit: null
    // Where results go, and the measure that they go to.
    property QtObject list: null
    property QtObject measure: null
    property int results: 0
    // Results in a row with the same decision.
    property int sameDecision: 0
    // How the last shot ended, until the next one: with a result, or without.
    property bool finished: false
    property bool lost: false
    // Given up, or an error came in its course.
    property bool spoiled: false
    // Measures without a result since the start: their last values stay in their lists, under another one's number.
    property var interrupted: []
    property real begun: 0
    // A measure runs, and for a while the service has told nothing of it.
    property bool silent: false
    // The shot that runs is none: the shutter opened while nothing was to be measured.
    property bool stray: false

    // Something that only the operator starts may begin at any moment.
    property bool expectant: false
    property int askEvery: 5000
    property real notBefore: 0

    // Phases of a shot.
    readonly property string phase: {
        if (shooting && mode === AcquisitionModeEnumClass.START_MEASURE)
            return "open";
        if (silent)
            return "silent";
        if (shooting)
            return results < 1 ? "settling" : "measuring";
        if (lost)
            return "lost";
        if (!armed && !finished)
            return "standby";
        return finished ? "done" : "ready";
    }
    // The three newest results go when the trigger is released: a decision has to be older than they are.
    readonly property bool decided: {
        if (!measure || sameDecision < 4)
            return false;
        var decision = measure.detectionDecision;
        return decision === DetectionDecisionEnumClass.POSITIVE || decision === DetectionDecisionEnumClass.NEGATIVE;
    }

    signal shotEnded()

    // Brings the open diagnostic to its file. False, and said, when it could not be written.
    function save() {
        var name = controller.fileName;
        if (name === "")
            return true;
        var before = diagnosticFiles.stampOf(name);
        controller.saveFile();
        if (diagnosticFiles.stampOf(name) !== before)
            return true;
        Nav.say(qsTr("« %1 » n'a pas pu être enregistré. Vérifiez la place libre.").arg(name));
        return false;
    }

    function setMeasureMode(mode) {
        controller.measureMode = mode;
        measureMode = controller.measureMode;
    }

    // What the configuration calls it; anything else is automatic.
    function modeOf(name) {
        return name === "gachette" ? MeasureModeEnumClass.TRIGGER
            : name === "defini" ? MeasureModeEnumClass.DEFINED : MeasureModeEnumClass.AUTO;
    }
    function forgetShot() {
        finished = false;
        lost = false;
        spoiled = false;
    }
    // Whether the shot that has just ended has one. A DEFINED one whose trigger was let go is given up; the
    // library's timer may be a twentieth early.
    function hasResult() {
        if (spoiled || !measure || measure.sigma <= 0)
            return false;
        return measureMode !== MeasureModeEnumClass.DEFINED || Date.now() - begun > 900 * controller.measureTime;
    }
    function measureDirect() {
        unit = null;
        list = directMeasures;
        forgetShot();
        controller.branchMode = BranchModeEnumClass.BRANCH_DIRECT;
        controller.setEnableMeasure(true);
        armed = true;
    }
    function measureUnit(row) {
        unit = uds.get(row);
        list = unit ? unit.measures : null;
        forgetShot();
        controller.branchMode = BranchModeEnumClass.BRANCH_INDEXED;
        controller.udIndex = row;
        controller.udLocal = unit ? unit.local : "";
        controller.udIndexEdition = row;
        armed = uds.currentStatut() === UDStatutEnumClass.RAW;
    }
    // What the unit's statut says, or what the operator says against it.
    function enable(on) {
        controller.setEnableMeasure(on);
        armed = on;
        forgetShot();
    }
    function standby() {
        unit = null;
        list = null;
        measure = null;
        forgetShot();
        controller.udIndexEdition = -1;
        controller.udIndex = -1;
        controller.setEnableMeasure(false);
        controller.branchMode = BranchModeEnumClass.NONE;
        armed = false;
    }
    // Ends a shot without a result.
    function interrupt() {
        spoiled = true;
        controller.stopMeasure();
    }
    // Ends a shot of which the service does not tell the end. What it has told stays.
    function abandon() {
        controller.stopMeasure();
        controller.acquisitionMode = AcquisitionModeEnumClass.NONE;
        refresh();
    }
    function refuse() {
        stray = true;
        // What the service tells before it stops belongs nowhere.
        controller.branchMode = BranchModeEnumClass.NONE;
        Nav.say(qsTr("La détente a ouvert l'obturateur hors d'une mesure : il est refermé, rien n'est enregistré."));
        // Only a change is passed on to the MSP.
        controller.setEnableMeasure(true);
        controller.setEnableMeasure(false);
    }
    // Asks the service how it stands. The call returns when it has answered, or after seconds.
    function ask() {
        var asked = Date.now();
        controller.requestUpdate();
        var now = Date.now();
        notBefore = 0;
        if (now - asked < 1000)
            return;
        // The screens stand still meanwhile: rarely, then.
        notBefore = now + 60000;
        Nav.say(qsTr("Le service d'analyse ne répond pas."));
    }
    function acknowledge() {
        controller.ackError();
        error.resetErrorMessage();
        // The fault took the MSP out of its measuring mode.
        if (armed) {
            controller.setEnableMeasure(false);
            controller.setEnableMeasure(true);
        }
    }

    function startCalibration() {
        calibrationOutcome = "";
        controller.startCalibration();
        refresh();
    }
    function stopCalibration() {
        controller.stopCalibration();
        calibrationOutcome = "stopped";
        refresh();
    }

    function follow() {
        if (!list || list.count === 0)
            return;
        var newest = list === directMeasures ? list.get(0) : list.get(list.count - 1);
        if (newest === measure)
            return;
        measure = newest;
        results = 0;
        sameDecision = 0;
    }
    function refresh() {
        var before = mode;
        var wasShooting = shooting;
        calibrationState = calibration.calibrationState;
        mode = controller.acquisitionMode;
        measureMode = controller.measureMode;
        if (before === mode)
            return;
        if (before === AcquisitionModeEnumClass.CALIBRATION && calibrationOutcome === "") {
            var failed = calibrationState === CalibrationEnumClass.ERROR
                || calibrationState === CalibrationEnumClass.TOO_MANY_ERRORS;
            calibrationOutcome = failed ? "error" : "done";
            // For the date of the new calibration.
            ask();
        }
        silent = false;
        watchdog.stop();
        if (mode === AcquisitionModeEnumClass.MEASURE) {
            watchdog.restart();
            begun = Date.now();
            // The measure begins after its mode is told.
            if (stray)
                Qt.callLater(interrupt);
        }
        if (mode === AcquisitionModeEnumClass.START_MEASURE) {
            stray = false;
            if (!armed)
                refuse();
            forgetShot();
            measure = null;
            results = 0;
        } else if (stray && mode === AcquisitionModeEnumClass.NONE) {
            stray = false;
            controller.branchMode = list === null ? BranchModeEnumClass.NONE
                : unit ? BranchModeEnumClass.BRANCH_INDEXED : BranchModeEnumClass.BRANCH_DIRECT;
        } else if (wasShooting && !busy) {
            finished = hasResult();
            lost = !finished;
            if (lost && measure)
                interrupted = interrupted.concat([measure]);
            // As the library decided when the shot ended.
            if (unit)
                armed = unit.statut === UDStatutEnumClass.RAW;
            shotEnded();
        }
    }

    Component.onCompleted: refresh()

    Connections {
        target: controller
        function onAcquisitionModeChanged() { instrument.refresh(); }
        function onMeasureModeChanged() { instrument.refresh(); }
    }
    Connections {
        target: calibration
        function onCalibrationStateChanged(state) {
            if (state === CalibrationEnumClass.IN_PROGRESS)
                ++instrument.calibrationAttempts;
            else if (state === CalibrationEnumClass.DONE)
                instrument.calibrationAttempts = 0;
            instrument.refresh();
        }
    }
    Connections {
        target: instrument.list
        function onRowsInserted() { instrument.follow(); }
    }
    Connections {
        target: instrument.measure
        function onConcentrationChanged() {
            instrument.silent = false;
            watchdog.restart();
            ++instrument.results;
            ++instrument.sameDecision;
        }
        function onDetectionDecisionChanged() { instrument.sameDecision = 1; }
    }
    // Results come every second.
    Timer {
        id: watchdog
        interval: 4000
        onTriggered: {
            if (instrument.stray)
                instrument.abandon();
            else
                instrument.silent = instrument.mode === AcquisitionModeEnumClass.MEASURE;
        }
    }
    Connections {
        target: error
        enabled: instrument.shooting
        function onErrorMessageSignal() { instrument.spoiled = instrument.spoiled || error.errorMessage !== ""; }
        function onReadyForAcquisitionSignal() { instrument.spoiled = instrument.spoiled || !error.readyForAcquisition; }
    }
    // The library asks nobody by itself: what the service knows comes when it is asked for. Not while something runs,
    // whose end an answer could be taken for, and not when it may begin before the answer is there. Only an instrument
    // that is not ready is asked even then: nothing is to be started on it.
    Timer {
        interval: instrument.askEvery
        repeat: true
        triggeredOnStart: true
        running: !instrument.busy && !(error.readyForAcquisition && (instrument.armed || instrument.expectant))
        onTriggered: {
            if (Date.now() >= instrument.notBefore)
                instrument.ask();
        }
    }
    Timer {
        interval: 150
        repeat: true
        running: instrument.mode === AcquisitionModeEnumClass.ACCURACY
                 || instrument.mode === AcquisitionModeEnumClass.CALIBRATION
        onTriggered: instrument.refresh()
    }
}
