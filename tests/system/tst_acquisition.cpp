// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Each event that moves a measure on, in each state where it can come.
#include <QSignalSpy>

#include "bench.h"
#include "halvar-error.h"
#include "measurelistmodel.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

namespace {

constexpr int TimeToStopMs = 2000;

} // namespace

class TstAcquisition : public QObject
{
    Q_OBJECT
private slots:
    void shutterOpened_startsTheMeasureAfterItsDelay_data();
    void shutterOpened_startsTheMeasureAfterItsDelay();
    void earlyRelease_stopsTwoSecondsLater_data();
    void earlyRelease_stopsTwoSecondsLater();
    void releaseWithResults_stopsAtOnceAndSaves_data();
    void releaseWithResults_stopsAtOnceAndSaves();
    void releaseAfterTheEnd_cancelsOnly();
    void measureTime_endsTheMeasure();
    void errorStatus_aborts();
    void unreadyService_endsTheMeasureAtOnce();
    void modeAndTime_cannotChangeWhileMeasuring();
    void resultWithoutABranch_isNotKept();
    void everySystemError_isShown_data();
    void everySystemError_isShown();
    void everyServiceError_isShown_data();
    void everyServiceError_isShown();
    void conditions_reachTheInterface();
};

void TstAcquisition::shutterOpened_startsTheMeasureAfterItsDelay_data()
{
    QTest::addColumn<MeasureMode::MeasureMode>("mode");
    QTest::addColumn<bool>("autoStop");
    QTest::newRow("TRIGGER") << MeasureMode::TRIGGER << false;
    QTest::newRow("AUTO") << MeasureMode::AUTO << true;
    QTest::newRow("DEFINED") << MeasureMode::DEFINED << false;
}

void TstAcquisition::shutterOpened_startsTheMeasureAfterItsDelay()
{
    QFETCH(MeasureMode::MeasureMode, mode);
    QFETCH(bool, autoStop);
    Bench bench(1);
    bench.home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("1500"));
    QVERIFY(bench.start());
    QVERIFY(bench.ready(mode));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::START_MEASURE);
    QCOMPARE(bench.calls("startMeasure"), 0);
    QElapsedTimer timer;
    timer.start();
    QTRY_COMPARE(bench.calls("startMeasure"), 1);
    QVERIFY2(timer.elapsed() >= 700, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE}));
    QTRY_VERIFY(!bench.lastNotice("napCall").isEmpty());
    QCOMPARE(bench.lastNotice("napCall").value(QLatin1String("autoStop")).toBool(), autoStop);
}

void TstAcquisition::earlyRelease_stopsTwoSecondsLater_data()
{
    QTest::addColumn<MeasureMode::MeasureMode>("mode");
    QTest::addColumn<QByteArray>("call");
    QTest::newRow("TRIGGER ends with its result") << MeasureMode::TRIGGER << QByteArray("requestStopMeasure");
    QTest::newRow("AUTO is given up") << MeasureMode::AUTO << QByteArray("abort");
    QTest::newRow("DEFINED is given up") << MeasureMode::DEFINED << QByteArray("abort");
}

void TstAcquisition::earlyRelease_stopsTwoSecondsLater()
{
    QFETCH(MeasureMode::MeasureMode, mode);
    QFETCH(QByteArray, call);
    // So slow that the opening detection is the only one.
    Bench bench(0.05);
    bench.home.setConfig(QStringLiteral("Time_Measure"), QStringLiteral("60"));
    QVERIFY(bench.start());
    bench->setFileName(QStringLiteral("essai"));
    QVERIFY(bench.ready(mode));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->directMeasures->size(), 1);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(bench.simulator.control.release());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QVERIFY2(timer.elapsed() >= TimeToStopMs - TimeToStopMs / 20,
             qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench.calls("requestStopMeasure") + bench.calls("abort"), 1);
    QCOMPARE(bench.calls(call), 1);
    QVERIFY(!bench.home.read(QStringLiteral("files/essai.xml")).isEmpty());
}

