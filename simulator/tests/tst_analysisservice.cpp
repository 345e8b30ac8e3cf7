// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QSignalSpy>
#include <QTest>

#include <QTcpServer>
#include <QThread>

#include <memory>

#include "analysisservice.h"

namespace nap = com::halvar::nap;
using simulator::AnalysisService;

namespace {

/// A call to the service from a thread of its own, as the middleware makes it.
class Call
{
public:
    template <typename Operation>
    explicit Call(Operation operation)
        : m_thread(QThread::create([this, operation] { m_result = operation(); }))
    {
        m_thread->start();
    }
    ~Call() { m_thread->wait(); }
    bool done() const { return m_thread->isFinished(); }
    int result() const { return m_result; }

private:
    std::atomic<int> m_result{12345};
    std::unique_ptr<QThread> m_thread;
};

} // namespace

class TstAnalysisService : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void calls_areCarriedOutAndCounted();
    void calibrationDate_isAnsweredUnlessNever();
    void unknownOperation_isNotImplemented();
    void silence_holdsCallsUntilItsEnd();
    void delay_holdsEachCall();
    void death_endsCallsThatWait();
    void death_forgetsAcquisitionAndObservers();
    void port_isTakenOnce();

private:
    nap::PNAPServer bound() const
    {
        nap::PNAPServer server;
        server.bind(qPrintable(QStringLiteral("nap_server@TCPIP:localhost:%1")
                                   .arg(tessel::ServiceManager::auto_create().port())));
        return server;
    }
    std::unique_ptr<AnalysisService> m_service;
    nap::PNAPServer m_server;
};

void TstAnalysisService::init()
{
    m_service = std::make_unique<AnalysisService>();
    QVERIFY(m_service->start(0));
    m_server = bound();
    QVERIFY(m_server);
}

void TstAnalysisService::cleanup()
{
    m_server.reset();
    m_service.reset();
}

void TstAnalysisService::calls_areCarriedOutAndCounted()
{
    QSignalSpy called(m_service.get(), &AnalysisService::called);
    Call start([this] { return m_server.startMeasure(nap::MeasureCustomData(), true); });
    QTRY_VERIFY(start.done());
    QCOMPARE(start.result(), 0);
    QCOMPARE(m_service->acquisition().kind(), simulator::Acquisition::Measure);
    Call again([this] { return m_server.startMeasure(nap::MeasureCustomData(), false); });
    QTRY_VERIFY(again.done());
    QCOMPARE(again.result(), int(simulator::Busy));
    Call stop([this] { return m_server.abort(); });
    QTRY_VERIFY(stop.done());
    QCOMPARE(called.size(), 3);
    QCOMPARE(called.at(0), QVariantList({QStringLiteral("startMeasure"), 0, true}));
    QCOMPARE(called.at(1), QVariantList({QStringLiteral("startMeasure"), -1, false}));
    QCOMPARE(m_service->calls().value(QStringLiteral("startMeasure")), 2);
    QCOMPARE(m_service->calls().value(QStringLiteral("abort")), 1);
}

void TstAnalysisService::calibrationDate_isAnsweredUnlessNever()
{
    tessel::TimeDate date;
    Call ask([this, &date] { return m_server.getLastCalibrationDate(date); });
    QTRY_VERIFY(ask.done());
    QCOMPARE(ask.result(), 0);
    QVERIFY(date == tessel::TimeDate(2026, 1, 12));
    m_service->acquisition().settings.calibrationDate = QDate();
    Call never([this, &date] { return m_server.getLastCalibrationDate(date); });
    QTRY_VERIFY(never.done());
    QVERIFY(never.result() < 0);
}

void TstAnalysisService::unknownOperation_isNotImplemented()
{
    Call call([this] {
        tessel::Tuple reply;
        return m_server.getMeasures(tessel::Tuple(), reply);
    });
    QTRY_VERIFY(call.done());
    QCOMPARE(call.result(), int(tessel::ERR_NOT_IMPLEMENTED));
}

void TstAnalysisService::silence_holdsCallsUntilItsEnd()
{
    m_service->setSilent(true);
    Call call([this] { return m_server.startCalibration(); });
    QTRY_COMPARE(m_service->heldCalls(), 1);
    QVERIFY(!call.done());
    QCOMPARE(m_service->acquisition().kind(), simulator::Acquisition::None);
    m_service->setSilent(false);
    QTRY_VERIFY(call.done());
    QCOMPARE(call.result(), 0);
}

void TstAnalysisService::delay_holdsEachCall()
{
    m_service->setDelay(150);
    QElapsedTimer timer;
    timer.start();
    Call call([this] { return m_server.startCalibration(); });
    QTRY_VERIFY(call.done());
    QVERIFY2(timer.elapsed() >= 150, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(call.result(), 0);
}

void TstAnalysisService::death_endsCallsThatWait()
{
    m_service->setSilent(true);
    Call silent([this] { return m_server.startCalibration(); });
    QTRY_COMPARE(m_service->heldCalls(), 1);
    m_service->die();
    QTRY_VERIFY(silent.done());
    QCOMPARE(silent.result(), int(tessel::ERR_PEER_GONE));
    QCOMPARE(m_service->acquisition().kind(), simulator::Acquisition::None);
    QVERIFY(m_service->calls().isEmpty());

    // Back again, it is the same place with another service: the old handle stays dead.
    m_service->setSilent(false);
    QVERIFY(m_service->start(0));
    m_server = bound();
    Call call([this] { return m_server.startCalibration(); });
    QTRY_VERIFY(call.done());
    QCOMPARE(call.result(), 0);
}

void TstAnalysisService::death_forgetsAcquisitionAndObservers()
{
    QSignalSpy notified(m_service.get(), &AnalysisService::notified);
    Call start([this] { return m_server.startMeasure(nap::MeasureCustomData(), false); });
    QTRY_VERIFY(start.done());
    m_service->die();
    QVERIFY(!m_service->isAlive());
    const int told = notified.size();
    QCOMPARE(m_service->acquisition().kind(), simulator::Acquisition::None);
    QVERIFY(m_service->observers().isEmpty());
    QCOMPARE(notified.size(), told);
    QVERIFY(!bound());
}

void TstAnalysisService::port_isTakenOnce()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    AnalysisService second;
    QVERIFY(!second.start(other.serverPort()));
    QVERIFY(!second.isAlive());
}

QTEST_GUILESS_MAIN(TstAnalysisService)
#include "tst_analysisservice.moc"
