// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Controllers that come and go, over and over, in each state of their links.
// HALVAR_STARTSTOP_ROUNDS tells how many in each, 20 unless set.
#include <QSignalSpy>

#include "bench.h"

#include <tessel/tessel.h>

#include <atomic>
#include <malloc.h>
#include <unistd.h>

#include "measure.h"
#include "measurelistmodel.h"
#include "middleman.h"
#include "mspcodec.h"
#include "napobserver.h"
#include "processwatch.h"
#include "scriptedmsp.h"

namespace {

constexpr quint16 LibrarysPort = 3555;
constexpr quint16 ServicesPort = 4555;
constexpr char Observer[] = "nap_server@TCPIP:localhost:3556";
constexpr int CallLimitMs = 20; // of a service that does not answer
constexpr int ExportDelay = 500000; // µs
// Bytes; the allocator's own pockets, which threads that come and go leave fuller or emptier, take most of
// it.
constexpr qint64 MostKept = 256 * 1024;
constexpr int ExitWithoutService = 1;

qint64 slept = 0; // µs

} // namespace

// The beeper alone sleeps here, half a second for each controller while the kernel makes the line's files.
// The program's own definition comes before that of the C library.
extern "C" int usleep(useconds_t microseconds)
{
    slept += microseconds;
    return 0;
}

class TstStartStop : public QObject
{
    Q_OBJECT

public:
    enum State {
        Assembled,
        NoMicrocontroller,
        LinksComingUp,
        LinksUp,
        Notifying,
        MicrocontrollerDied,
        HalfMessage,
        CommandsUnanswered,
        EventsComingIn,
        ServiceSilent,
        ServiceDied,
        HalfReply,
        StalledReply,
    };

private slots:
    void initTestCase();
    void manyTimes_leaveNothingBehind_data();
    void manyTimes_leaveNothingBehind();
    void withoutService_endsTheProcessInOrder();

private:
    bool isScripted(State state) const { return state >= MicrocontrollerDied && state <= EventsComingIn; }
    void assemble() { m_bench.fixture = std::make_unique<ControllerFixture>(m_bench.home); }
    bool isAnswered() const
    {
        return QTest::qWaitFor([this] { return !m_bench->getMSPFwVersion().isEmpty(); });
    }
    bool reach(State state);
    bool reachScripted(State state);
    bool reachNotifying();
    bool restore(State state);

    const int m_rounds = qEnvironmentVariableIsSet("HALVAR_STARTSTOP_ROUNDS")
        ? qEnvironmentVariableIntValue("HALVAR_STARTSTOP_ROUNDS")
        : 20;
    const int m_limit = tessel::call_time_limit();
    Middleman m_middleman{{LibrarysPort, QString()}, {ServicesPort, QString()}};
    Bench m_bench{500}; // a detection every millisecond
    std::unique_ptr<ScriptedMsp> m_msp;
    // Detections, in all rounds.
    std::atomic<int> m_arrived{0};
    int m_heard = 0;
};

void TstStartStop::initTestCase()
{
    QVERIFY(m_rounds > 0);
    QVERIFY(m_middleman.start());
    QVERIFY(m_bench.simulator.start({QStringLiteral("--speed"), QStringLiteral("500"),
                                     QStringLiteral("--nap-port"), QString::number(ServicesPort)}));
    // Without its notices, of which a backlog would be counted as memory.
    m_bench.simulator.control.close();
    QVERIFY(m_bench.simulator.control.connectTo());
}