void TstAcquisition::releaseWithResults_stopsAtOnceAndSaves_data()
{
    earlyRelease_stopsTwoSecondsLater_data();
}

void TstAcquisition::releaseWithResults_stopsAtOnceAndSaves()
{
    QFETCH(MeasureMode::MeasureMode, mode);
    QFETCH(QByteArray, call);
    Bench bench(2);
    bench.home.setConfig(QStringLiteral("Time_Measure"), QStringLiteral("60"));
    QVERIFY(bench.start());
    bench->setFileName(QStringLiteral("essai"));
    QVERIFY(bench.ready(mode));
    // Never decided, so that AUTO does not end first.
    QVERIFY(bench.set("detector", "k", 10));
    QVERIFY(bench.set("sample", "concentration", 1));
    QVERIFY(bench.simulator.control.press());
    QTRY_VERIFY(!bench.results().isEmpty());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(bench.simulator.control.release());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QVERIFY2(timer.elapsed() < TimeToStopMs / 2, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench.calls("requestStopMeasure") + bench.calls("abort"), 1);
    QCOMPARE(bench.calls(call), 1);
    QVERIFY(!bench.home.read(QStringLiteral("files/essai.xml")).isEmpty());
    QTRY_COMPARE(bench.commands("MEAS_DONE"), 1);
}

void TstAcquisition::releaseAfterTheEnd_cancelsOnly()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    LogRecorder log;
    QVERIFY(bench.simulator.control.release());
    QTRY_VERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: STOP before START")));
    QCOMPARE(bench.calls("requestStopMeasure") + bench.calls("abort"), 0);
    QCOMPARE(bench.modes.size(), 3);
}

void TstAcquisition::measureTime_endsTheMeasure()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::DEFINED));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QCOMPARE(bench.calls("requestStopMeasure"), 1);
    QCOMPARE(bench.calls("abort"), 0);
    QCOMPARE(bench->directMeasures->first()->idNAP(), 1);
}

void TstAcquisition::errorStatus_aborts()
{
    Bench bench(2);
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_VERIFY(!bench.results().isEmpty());
    QVERIFY(bench.set("napError", "error", QStringLiteral("DPP_ERROR")));
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.calls("abort"), 1);
    QCOMPARE(bench.calls("requestStopMeasure"), 0);
    QCOMPARE(bench->error->errorMessage(), QStringLiteral("DPP - Erreur C3"));
    QTRY_COMPARE(bench.commands("MEAS_DONE"), 1);
}

void TstAcquisition::unreadyService_endsTheMeasureAtOnce()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.set("conditions", "temperature", 60));
    QTRY_COMPARE(bench->property("temperature").toInt(), 60);
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QCOMPARE(bench.calls("abort"), 1);
    QVERIFY(!bench->error->readyForAcquisition());
    QVERIFY(bench->error->errorMessage().isEmpty());
}

void TstAcquisition::modeAndTime_cannotChangeWhileMeasuring()
{
    Bench bench(2);
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::MEASURE);
    bench->setMeasureMode(MeasureMode::AUTO);
    bench->setMeasureTime(17);
    QCOMPARE(bench->measureMode(), MeasureMode::TRIGGER);
    QCOMPARE(bench->measureTime(), 1);
    QTRY_VERIFY(!bench.results().isEmpty());
    QVERIFY(bench.simulator.control.release());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.calls("requestStopMeasure"), 1);
    bench->setMeasureMode(MeasureMode::AUTO);
    bench->setMeasureTime(17);
    QCOMPARE(bench->measureMode(), MeasureMode::AUTO);
    QCOMPARE(bench->measureTime(), 17);
}

void TstAcquisition::resultWithoutABranch_isNotKept()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::AUTO));
    bench->setBranchMode(BranchModeEnumClass::NONE);
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QVERIFY(bench.toldTheEnd());
    QVERIFY(!bench.results().isEmpty());
    QVERIFY(bench->directMeasures->isEmpty());
}

