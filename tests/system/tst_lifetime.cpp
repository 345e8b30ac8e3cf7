// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Controllers that go while the instrument talks to them, and instruments that go while a controller lives.
#include <QSignalSpy>

#include "bench.h"

#include <tessel/tessel.h>

#include "measure.h"
#include "measurelistmodel.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

class TstLifetime : public QObject
{
    Q_OBJECT
private slots:
    void destroyedAmidNotifications_leavesNothingBehind();
    void unheardUnregistration_leavesNoObserverThatAnswers();
    void restartedInstrument_isNotFoundByTheOldController();
    void returnedService_isNotFoundByTheOldController();
};

void TstLifetime::destroyedAmidNotifications_leavesNothingBehind()
{
    constexpr int Rounds = 20;
    // With a detection every 5 ms.
    Bench bench(100);
    QVERIFY(bench.start());
    for (int round = 1; round <= Rounds; ++round) {
        if (!bench.fixture) {
            bench.fixture = std::make_unique<ControllerFixture>(bench.home);
            bench->init();
        }
        QTRY_VERIFY(!bench->getMSPFwVersion().isEmpty());
        // Gives up the shot that the controller before left behind, and hears of its end.
        LogRecorder log;
        bench->startAccuracyCheck();
        bench->stopAccuracyCheck();
        QTRY_VERIFY(log.contains(QStringLiteral("DEBUG [Halvar Controller]: AcquisitionMode::None")));
        bench->setMeasureMode(MeasureMode::TRIGGER);
        bench->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
        QVERIFY(bench.set("mspEvent", "event", QStringLiteral("SHUT_OPENED")));
        QTRY_VERIFY(!bench->directMeasures->isEmpty());
        QSignalSpy heard(bench->directMeasures->first(), &Measure::sigmaChanged);
        QTRY_VERIFY(heard.size() >= 2);
        // Not run, so that detections wait in the event queue while others are being told.
        QThread::msleep(static_cast<unsigned long>(round % 5) * 3);
        bench.fixture.reset();
        QVERIFY(bench.nap("observers").toArray().isEmpty());
        QCOMPARE(bench.calls("unregisterObserver"), round);
        QCOMPARE(bench.calls("startMeasure"), round);
    }
    QCOMPARE(bench.calls("registerObserver"), Rounds);
    QCOMPARE(bench.simulator.stop(), 0);
}

void TstLifetime::unheardUnregistration_leavesNoObserverThatAnswers()
{
    const int limit = tessel::call_time_limit();
    Bench bench(250);
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_VERIFY(bench->directMeasures->size() == 1);
    QVERIFY(bench.set("napSilent", "on", true));
    tessel::set_call_time_limit(300);
    QElapsedTimer timer;
    timer.start();
    bench.fixture.reset();
    const qint64 taken = timer.elapsed();
    tessel::set_call_time_limit(limit);
    QVERIFY2(taken >= 300 && taken < 2000, qPrintable(QString::number(taken)));
    // The service still believes in the observer, tells it what goes on, and finds nobody.
    QVERIFY(bench.set("napSilent", "on", false));
    QTRY_VERIFY(bench.nap("observers").toArray().isEmpty());

    bench.fixture = std::make_unique<ControllerFixture>(bench.home);
    bench->init();
    QCOMPARE(bench.nap("observers").toArray().size(), 1);
}

void TstLifetime::restartedInstrument_isNotFoundByTheOldController()
{
    Bench bench;
    QVERIFY(bench.start());
    bench.simulator.kill();
    QVERIFY(bench.simulator.start({QStringLiteral("--speed"), QStringLiteral("40")}));
    // The MSP's link comes back by itself.
    QTRY_COMPARE(bench.msp("clients").toInt(), 1);
    bench->switchLight(true);
    QTRY_VERIFY(bench.msp("light").toBool());
    // That to the service does not: it ends with the service that it was made for.
    QElapsedTimer timer;
    timer.start();
    bench->requestUpdate();
    bench->startAccuracyCheck();
    bench->stopAccuracyCheck();
    QVERIFY2(timer.elapsed() < tessel::call_time_limit(), qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("12-01-2026"));
    QVERIFY(bench.nap("calls").toObject().isEmpty());
    QVERIFY(bench.nap("observers").toArray().isEmpty());
    bench.fixture.reset();
    QVERIFY(bench.nap("calls").toObject().isEmpty());

    // A controller that starts now has both.
    bench.fixture = std::make_unique<ControllerFixture>(bench.home);
    bench->init();
    QCOMPARE(bench.calls("registerObserver"), 1);
    bench->startAccuracyCheck();
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench->currentAccuracy()->idNAP(), 1);
}

void TstLifetime::returnedService_isNotFoundByTheOldController()
{
    Bench bench;
    QVERIFY(bench.start());
    const int updates = bench.calls("getLastCalibrationDate");
    QVERIFY(bench.simulator.control.run(QStringLiteral("napDie")));
    QVERIFY(bench.simulator.control.run(QStringLiteral("napReturn")));
    bench->requestUpdate();
    QCOMPARE(bench.calls("getLastCalibrationDate"), updates);
    QCOMPARE(bench.calls("sendLastStatus"), 0);
    QVERIFY(bench.nap("observers").toArray().isEmpty());
}

QTEST_GUILESS_MAIN(TstLifetime)
#include "tst_lifetime.moc"