bool TstStartStop::reachNotifying()
{
    HalvarController *controller = m_bench.fixture->controller.get();
    if (!isAnswered())
        return false;
    // Gives up the shot that the controller before left behind, and hears of its end.
    LogRecorder log;
    controller->startAccuracyCheck();
    controller->stopAccuracyCheck();
    const QString end = QStringLiteral("DEBUG [Halvar Controller]: AcquisitionMode::None");
    if (!QTest::qWaitFor([&log, &end] { return log.contains(end); }))
        return false;
    controller->setMeasureMode(MeasureModeEnumClass::TRIGGER);
    controller->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
    // They arrive on a thread of the middleware.
    const tessel::PService service = tessel::Service::bind(tessel::AString(Observer));
    const auto *const observer = dynamic_cast<NAPObserver *>(service.get());
    if (!observer)
        return false;
    connect(
        observer->nap_client(), &NAPClient::nap_DetectionResult, this, [this] { ++m_arrived; },
        Qt::DirectConnection);
    connect(observer->nap_client(), &NAPClient::nap_DetectionResult, controller, [this] { ++m_heard; });
    if (!m_bench.set("mspEvent", "event", QStringLiteral("SHUT_OPENED"))
        || !QTest::qWaitFor([controller] { return !controller->directMeasures->isEmpty(); }))
        return false;
    QSignalSpy told(controller->directMeasures->first(), &Measure::sigmaChanged);
    return QTest::qWaitFor([&told] { return told.size() >= 2; });
}

bool TstStartStop::reachScripted(State state)
{
    // The one before has really gone.
    if (!m_msp->comeBack() || !QTest::qWaitFor([this] { return m_msp->clientCount() == 0; }))
        return false;
    m_msp->setFault(state == CommandsUnanswered ? ScriptedMsp::Fault::NoReply : ScriptedMsp::Fault::None);
    m_bench->init();
    if (!m_msp->waitForClient())
        return false;
    switch (state) {
    case MicrocontrollerDied:
        m_msp->die();
        return true;
    case HalfMessage: {
        const QByteArray whole = msp::frame(msp::encode(msp::Event{MSPClient::PROBE_ON, 0}));
        m_msp->sendRaw(whole.left(whole.size() / 2));
        return true;
    }
    case CommandsUnanswered:
        for (const bool on : {true, false, true})
            m_bench->switchLight(on);
        return true;
    default:
        for (int i = 0; i < 50; ++i) {
            if (!m_msp->inject(i % 2 ? MSPClient::PROBE_ON : MSPClient::PROBE_OFF))
                return false;
        }
        return true;
    }
}

bool TstStartStop::reach(State state)
{
    assemble();
    if (state == Assembled)
        return true;
    if (isScripted(state))
        return reachScripted(state);
    m_bench->init();
    switch (state) {
    case Notifying:
        return reachNotifying();
    case ServiceSilent:
        tessel::set_call_time_limit(CallLimitMs);
        return m_bench.set("napSilent", "on", true);
    case ServiceDied:
        return m_bench.simulator.control.run(QStringLiteral("napDie"));
    case HalfReply:
    case StalledReply: {
        tessel::set_call_time_limit(CallLimitMs);
        Middleman::Plan plan;
        plan.fault = state == HalfReply ? Middleman::Truncate : Middleman::Stall;
        plan.direction = Middleman::ToClient;
        m_middleman.follow(plan);
        return true;
    }
    case LinksUp:
        return isAnswered();
    default:
        return true;
    }
}

/// Makes the instrument whole again.
bool TstStartStop::restore(State state)
{
    tessel::set_call_time_limit(m_limit);
    switch (state) {
    case ServiceSilent:
        return m_bench.set("napSilent", "on", false);
    case ServiceDied:
        return m_bench.simulator.control.run(QStringLiteral("napReturn"));
    case HalfReply:
    case StalledReply:
        m_middleman.follow({});
        return true;
    default:
        return true;
    }
}

void TstStartStop::manyTimes_leaveNothingBehind_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("never switched on") << int(Assembled);
    QTest::newRow("no microcontroller") << int(NoMicrocontroller);
    QTest::newRow("links coming up") << int(LinksComingUp);
    QTest::newRow("links up") << int(LinksUp);
    QTest::newRow("notifications in flight") << int(Notifying);
    QTest::newRow("microcontroller died") << int(MicrocontrollerDied);
    QTest::newRow("half a message of the microcontroller") << int(HalfMessage);
    QTest::newRow("commands unanswered") << int(CommandsUnanswered);
    QTest::newRow("events of the microcontroller in flight") << int(EventsComingIn);
    QTest::newRow("service silent") << int(ServiceSilent);
    QTest::newRow("service died") << int(ServiceDied);
    QTest::newRow("half a reply of the service, then the end") << int(HalfReply);
    QTest::newRow("half a reply of the service, then nothing") << int(StalledReply);
}