void TstAcquisition::everySystemError_isShown_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("shock");
    QTest::addColumn<QString>("message");
    QTest::newRow("shock while idle") << 0 << true << QString();
    QTest::newRow("shock while working") << 1 << true << QString();
    QTest::newRow("shutter") << 2 << false << QStringLiteral("Anomalie obturateur - Erreur S2");
    QTest::newRow("shock detector") << 3 << false << QStringLiteral("Anomalie capteur de chocs - Erreur S3");
    QTest::newRow("DAC") << 4 << false << QStringLiteral("Anomalie DAC - Erreur S4");
    QTest::newRow("high voltage") << 5 << false << QStringLiteral("Problème de Haute Tension - Erreur S5");
    QTest::newRow("unknown") << 6 << false << QString();
}

void TstAcquisition::everySystemError_isShown()
{
    QFETCH(int, code);
    QFETCH(bool, shock);
    QFETCH(QString, message);
    Bench bench;
    QVERIFY(bench.start());
    LogRecorder log;
    QVERIFY(bench.simulator.control.run(
        QStringLiteral("mspEvent"),
        {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), code}}));
    QTRY_VERIFY(log.contains(QStringLiteral("DEBUG [Halvar Controller]: msp_event()")));
    QCOMPARE(bench->error->shock(), shock);
    QCOMPARE(bench->error->errorMessage(), message);
    QCOMPARE(!bench->error->lastShock().isEmpty(), shock);
    if (!shock)
        return;
    bench->resetShock();
    QTRY_COMPARE(bench.commands("RESET_SHOCK"), 1);
    QVERIFY(!bench->error->shock());
    QVERIFY(bench.home.read(QStringLiteral("shock/shock.xml")).contains("<shock>"));
}

void TstAcquisition::everyServiceError_isShown_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown error") << 0 << QStringLiteral("Erreur C0");
    QTest::newRow("temperature") << 1 << QString();
    QTest::newRow("voltage") << 2 << QString();
    QTest::newRow("DPP") << 3 << QStringLiteral("DPP - Erreur C3");
    QTest::newRow("data manager") << 4 << QStringLiteral("Gestion des données - Erreur C4");
    QTest::newRow("timeout") << 5 << QStringLiteral("Erreur C5");
    QTest::newRow("not in the list") << 6 << QString();
}

void TstAcquisition::everyServiceError_isShown()
{
    QFETCH(int, code);
    QFETCH(QString, message);
    Bench bench;
    QVERIFY(bench.start());
    LogRecorder log;
    QVERIFY(bench.set("napError", "error", code));
    QTRY_VERIFY(log.contains(QStringLiteral("TRACE [Halvar Controller]: nap_AcqError()")));
    QCOMPARE(bench->error->errorMessage(), message);
    // Its conditions came with it and are fine; only the two that are about them say otherwise.
    QCOMPARE(bench->error->readyForAcquisition(), code != 1 && code != 2);
}

void TstAcquisition::conditions_reachTheInterface()
{
    Bench bench;
    QVERIFY(bench.start());
    QSignalSpy temperature(bench.fixture->controller.get(), &HalvarController::sendTemperature);
    QSignalSpy voltage(bench.fixture->controller.get(), &HalvarController::sendTension);
    bench->requestUpdate();
    QTRY_COMPARE(bench->property("temperature").toInt(), 22);
    QCOMPARE(bench->property("voltage").toInt(), 1200);
    QCOMPARE(temperature.size(), 1);
    QCOMPARE(voltage.size(), 1);
    QVERIFY(bench->error->readyForAcquisition());
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("12-01-2026"));

    QVERIFY(bench.set("conditions", "voltage", 1100.9));
    QTRY_COMPARE(bench->property("voltage").toInt(), 1100);
    QVERIFY(!bench->error->readyForAcquisition());
    QCOMPARE(temperature.size(), 1);
    QCOMPARE(voltage.size(), 2);
}

QTEST_GUILESS_MAIN(TstAcquisition)
#include "tst_acquisition.moc"
