// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A microcontroller's link that misbehaves: a middleman spoils what the two ends say to each other.
#include "bench.h"

#include "mspcodec.h"
#include "peers.h"

using Mode = AcquisitionModeEnumClass;

class TstPeersMsp : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void spoiledLink_isUsedAgain_data();
    void spoiledLink_isUsedAgain();
    void endedLink_isMadeAgainInEachState_data();
    void endedLink_isMadeAgainInEachState();

private:
    std::unique_ptr<Middleman> m_middleman;
    std::unique_ptr<Bench> m_bench;
};

void TstPeersMsp::init()
{
    const QString real = QStringLiteral("halvar-msp-behind-a-middleman");
    m_middleman = std::make_unique<Middleman>(
        Middleman::Place{0, QString::fromLatin1(msp::defaultServerName)}, Middleman::Place{0, real});
    QVERIFY(m_middleman->start());
    m_bench = std::make_unique<Bench>(200);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(msp::serverNameVariable), real);
    m_bench->simulator.process().setProcessEnvironment(environment);
    QVERIFY(m_bench->start());
}

void TstPeersMsp::cleanup()
{
    m_bench.reset();
    m_middleman.reset();
}

void TstPeersMsp::spoiledLink_isUsedAgain_data()
{
    peers::addFaults({{Middleman::ToServer, "commands"}, {Middleman::ToClient, "answers"}}, 60);
}

void TstPeersMsp::spoiledLink_isUsedAgain()
{
    QFETCH(Middleman::Plan, plan);
    Bench &bench = *m_bench;
    const Holdings before = Holdings::now();
    plan.count = 1;
    m_middleman->follow(plan);
    LogRecorder log;
    Pulse pulse;
    for (const bool on : {true, false}) {
        bench->switchLight(on);
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY(m_middleman->spoiled() > 0);
    // Each command is answered once, by the microcontroller or by its limit.
    const auto answers = [&log] {
        return log.count(QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"KO\""))
            + log.count(QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"OK\""));
    };
    QTRY_COMPARE_WITH_TIMEOUT(answers(), 2, 30000);
    m_middleman->follow({});
    // A server that has taken half a command waits for the rest of it for ever; it has to be started anew.
    if (plan.fault == Middleman::Stall)
        m_middleman->cut();
    // As an operator presses the button until the light is on.
    const bool lit = QTest::qWaitFor(
        [&bench] {
            bench->switchLight(true);
            return QTest::qWaitFor([&bench] { return bench.msp("light").toBool(); }, 500);
        },
        30000);
    peers::print(pulse.longest(), before, Holdings::now());
    QVERIFY(lit);
    QVERIFY2(pulse.longest() < peers::SlackMs, qPrintable(QString::number(pulse.longest())));
    QVERIFY(Holdings::now().threads <= before.threads);
    QVERIFY(Holdings::now().memoryKb - before.memoryKb < 2048);
    QTRY_VERIFY(Holdings::now().descriptors <= before.descriptors + 2);
    QCOMPARE(bench->acquisitionMode(), Mode::NONE);
}

void TstPeersMsp::endedLink_isMadeAgainInEachState_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("idle") << int(Mode::NONE);
    QTest::newRow("measuring") << int(Mode::MEASURE);
    QTest::newRow("accuracy check") << int(Mode::ACCURACY);
    QTest::newRow("calibrating") << int(Mode::CALIBRATION);
}

void TstPeersMsp::endedLink_isMadeAgainInEachState()
{
    QFETCH(int, mode);
    Bench &bench = *m_bench;
    QVERIFY(bench.set("speed", "value", 1));
    switch (mode) {
    case Mode::MEASURE:
        QVERIFY(bench.ready(MeasureModeEnumClass::TRIGGER));
        QVERIFY(bench.simulator.control.press());
        QTRY_COMPARE(int(bench->acquisitionMode()), mode);
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
    m_middleman->cut();
    QTRY_COMPARE(bench.msp("clients").toInt(), 1);
    // The acquisition is the service's, which has not gone.
    QCOMPARE(int(bench->acquisitionMode()), mode);
    QVERIFY(bench.set("speed", "value", 200));
    switch (mode) {
    case Mode::MEASURE:
        QVERIFY(bench.simulator.control.release());
        break;
    default:
        break;
    }
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    bench->switchLight(true);
    QTRY_VERIFY(bench.msp("light").toBool());
}

QTEST_GUILESS_MAIN(TstPeersMsp)
#include "tst_peers_msp.moc"
