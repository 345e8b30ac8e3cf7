// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

#include <thread>
#include <vector>

#include "logrecorder.h"
#include "napobserver.h"
#include "signallog.h"

namespace nap = com::halvar::nap;

namespace {

nap::NotificationMessage message(const char *id)
{
    nap::NotificationMessage result;
    result.set_id(tessel::AString(id));
    return result;
}

nap::NotificationMessage statusMessage(nap::AcqStatus status)
{
    nap::NotificationMessage result = message("NAP_STATUS");
    result.set_status(status);
    return result;
}

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result << QStringLiteral("DEBUG [NAP Observer]: ") + QLatin1String(text);
    return result;
}

/// Emits from the thread that is given; receives on its own.
class Receiver : public QObject
{
    Q_OBJECT
public slots:
    void receive(com::halvar::nap::DetectionResult result)
    {
        thread = QThread::currentThread();
        last = result;
        ++count;
    }

public:
    QThread *thread = nullptr;
    nap::DetectionResult last;
    int count = 0;
};

} // namespace

class TstNAPObserver : public QObject
{
    Q_OBJECT

    tessel::AutoRef<NAPObserver> m_observer;
    std::unique_ptr<SignalLog> m_signals;
    std::unique_ptr<LogRecorder> m_log;

private slots:
    void init()
    {
        m_observer = tessel::AutoRef<NAPObserver>(new NAPObserver);
        m_signals = std::make_unique<SignalLog>();
        const NAPClient *client = m_observer->nap_client();
        m_signals->watch(client, &NAPClient::nap_AcqStatus, QStringLiteral("status"));
        m_signals->watch(client, &NAPClient::nap_AcqError, QStringLiteral("error"));
        m_signals->watch(client, &NAPClient::nap_AcqConditions, QStringLiteral("conditions"));
        m_signals->watch(client, &NAPClient::nap_DetectionResult, QStringLiteral("detection"));
        m_log = std::make_unique<LogRecorder>();
    }
    void cleanup()
    {
        m_log.reset();
        m_signals.reset();
        m_observer.reset();
    }

    void isAnObserverWhoseClientHasNoParent()
    {
        QCOMPARE(m_observer->interface_name(), QByteArray("com.halvar.nap.NotificationObserver"));
        QVERIFY(!m_observer->nap_client()->parent());
        QCOMPARE(m_observer->nap_client(), m_observer->nap_client());
    }

