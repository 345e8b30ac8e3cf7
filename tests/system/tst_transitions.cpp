// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Events that come in a mode where an operator seldom sees them, and what the operator hears and sees of each
// end.
#include "bench.h"

#include <QFile>
#include <QSignalSpy>

#include "battery.h"
#include "calibration.h"
#include "halvar-error.h"
#include "measure.h"
#include "measurelistmodel.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

class TstTransitions : public QObject
{
    Q_OBJECT
private slots:
    void releaseBeforeTheMeasure_letsItStartAndStopsItLater();
    void releaseDuringACheck_leavesTheCheckAlone();
    void shutterOpenedDuringACalibration_startsAMeasure();
    void modeAndTime_cannotChangeOutsideNone_data();
    void modeAndTime_cannotChangeOutsideNone();
    void everyFinish_beepsAndNoAbortDoes();
    void directMeasure_holdsTheLastResult();
    void indexedWithoutAUnit_isNotKept();
    void decidedUnit_isUpdatedWithOneMeasureMore();
    void calibrationState_followsTheService();
    void shockDuringAMeasure_isShownAndTheMeasureGoesOn();
    void batteryLevels_followTheirEdges();
};

void TstTransitions::releaseBeforeTheMeasure_letsItStartAndStopsItLater()
{
    Bench bench;
    bench.home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("400"));
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    LogRecorder log;
    QVERIFY(bench.simulator.control.release());
    QTRY_VERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: STOP before START")));
    QVERIFY(bench.isHard());

    // The first shot's results are no longer counted, and the second one is too slow to have any.
    QVERIFY(bench.set("speed", "value", 0.05));
    bench->setMeasureMode(MeasureMode::TRIGGER);
    bench.modes.clear();
    log.clear();
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::START_MEASURE);
    QVERIFY(bench.simulator.control.release());
    QTRY_VERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: NapMeasure:  0")));
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE}));
    QCOMPARE(bench.calls("requestStopMeasure"), 0);
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QVERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: delayedStopMeasure...")));
    QVERIFY(!log.contains(QStringLiteral("INFO [Halvar Controller]: STOP before START")));
    QCOMPARE(bench.calls("requestStopMeasure"), 1);
    QCOMPARE(bench.calls("abort"), 0);
}

void TstTransitions::releaseDuringACheck_leavesTheCheckAlone()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QTRY_VERIFY(!bench.results().isEmpty());
    QVERIFY(bench.set("speed", "value", 0.05));
    bench->startAccuracyCheck();
    LogRecorder log;
    QVERIFY(bench.simulator.control.release());
    QTRY_VERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: STOP before START")));
    QCOMPARE(bench->acquisitionMode(), Mode::ACCURACY);
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("accuracy"));
    QCOMPARE(bench.calls("abort") + bench.calls("requestStopMeasure"), 0);
}

void TstTransitions::shutterOpenedDuringACalibration_startsAMeasure()
{
    Bench bench(1);
    QVERIFY(bench.start());
    bench->startCalibration();
    QVERIFY(bench.set("mspEvent", "event", QStringLiteral("SHUT_OPENED")));
    QTRY_COMPARE(bench.modes, QList<int>({Mode::CALIBRATION, Mode::START_MEASURE, Mode::MEASURE}));
    QTRY_COMPARE(bench.lastNotice("napCall").value(QLatin1String("call")).toString(),
                 QStringLiteral("startMeasure"));
    // The service is busy: that it refuses is its own affair.
    QCOMPARE(bench.lastNotice("napCall").value(QLatin1String("result")).toInt(), -1);
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("calibration"));
}

void TstTransitions::modeAndTime_cannotChangeOutsideNone_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("START_MEASURE") << int(Mode::START_MEASURE);
    QTest::newRow("ACCURACY") << int(Mode::ACCURACY);
    QTest::newRow("CALIBRATION") << int(Mode::CALIBRATION);
}

void TstTransitions::modeAndTime_cannotChangeOutsideNone()
{
    QFETCH(int, mode);
    Bench bench(1);
    bench.home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("60000"));
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    if (mode == Mode::ACCURACY)
        bench->startAccuracyCheck();
    else if (mode == Mode::CALIBRATION)
        bench->startCalibration();
    else
        QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(int(bench->acquisitionMode()), mode);
    bench->setMeasureMode(MeasureMode::AUTO);
    bench->setMeasureTime(17);
    QCOMPARE(bench->measureMode(), MeasureMode::TRIGGER);
    QCOMPARE(bench->measureTime(), 1);
    QCOMPARE(int(bench->acquisitionMode()), mode);
}

void TstTransitions::everyFinish_beepsAndNoAbortDoes()
{
    const auto beeper = [](Bench &bench, const char *member) {
        const QJsonObject status = bench.simulator.control.status();
        return status.value(QLatin1String("beeper")).toObject().value(QLatin1String(member)).toInt();
    };
    QFile line(QStringLiteral("/sys/class/gpio/gpio79/value"));
    if (line.exists()) { // whatever the tests before left on
        QVERIFY(line.open(QIODevice::WriteOnly));
        line.write("0\n");
        line.close();
    }
    Bench bench;
    bench.home.setConfig(QStringLiteral("Beep_Time"), QStringLiteral("1"));
    QVERIFY(bench.start());
    QTRY_COMPARE(beeper(bench, "beeps"), 1);
    QTRY_COMPARE(beeper(bench, "level"), 0);

    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QTRY_COMPARE(beeper(bench, "beeps"), 2);
    QTRY_COMPARE(beeper(bench, "level"), 0);

    bench->startAccuracyCheck();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QTRY_COMPARE(beeper(bench, "beeps"), 3);
    QTRY_COMPARE(beeper(bench, "level"), 0);

    bench->startCalibration();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QTRY_COMPARE(beeper(bench, "beeps"), 4);
    QTRY_COMPARE(beeper(bench, "level"), 0);

    bench->startCalibration();
    bench->stopCalibration();
    QCOMPARE(beeper(bench, "beeps"), 4);
}