void TstStartStop::manyTimes_leaveNothingBehind()
{
    QFETCH(int, number);
    const auto state = static_cast<State>(number);
    if (isScripted(state))
        m_msp = std::make_unique<ScriptedMsp>();
    const QByteArray server = qgetenv(msp::serverNameVariable);
    if (state == NoMicrocontroller)
        qputenv(msp::serverNameVariable, "halvar-msp-that-nobody-serves");

    // What is made once for all, and what the allocator sets aside, has been by then.
    const int warm = qMax(1, m_rounds / 10);
    Holdings before;
    qint64 usedBefore = 0;
    QElapsedTimer timer;
    timer.start();
    slept = 0;
    for (int round = 1; round <= m_rounds; ++round) {
        QVERIFY2(reach(state), qPrintable(QStringLiteral("round %1").arg(round)));
        // Not run, so that what comes in meanwhile waits in the event queue.
        QThread::msleep(static_cast<unsigned long>(round % 5));
        m_bench.fixture.reset();
        QVERIFY(restore(state));
        if (round == warm) {
            before = Holdings::now();
            usedBefore = static_cast<qint64>(mallinfo2().uordblks);
        }
    }
    const double each = double(timer.nsecsElapsed()) / 1e6 / m_rounds;
    QCOMPARE(slept, qint64(ExportDelay) * m_rounds);

    if (state == NoMicrocontroller) {
        if (server.isNull())
            qunsetenv(msp::serverNameVariable);
        else
            qputenv(msp::serverNameVariable, server);
    }
    m_msp.reset();
    const qint64 used = static_cast<qint64>(mallinfo2().uordblks) - usedBefore;
    // A service that was bound to it and has said nothing yet is let go after five seconds.
    QTRY_VERIFY2_WITH_TIMEOUT(Holdings::now().threads <= before.threads
                                  && Holdings::now().descriptors <= before.descriptors,
                              qPrintable(QStringLiteral("%1 threads, %2 descriptors; before %3, %4")
                                             .arg(Holdings::now().threads)
                                             .arg(Holdings::now().descriptors)
                                             .arg(before.threads)
                                             .arg(before.descriptors)),
                              15000);
    const Holdings after = Holdings::now();
    qInfo("%d rounds, %.1f ms each; from round %d on %+lld bytes in use, %+lld kB of memory, %+d threads, "
          "%+d descriptors",
          m_rounds, each, warm, used, after.memoryKb - before.memoryKb, after.threads - before.threads,
          after.descriptors - before.descriptors);
    if (state == Notifying) {
        const int arrived = m_arrived;
        qInfo("%d detections arrived, of which %d were waiting to be told when their controller went",
              arrived, arrived - m_heard);
        QVERIFY(arrived > m_heard);
    }
    QVERIFY2(used < MostKept, qPrintable(QString::number(used)));

    // The next one finds everything.
    assemble();
    m_bench->init();
    QVERIFY(isAnswered());
    QCOMPARE(m_bench.nap("observers").toArray().size(), 1);
    m_bench.fixture.reset();
    QVERIFY(m_bench.nap("observers").toArray().isEmpty());
}

void TstStartStop::withoutService_endsTheProcessInOrder()
{
    m_middleman.setListening(false);
    for (int round = 1; round <= m_rounds; ++round) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--switch-on")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), ExitWithoutService);
    }
    m_middleman.setListening(true);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().mid(1) == QStringList{QStringLiteral("--switch-on")}) {
        const TestHome home;
        const ControllerFixture fixture(home);
        fixture->init();
        return 0;
    }
    TstStartStop test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_startstop.moc"