    void status_isEmittedAndLogged_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("NOT_STARTED") << 0 << lines({"NOT_STARTED"});
        QTest::newRow("IN_PROGRESS") << 1 << lines({"IN_PROGRESS"});
        QTest::newRow("ERROR") << 2 << lines({"ERROR"});
        QTest::newRow("3 is emitted, not logged") << 3 << QStringList();
        QTest::newRow("-1 is emitted, not logged") << -1 << QStringList();
    }
    void status_isEmittedAndLogged()
    {
        QFETCH(int, status);
        QFETCH(QStringList, log);
        QSignalSpy spy(m_observer->nap_client(), &NAPClient::nap_AcqStatus);
        QCOMPARE(m_observer->onMessage(statusMessage(static_cast<nap::AcqStatus>(status))), 1);
        QCOMPARE(m_signals->text(), QStringLiteral("status"));
        QCOMPARE(int(spy.first().first().value<nap::AcqStatus>()), status);
        QCOMPARE(m_log->lines(), log);
    }

    void statusAbsentOrOfAnotherType_isNotStarted()
    {
        QSignalSpy spy(m_observer->nap_client(), &NAPClient::nap_AcqStatus);
        nap::NotificationMessage text = message("NAP_STATUS");
        text.set_status(tessel::Value(tessel::AString("1")));
        QCOMPARE(m_observer->onMessage(message("NAP_STATUS")), 1);
        QCOMPARE(m_observer->onMessage(text), 1);
        QCOMPARE(int(spy.at(0).first().value<nap::AcqStatus>()), 0);
        QCOMPARE(int(spy.at(1).first().value<nap::AcqStatus>()), 0);
        QCOMPARE(m_log->lines(), lines({"NOT_STARTED", "NOT_STARTED"}));
    }

    void statusMessageWithEverything_emitsStatusThenConditionsThenError()
    {
        nap::NotificationMessage all = statusMessage(nap::ERROR);
        all.set_error(nap::DPP_ERROR); // set first: the order of the fields does not matter
        nap::AcqConditions conditions;
        conditions.set_temperature(21.5);
        conditions.set_acceleratingVoltage(-350);
        conditions.set_readyForAcquisition(true);
        conditions.set_acceptableAcceleratingVoltage(true);
        all.set_conditions(conditions);
        QSignalSpy errors(m_observer->nap_client(), &NAPClient::nap_AcqError);
        QSignalSpy spy(m_observer->nap_client(), &NAPClient::nap_AcqConditions);
        QCOMPARE(m_observer->onMessage(all), 1);
        QCOMPARE(m_signals->text(), QStringLiteral("status conditions error"));
        QCOMPARE(int(errors.first().first().value<nap::AcqError>()), int(nap::DPP_ERROR));
        QVERIFY(spy.first().first().value<nap::AcqConditions>() == conditions);
        QCOMPARE(m_log->lines(),
                 lines({"ERROR", "Temperature:  21.5  C", "Accelerating Voltage:  -350  V",
                        "* Ready for Acquisition:  OK", "* Acceptable Temperature:  FAIL",
                        "* Acceptable Accelerating Voltage:  OK"}));
    }

    void errorOfValue0_isAnErrorToo()
    {
        nap::NotificationMessage unknown = statusMessage(nap::ERROR);
        unknown.set_error(nap::UNKNOWN_ERROR);
        m_observer->onMessage(unknown);
        QCOMPARE(m_signals->text(), QStringLiteral("status error"));
        QCOMPARE(m_log->lines(), lines({"ERROR"}));
    }

    void conditionsAndErrorOfOtherTypes_areNotSet()
    {
        nap::NotificationMessage odd = statusMessage(nap::IN_PROGRESS);
        odd.set_conditions(tessel::Value(1));
        odd.set_error(tessel::Value(2.0));
        m_observer->onMessage(odd);
        QCOMPARE(m_signals->text(), QStringLiteral("status"));
        QCOMPARE(m_log->lines(), lines({"IN_PROGRESS"}));
    }

    void conditionsWithoutTheirFields_areLoggedAsZero()
    {
        nap::NotificationMessage empty = statusMessage(nap::NOT_STARTED);
        empty.set_conditions(nap::AcqConditions());
        m_observer->onMessage(empty);
        QCOMPARE(m_log->lines(),
                 lines({"NOT_STARTED", "Temperature:  0  C", "Accelerating Voltage:  0  V",
                        "* Ready for Acquisition:  FAIL", "* Acceptable Temperature:  FAIL",
                        "* Acceptable Accelerating Voltage:  FAIL"}));
    }

    void detection_isEmittedAndLogged_data()
    {
        QTest::addColumn<int>("decision");
        QTest::addColumn<QString>("text");
        int decision = 0;
        for (const char *text : {"POSITIVE", "NEGATIVE", "UNDETERMINED", "INSUFFICIENT_ACQTIME",
                                 "COMPTON_ERROR", "ACCURACY_OK", "ACCURACY_ERROR"})
            QTest::newRow(text) << decision++ << QString::fromLatin1(text);
        QTest::newRow("UNCALIBRATED has no name of its own") << 7 << QStringLiteral("UNKNOWN");
        QTest::newRow("8") << 8 << QStringLiteral("UNKNOWN");
        QTest::newRow("-1") << -1 << QStringLiteral("UNKNOWN");
    }
    void detection_isEmittedAndLogged()
    {
        QFETCH(int, decision);
        QFETCH(QString, text);
        nap::DetectionResult result;
        result.set_value(1.25);
        result.set_sigma(0.05);
        result.set_decision(static_cast<nap::DetectionDecision>(decision));
        nap::NotificationMessage detection = message("NAP_DETECTION");
        detection.set_detection(result);
        QSignalSpy spy(m_observer->nap_client(), &NAPClient::nap_DetectionResult);
        QCOMPARE(m_observer->onMessage(detection), 1);
        QCOMPARE(m_signals->text(), QStringLiteral("detection"));
        QVERIFY(spy.first().first().value<nap::DetectionResult>() == result);
        QCOMPARE(m_log->lines(),
                 lines({"Concentration:  1.25", "Sigma:  0.05", text.toLatin1().constData()}));
    }

    void detectionWithoutADecision_logsNone()
    {
        nap::DetectionResult result;
        result.set_value(-0.5);
        nap::NotificationMessage detection = message("NAP_DETECTION");
        detection.set_detection(result);
        m_observer->onMessage(detection);
        QCOMPARE(m_log->lines(), lines({"Concentration:  -0.5", "Sigma:  0"}));
        m_log->clear();
        result.set_decision(tessel::Value(tessel::AString("0")));
        detection.set_detection(result);
        m_observer->onMessage(detection);
        QCOMPARE(m_log->lines(), lines({"Concentration:  -0.5", "Sigma:  0"}));
        m_log->clear();
        QCOMPARE(m_observer->onMessage(message("NAP_DETECTION")), 1);
        QCOMPARE(m_log->lines(), lines({"Concentration:  0", "Sigma:  0"}));
        QCOMPARE(m_signals->text(), QStringLiteral("detection detection detection"));
    }

    void spectrum_isLoggedOnly()
    {
        nap::SpectrumInformation information;
        information.set_liveTime(tessel::TimePeriod(1250000));
        nap::SpectrumResult spectrum;
        spectrum.set_information(information);
        nap::NotificationMessage notification = message("NAP_SPECTRUM");
        notification.set_spectrum(spectrum);
        QCOMPARE(m_observer->onMessage(notification), 1);
        QCOMPARE(m_observer->onMessage(message("NAP_SPECTRUM")), 1);
        QCOMPARE(m_signals->text(), QString());
        QCOMPARE(m_log->lines(), lines({"Live Time :  1.250000 s", "Live Time :  0.000000 s"}));
    }

    void unknownKind_isIgnored_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"", "NAP_OTHER", "nap_status", "NAP_STATUS "})
            QTest::newRow(qPrintable(QLatin1Char('"') + QLatin1String(id) + QLatin1Char('"')))
                << QString::fromLatin1(id);
    }
    void unknownKind_isIgnored()
    {
        QFETCH(QString, id);
        nap::NotificationMessage other = statusMessage(nap::ERROR);
        other.set_id(tessel::AString(id));
        other.set_error(nap::DPP_ERROR);
        QCOMPARE(m_observer->onMessage(other), 1);
        other.set_id(tessel::Value(7));
        QCOMPARE(m_observer->onMessage(other), 1);
        QCOMPARE(m_observer->onMessage(nap::NotificationMessage()), 1);
        QCOMPARE(m_signals->text(), QString());
        QCOMPARE(m_log->lines(), QStringList());
    }

    void nothingIsLoggedAboveDebug_andEverythingEmitted()
    {
        QsLogging::Logger::instance().setLoggingLevel(QsLogging::InfoLevel);
        nap::NotificationMessage all = statusMessage(nap::IN_PROGRESS);
        all.set_conditions(nap::AcqConditions());
        m_observer->onMessage(all);
        m_observer->onMessage(message("NAP_DETECTION"));
        m_observer->onMessage(message("NAP_SPECTRUM"));
        QCOMPARE(m_log->lines(), QStringList());
        QCOMPARE(m_signals->text(), QStringLiteral("status conditions detection"));
    }

    void showBoolean_saysOkOrFail()
    {
        QCOMPARE(QByteArray(m_observer->showBoolean(true)), QByteArray("OK"));
        QCOMPARE(QByteArray(m_observer->showBoolean(false)), QByteArray("FAIL"));
    }

    void notificationOfAnotherThread_isDeliveredOnTheReceivers()
    {
        Receiver receiver;
        connect(m_observer->nap_client(), &NAPClient::nap_DetectionResult, &receiver, &Receiver::receive);
        nap::DetectionResult result;
        result.set_value(1.25);
        nap::NotificationMessage detection = message("NAP_DETECTION");
        detection.set_detection(result);
        std::thread([&] {
            m_observer->onMessage(detection);
            result.set_value(9.0); // what is queued is a copy
        }).join();
        QCOMPARE(receiver.count, 0);
        QTRY_COMPARE(receiver.count, 1);
        QCOMPARE(receiver.thread, QThread::currentThread());
        QCOMPARE(receiver.last.get_value(), 1.25);
    }

    void burstOfAnotherThread_arrivesWholeAndInItsOrder()
    {
        // Log lines would only cost time.
        QsLogging::Logger::instance().setLoggingLevel(QsLogging::InfoLevel);
        constexpr int burst = 20000;
        struct : QObject
        {
            std::vector<double> arrived; // -1 for a status; then its conditions
        } receiver;
        const NAPClient *client = m_observer->nap_client();
        connect(client, &NAPClient::nap_AcqStatus, &receiver, [&] { receiver.arrived.push_back(-1); });
        connect(client, &NAPClient::nap_AcqConditions, &receiver, [&](const nap::AcqConditions &conditions) {
            receiver.arrived.push_back(conditions.get_temperature());
        });
        connect(client, &NAPClient::nap_DetectionResult, &receiver,
                [&](const nap::DetectionResult &result) { receiver.arrived.push_back(result.get_value()); });
        std::vector<double> sent;
        std::thread middleware([&, service = tessel::PService(m_observer)] {
            for (int i = 0; i < burst; ++i) {
                nap::NotificationMessage notification;
                if (i % 5 == 4) {
                    nap::AcqConditions conditions;
                    conditions.set_temperature(i);
                    notification = statusMessage(nap::IN_PROGRESS);
                    notification.set_conditions(conditions);
                    sent.push_back(-1);
                } else {
                    nap::DetectionResult result;
                    result.set_value(i);
                    notification = message("NAP_DETECTION");
                    notification.set_detection(result);
                }
                sent.push_back(i);
                nap::NotificationObserver::sendMessage(*service, notification);
            }
        });
        const QDeadlineTimer patience(30000);
        while (receiver.arrived.size() < burst + burst / 5 && !patience.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        middleware.join();
        QCoreApplication::processEvents();
        QCOMPARE(receiver.arrived.size(), std::size_t(burst + burst / 5));
        QVERIFY(receiver.arrived == sent);
    }

    void notificationThatCameBeforeTheReceiverWent_isNotDelivered()
    {
        auto receiver = std::make_unique<Receiver>();
        connect(m_observer->nap_client(), &NAPClient::nap_DetectionResult, receiver.get(),
                &Receiver::receive);
        std::thread([&] { m_observer->onMessage(message("NAP_DETECTION")); }).join();
        receiver.reset();
        m_observer.reset();
        QCoreApplication::processEvents();
        QVERIFY(m_log->contains(QStringLiteral("DEBUG [NAP Observer]: Sigma:  0")));
    }

    void requestFromTheService_reachesTheObserver()
    {
        tessel::PService service(m_observer);
        QCOMPARE(nap::NotificationObserver::sendMessage(*service, statusMessage(nap::IN_PROGRESS)), 1);
        QCOMPARE(m_signals->text(), QStringLiteral("status"));
    }
};

QTEST_GUILESS_MAIN(TstNAPObserver)
#include "tst_napobserver.moc"