void TstTransitions::directMeasure_holdsTheLastResult()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.set("sample", "concentration", 5));
    for (int shot = 1; shot <= 2; ++shot) {
        bench.modes.clear();
        QVERIFY(bench.isHard());
        QVERIFY(bench.simulator.control.press());
        QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
        QVERIFY(bench.simulator.control.release());
        QCOMPARE(bench->directMeasures->size(), shot);
        const Measure *const newest = bench->directMeasures->first();
        QTRY_COMPARE(bench.lastNotice("finished").value(QLatin1String("id")).toInt(), shot);
        const QJsonObject last = bench.results().last();
        QCOMPARE(newest->concentration(), last.value(QLatin1String("value")).toDouble());
        QCOMPARE(newest->sigma(), last.value(QLatin1String("sigma")).toDouble());
        QCOMPARE(newest->detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
        QCOMPARE(newest->idNAP(), shot);
    }
    QVERIFY(bench->uds->isEmpty());
}

void TstTransitions::indexedWithoutAUnit_isNotKept()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->directMeasures->size(), 1);
    bench->setBranchMode(BranchModeEnumClass::BRANCH_INDEXED);
    bench->setUdIndexEdition(-1);
    QSignalSpy kept(bench->directMeasures->first(), &Measure::sigmaChanged);
    LogRecorder log;
    QTRY_VERIFY(log.count(QStringLiteral("TRACE [Halvar Controller]: nap_DetectionResult()")) >= 4);
    QVERIFY(kept.isEmpty());
    QVERIFY(bench->uds->isEmpty());
    bench->stopMeasure();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
}

void TstTransitions::decidedUnit_isUpdatedWithOneMeasureMore()
{
    Bench bench;
    QVERIFY(bench.start());
    bench->setMeasureMode(MeasureMode::AUTO);
    bench->setNbMeasures(1);
    UD *const unit = bench.addUnit(QStringLiteral("Cuisine"));
    QVERIFY(bench.set("sample", "concentration", 0));
    QVERIFY(bench.isHard());
    for (int shot = 1; shot <= 2; ++shot) {
        bench.modes.clear();
        LogRecorder log;
        QVERIFY(bench.simulator.control.press());
        QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
        QVERIFY(bench.simulator.control.release());
        // From its second measure on the unit stands already; then one more than asked for is taken into
        // account.
        QVERIFY(log.contains(
            QStringLiteral("DEBUG [UD][updateStatut]: Received with nbMeasures !  %1").arg(shot)));
        QCOMPARE(log.contains(QStringLiteral(
                     "DEBUG [Halvar Controller][Statut]: The statut was already set to Négative .")),
                 shot == 2);
        QCOMPARE(unit->measures()->size(), shot);
        QCOMPARE(unit->measures()->last()->idNAP(), shot);
        QCOMPARE(unit->statut(), UDStatutEnumClass::NEGATIVE);
        QTRY_COMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
        bench->setEnableMeasure(true);
        QVERIFY(bench.isHard());
    }
}

void TstTransitions::calibrationState_followsTheService()
{
    Bench bench;
    QVERIFY(bench.start());
    using State = CalibrationEnumClass;
    const Calibration *const calibration = bench->calibration;
    QList<int> told;
    connect(calibration, &Calibration::calibrationStateChanged, this,
            [&told](CalibrationEnumClass::CalibrationStatut state) { told.append(state); });
    bench->startCalibration();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(told, QList<int>({State::IN_PROGRESS}));
    QCOMPARE(calibration->calibrationState(), State::NOT_STARTED);

    QVERIFY(bench.set("calibration", "outcome", QStringLiteral("error")));
    bench->startCalibration();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(told, QList<int>({State::IN_PROGRESS, State::IN_PROGRESS, State::ERROR}));
    QCOMPARE(bench.calls("abort"), 1);
}

void TstTransitions::shockDuringAMeasure_isShownAndTheMeasureGoesOn()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_VERIFY(bench.results().size() >= 2);
    QVERIFY(bench.simulator.control.run(
        QStringLiteral("mspEvent"),
        {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), 1}}));
    QTRY_VERIFY(bench->error->shock());
    const int before = bench.results().size();
    QTRY_VERIFY(bench.results().size() > before);
    QCOMPARE(bench->acquisitionMode(), Mode::MEASURE);
    QCOMPARE(bench.calls("abort"), 0);
    QVERIFY(bench.home.read(QStringLiteral("shock/shock.xml")).contains("<shock>"));
}

void TstTransitions::batteryLevels_followTheirEdges()
{
    using Levels = BatteryLevelsEnumClass;
    Bench bench;
    QVERIFY(bench.start());
    for (const Levels::BatteryLevels level :
         {Levels::LEVEL_GOOD, Levels::LEVEL_LOW, Levels::LEVEL_VERY_LOW, Levels::LEVEL_CRITICAL}) {
        QVERIFY(bench.set("battery", "value", int(level)));
        QTRY_COMPARE(bench->battery->level(), level);
    }
    QVERIFY(bench.set("battery", "value", int(Levels::LEVEL_GOOD) + 1));
    QTRY_COMPARE(bench->battery->level(), Levels::LEVEL_FULL);
}

QTEST_GUILESS_MAIN(TstTransitions)
#include "tst_transitions.moc"
