// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Notifications from an analysis service that misbehaves, and strangers at the observer's port.
#include "bench.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <sys/resource.h>

#include "measure.h"
#include "measurelistmodel.h"
#include "peers.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

namespace {

constexpr quint16 ObserversPort = 3556;
constexpr quint16 SpoiledPort = 4556;

} // namespace

class TstPeersObserver : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void spoiledNotifications_harmNothing_data();
    void spoiledNotifications_harmNothing();
    void thousandStrangers_areSurvived();

private:
    /// A whole trigger shot, from the trigger to its result in the list.
    void shoot();

    std::unique_ptr<Middleman> m_middleman;
    std::unique_ptr<Bench> m_bench;
};

void TstPeersObserver::init()
{
    m_middleman = std::make_unique<Middleman>(Middleman::Place{SpoiledPort, QString()},
                                              Middleman::Place{ObserversPort, QString()});
    QVERIFY(m_middleman->start());
    m_bench = std::make_unique<Bench>(20); // a detection every 25 ms
    QVERIFY(m_bench->start({QStringLiteral("--observer-port"), QString::number(SpoiledPort)}));
}

void TstPeersObserver::cleanup()
{
    m_bench.reset();
    m_middleman.reset();
}

void TstPeersObserver::shoot()
{
    Bench &bench = *m_bench;
    const int before = bench->directMeasures->size();
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->directMeasures->size(), before + 1);
    QSignalSpy heard(bench->directMeasures->first(), &Measure::sigmaChanged);
    QTRY_VERIFY(heard.size() >= 3);
    QVERIFY(bench.simulator.control.release());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QVERIFY(bench->directMeasures->first()->idNAP() > 0);
}

void TstPeersObserver::spoiledNotifications_harmNothing_data()
{
    peers::addFaults({{Middleman::ToServer, "notifications"}, {Middleman::ToClient, "their answers"}}, 60);
}

void TstPeersObserver::spoiledNotifications_harmNothing()
{
    QFETCH(Middleman::Plan, plan);
    Bench &bench = *m_bench;
    shoot();
    if (QTest::currentTestFailed())
        return;
    const int measures = bench->directMeasures->size();
    const Holdings before = Holdings::now();
    LogRecorder log;
    QVERIFY(bench.isHard()); // the shutter of the shot before has closed
    Pulse pulse;
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->directMeasures->size(), measures + 1);
    plan.skipped = 1;
    plan.count = 3;
    m_middleman->follow(plan);
    QTRY_VERIFY(m_middleman->spoiled() > 0);
    // Whatever of the rest arrives; the service gives up an observer that does not answer.
    QTest::qWait(200);
    QVERIFY(bench.simulator.control.release());
    bench->stopMeasure();
    QCoreApplication::processEvents();
    peers::print(pulse.longest(), before, Holdings::now());
    QVERIFY2(pulse.longest() < peers::SlackMs, qPrintable(QString::number(pulse.longest())));
    QVERIFY(Holdings::now().threads <= before.threads);
    QVERIFY(Holdings::now().memoryKb - before.memoryKb < 4096);
    // Nothing of the measures before has changed, and nothing was made up.
    QVERIFY(bench->directMeasures->size() <= measures + 1);
    QVERIFY(bench->directMeasures->last()->idNAP() > 0);
    QCOMPARE(log.lines(QStringLiteral("FATAL")), QStringList());
    m_middleman->follow({});
    m_middleman->cut();

    // The shot that nobody ended leaves the microcontroller with an open shutter, which only it can close.
    QVERIFY(bench.set("mspInfo", "state", QStringLiteral("STANDBY")));
    // Registered again, everything is as on the first day.
    bench.fixture.reset();
    QTRY_VERIFY(Holdings::now().descriptors <= before.descriptors);
    bench.fixture = std::make_unique<ControllerFixture>(bench.home);
    bench->init();
    QTRY_VERIFY(!bench->getMSPFwVersion().isEmpty());
    // Gives up the shot that was left behind, and hears of its end before the next one begins.
    log.clear();
    bench->startAccuracyCheck();
    bench->stopAccuracyCheck();
    QTRY_VERIFY(log.contains(QStringLiteral("DEBUG [NAP Observer]: NOT_STARTED")));
    QTRY_COMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
    QCoreApplication::processEvents();
    shoot();
}

void TstPeersObserver::thousandStrangers_areSurvived()
{
    shoot();
    if (QTest::currentTestFailed())
        return;
    rlimit limit{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = qMin<rlim_t>(limit.rlim_max, 4096);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    const Holdings before = Holdings::now();
    Pulse pulse;
    {
        std::vector<std::unique_ptr<QTcpSocket>> strangers;
        for (int i = 0; i < 1000; ++i) {
            strangers.push_back(std::make_unique<QTcpSocket>());
            strangers.back()->connectToHost(QHostAddress(QHostAddress::LocalHost), ObserversPort);
            QVERIFY(strangers.back()->waitForConnected(5000));
            if (i % 2)
                strangers.back()->write(QByteArray::fromHex("7fffffff84"));
            QCoreApplication::processEvents();
        }
        shoot();
        // 64 are kept at most, each of them at both ends here.
        const auto closed = [&strangers] {
            return std::count_if(strangers.begin(), strangers.end(), [](const auto &stranger) {
                return stranger->state() == QAbstractSocket::UnconnectedState;
            });
        };
        QTRY_VERIFY2(closed() >= 1000 - 64, qPrintable(QString::number(closed())));
    }
    QTRY_VERIFY(Holdings::now().descriptors <= before.descriptors);
    const Holdings after = Holdings::now();
    peers::print(pulse.longest(), before, after);
    QVERIFY(after.threads <= before.threads);
    QVERIFY2(after.memoryKb - before.memoryKb < 8192,
             qPrintable(QString::number(after.memoryKb - before.memoryKb)));
    shoot();
}

QTEST_GUILESS_MAIN(TstPeersObserver)
#include "tst_peers_observer.moc"
