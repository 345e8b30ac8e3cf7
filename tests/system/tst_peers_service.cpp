// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Calls to an analysis service that misbehaves: a middleman spoils what the two ends say to each other.
#include "bench.h"

#include <tessel/tessel.h>

#include "peers.h"

using Mode = AcquisitionModeEnumClass;

namespace {

constexpr quint16 LibrarysPort = 3555;
constexpr quint16 ServicesPort = 4555;
constexpr int CallLimitMs = 100;

} // namespace

class TstPeersService : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void spoiledCalls_holdUpNobodyForLong_data();
    void spoiledCalls_holdUpNobodyForLong();
    void killedService_harmsNoState_data();
    void killedService_harmsNoState();

private:
    const int m_limit = tessel::call_time_limit();
    std::unique_ptr<Middleman> m_middleman;
    std::unique_ptr<Bench> m_bench;
};

void TstPeersService::init()
{
    m_middleman = std::make_unique<Middleman>(Middleman::Place{LibrarysPort, QString()},
                                              Middleman::Place{ServicesPort, QString()});
    QVERIFY(m_middleman->start());
    m_bench = std::make_unique<Bench>(200);
    QVERIFY(m_bench->start({QStringLiteral("--nap-port"), QString::number(ServicesPort)}));
    tessel::set_call_time_limit(CallLimitMs);
}

void TstPeersService::cleanup()
{
    m_bench.reset();
    m_middleman.reset();
    tessel::set_call_time_limit(m_limit);
}

void TstPeersService::spoiledCalls_holdUpNobodyForLong_data()
{
    peers::addFaults({{Middleman::ToServer, "requests"}, {Middleman::ToClient, "replies"}}, 60);
}

void TstPeersService::spoiledCalls_holdUpNobodyForLong()
{
    QFETCH(Middleman::Plan, plan);
    Bench &bench = *m_bench;
    bench->requestUpdate();
    QTRY_VERIFY(!bench->property("lastCalibrationDate").toString().isEmpty());
    const QString date = bench->property("lastCalibrationDate").toString();
    const int updatesBefore = bench.calls("sendLastStatus");

    m_middleman->follow(plan);
    LogRecorder log;
    Pulse pulse;
    Holdings before;
    for (int round = 0; round < 4; ++round) {
        bench->requestUpdate();
        QCoreApplication::processEvents();
        bench->startAccuracyCheck();
        QCoreApplication::processEvents();
        bench->stopAccuracyCheck();
        QCoreApplication::processEvents();
        if (round == 1)
            before = Holdings::now();
    }
    const qint64 blocked = pulse.longest();
    const Holdings after = Holdings::now();
    peers::print(blocked, before, after);
    QVERIFY(m_middleman->spoiled() > 0);
    // requestUpdate() makes two calls; a call that finds its link broken makes a new one first.
    QVERIFY2(blocked < 3 * CallLimitMs + peers::SlackMs, qPrintable(QString::number(blocked)));
    QVERIFY(after.descriptors - before.descriptors <= 2);
    QVERIFY(after.threads <= before.threads);
    QVERIFY(after.memoryKb - before.memoryKb < 2048);
    // The callers go on as if nothing had happened, and the operator is not bothered.
    QCOMPARE(bench->property("lastCalibrationDate").toString(), date);
    for (const char *level : {"WARN", "ERROR", "FATAL"})
        QCOMPARE(log.lines(QLatin1String(level)), QStringList());

    // What these hold up is on its way still, for long on a busy machine.
    if (plan.fault == Middleman::Delay || plan.fault == Middleman::Drip)
        QTRY_COMPARE(bench.calls("sendLastStatus"), updatesBefore + 4);
    m_middleman->follow({});
    const int updates = bench.calls("sendLastStatus");
    QElapsedTimer timer;
    timer.start();
    if (peers::endsTheLink(plan.fault)) {
        // For good: whether the service has carried out what it was asked cannot be known.
        bench->requestUpdate();
        QVERIFY2(timer.elapsed() < CallLimitMs, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(bench.calls("sendLastStatus"), updates);
    } else if (plan.fault != Middleman::Stall) {
        // Late replies are skipped, so the next call has its own.
        bench->requestUpdate();
        QCOMPARE(bench.calls("sendLastStatus"), updates + 1);
    }
}

void TstPeersService::killedService_harmsNoState_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("whole");
    for (const bool whole : {false, true}) {
        const char *victim = whole ? "instrument" : "service";
        QTest::addRow("%s, idle", victim) << int(Mode::NONE) << whole;
        QTest::addRow("%s, measuring", victim) << int(Mode::MEASURE) << whole;
        QTest::addRow("%s, accuracy check", victim) << int(Mode::ACCURACY) << whole;
        QTest::addRow("%s, calibrating", victim) << int(Mode::CALIBRATION) << whole;
    }
}

void TstPeersService::killedService_harmsNoState()
{
    QFETCH(int, mode);
    QFETCH(bool, whole);
    Bench &bench = *m_bench;
    QVERIFY(bench.set("speed", "value", 1));
    switch (mode) {
    case Mode::MEASURE:
        QVERIFY(bench.ready(MeasureModeEnumClass::TRIGGER));
        QVERIFY(bench.simulator.control.press());
        QTRY_VERIFY(!bench->directMeasures->isEmpty());
        break;
    case Mode::ACCURACY:
        bench->startAccuracyCheck();
        break;
    case Mode::CALIBRATION:
        bench->startCalibration();
        break;
    default:
        break;
    }
    QCOMPARE(int(bench->acquisitionMode()), mode);

    const Holdings before = Holdings::now();
    if (whole) {
        bench.simulator.kill();
        QVERIFY(bench.simulator.start({QStringLiteral("--nap-port"), QString::number(ServicesPort)}));
    } else {
        QVERIFY(bench.simulator.control.run(QStringLiteral("napDie")));
        QVERIFY(bench.simulator.control.run(QStringLiteral("napReturn")));
    }
    Pulse pulse;
    for (int round = 0; round < 3; ++round) {
        bench->requestUpdate();
        bench->startAccuracyCheck();
        bench->stopAccuracyCheck();
        bench->startCalibration();
        bench->stopCalibration();
        bench->stopMeasure();
        bench->stopMeasureProperly();
        bench->setMeasureMode(MeasureModeEnumClass::DEFINED);
        bench->setMeasureMode(MeasureModeEnumClass::TRIGGER);
        QCoreApplication::processEvents();
    }
    const qint64 blocked = pulse.longest();
    const Holdings after = Holdings::now();
    peers::print(blocked, before, after);
    QVERIFY2(blocked < peers::SlackMs, qPrintable(QString::number(blocked)));
    QVERIFY(after.descriptors <= before.descriptors + 2);
    QVERIFY(after.threads <= before.threads);
    // The one that came instead is another; it is asked nothing.
    QVERIFY(!bench.nap("calls").toObject().contains(QLatin1String("startAccuracyCheck")) || !whole);
    // The MSP is a link of its own and is found again.
    QTRY_COMPARE(bench.msp("clients").toInt(), 1);
    bench->switchLight(true);
    QTRY_VERIFY(bench.msp("light").toBool());
}

QTEST_GUILESS_MAIN(TstPeersService)
#include "tst_peers_service.moc"
