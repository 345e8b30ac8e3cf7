// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <mspclient.h>
#include <scriptedmsp.h>

using Fault = ScriptedMsp::Fault;

namespace {

// The reply limit leaves room for a machine that runs many tests at once.
constexpr MSPClient::Times quick{400, 10, 80};

QtMessageHandler previousHandler = nullptr;
QAtomicInt qtWarnings;

void countWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg)
        qtWarnings.ref();
    previousHandler(type, context, message);
}

} // namespace

class TstMspClient : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void commands_reachTheServerInOrder();
    void acceptedCommand_isSuccess();
    void refusedCommand_isNoSuccess();
    void commandWithoutServer_failsButNotFromWithinSend();
    void unansweredCommand_failsAtItsLimit();
    void lateAnswer_isSkipped();
    void lostAnswer_costsOnlyItsOwnCommand();
    void outcomes_keepTheOrderOfTheCommands();
    void connectionCutInAnAnswer_failsTheCommandAndIsMadeAgain();
    void garbage_isSkipped();
    void oversizedFrame_dropsTheConnectionAndItIsMadeAgain();
    void serverThatDies_isFoundAgain();
    void failedCommand_isNotSentAgain();

    void information_isCarriedWhole();
    void informationAskedBeforeTheThreadRuns_isAnswered();
    void informationAskedWithoutServer_isAnsweredOnceByTheNext();
    void lostInformation_isAskedAgain();
    void lateInformation_isToldOnce();
    void informationCutByTheServersDeath_isAskedAgain();

    void events_areCarriedWithTheirCode_data();
    void events_areCarriedWithTheirCode();
    void pause_growsToItsLongest();
    void pause_isShortAgainAfterAServerThatSpoke();
    void timesOfTheLink_areTheInstruments();
    void client_worksInTheThreadItWasMovedTo();
    void endOfTheThreadWhileRequestsAreOpen_isClean();

private:
    std::unique_ptr<MSPClient> connectedClient();
    static QList<bool> outcomes(const QSignalSpy &spy);

    std::unique_ptr<ScriptedMsp> m_msp;
};

void TstMspClient::init()
{
    m_msp = std::make_unique<ScriptedMsp>();
    qtWarnings = 0;
    previousHandler = qInstallMessageHandler(&countWarnings);
}

void TstMspClient::cleanup()
{
    qInstallMessageHandler(previousHandler);
    m_msp.reset();
    QCOMPARE(qtWarnings.loadRelaxed(), 0);
}

std::unique_ptr<MSPClient> TstMspClient::connectedClient()
{
    auto client = std::make_unique<MSPClient>();
    client->setTimes(quick);
    if (!m_msp->waitForClient())
        client.reset();
    return client;
}

QList<bool> TstMspClient::outcomes(const QSignalSpy &spy)
{
    QList<bool> list;
    for (const QList<QVariant> &arguments : spy)
        list.append(arguments.at(0).toBool());
    return list;
}

void TstMspClient::commands_reachTheServerInOrder()
{
    const auto client = connectedClient();
    QVERIFY(client);
    client->send(MSPClient::RUN_HARD, QString());
    client->send(MSPClient::SET_DAC, QStringLiteral("12"));
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(m_msp->commands(),
                 (QVector<MSPClient::MSPCommand>{MSPClient::RUN_HARD, MSPClient::SET_DAC, MSPClient::ABORT}));
    QCOMPARE(m_msp->params(), (QStringList{QString(), QStringLiteral("12"), QString()}));
    QVERIFY(m_msp->params().at(0).isNull());
}

void TstMspClient::acceptedCommand_isSuccess()
{
    const auto client = connectedClient();
    QVERIFY(client);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::LIGHT_ON, QString());
    QTRY_COMPARE(outcomes(success), QList<bool>{true});
}

void TstMspClient::refusedCommand_isNoSuccess()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::RefuseCommand);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::LIGHT_ON, QString());
    QTRY_COMPARE(outcomes(success), QList<bool>{false});
    QCOMPARE(m_msp->received(MSPClient::LIGHT_ON), 1);
}

void TstMspClient::commandWithoutServer_failsButNotFromWithinSend()
{
    m_msp->die();
    MSPClient client;
    client.setTimes(quick);
    QSignalSpy success(&client, &MSPClient::msp_success);
    client.send(MSPClient::LIGHT_ON, QString());
    client.send(MSPClient::LIGHT_OFF, QString());
    QCOMPARE(success.size(), 0);
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, false}));
}

void TstMspClient::unansweredCommand_failsAtItsLimit()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::NoReply);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    QElapsedTimer time;
    time.start();
    client->send(MSPClient::RUN_HARD, QString());
    QVERIFY(success.wait());
    // Timers may fire a few milliseconds early.
    QVERIFY2(time.elapsed() >= quick.reply - 10, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(outcomes(success), QList<bool>{false});
    QCOMPARE(m_msp->received(MSPClient::RUN_HARD), 1);
}

void TstMspClient::lateAnswer_isSkipped()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::LateReply);
    m_msp->setLateBy(2 * quick.reply);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    QSignalSpy events(client.get(), &MSPClient::msp_event);
    client->send(MSPClient::RUN_HARD, QString());
    QTimer::singleShot(3 * quick.reply, this, [this] { m_msp->inject(MSPClient::PROBE_ON); });
    QTRY_COMPARE(events.size(), 1);
    QCOMPARE(outcomes(success), QList<bool>{false});
}

void TstMspClient::lostAnswer_costsOnlyItsOwnCommand()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::FirstReplyLost);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::RUN_HARD, QString());
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, true}));
}

void TstMspClient::outcomes_keepTheOrderOfTheCommands()
{
    // A server of its own that answers the second command first.
    m_msp->die();
    MSPServer server;
    QVERIFY2(server.listen(m_msp->serverName()), qPrintable(server.errorString()));
    QVector<MSPServer::Request> requests;
    connect(&server, &MSPServer::commandReceived, this,
            [&](MSPServer::Request request) { requests.append(request); });
    MSPClient client;
    client.setTimes(quick);
    QSignalSpy success(&client, &MSPClient::msp_success);
    QTRY_COMPARE(server.clientCount(), 1);
    client.send(MSPClient::RUN_HARD, QString());
    client.send(MSPClient::ABORT, QString());
    QTRY_COMPARE(requests.size(), 2);
    server.replySuccess(requests.at(1), true);
    server.replySuccess(requests.at(0), false);
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, true}));
}

void TstMspClient::connectionCutInAnAnswer_failsTheCommandAndIsMadeAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::CutMidFrame);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::RUN_HARD, QString());
    QTRY_COMPARE(outcomes(success), QList<bool>{false});
    m_msp->setFault(Fault::None);
    QVERIFY(m_msp->waitForClient());
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, true}));
}

void TstMspClient::garbage_isSkipped()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::Garbage);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    QSignalSpy info(client.get(), &MSPClient::msp_info);
    client->send(MSPClient::RUN_HARD, QString());
    client->info();
    // Requests make no sense from this side and are skipped as well.
    m_msp->sendRaw(msp::frame(msp::encode(msp::Command{1, MSPClient::ABORT, QString()})));
    QTRY_COMPARE(info.size(), 1);
    QTRY_COMPARE(success.size(), 1); // told from the event loop, so it may come behind
    QCOMPARE(outcomes(success), QList<bool>{true});
    QCOMPARE(m_msp->clientCount(), 1);
}

void TstMspClient::oversizedFrame_dropsTheConnectionAndItIsMadeAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::Oversized);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::RUN_HARD, QString());
    QTRY_COMPARE(outcomes(success), QList<bool>{false});
    m_msp->setFault(Fault::None);
    QTRY_COMPARE(m_msp->clientCount(), 0);
    QVERIFY(m_msp->waitForClient());
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, true}));
}

void TstMspClient::serverThatDies_isFoundAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    QSignalSpy events(client.get(), &MSPClient::msp_event);
    for (int death = 1; death <= 3; ++death) {
        m_msp->die();
        QTest::qWait(3 * quick.firstPause);
        client->send(MSPClient::RUN_HARD, QString());
        QTRY_COMPARE(success.size(), 2 * death - 1);
        QVERIFY(!outcomes(success).last());
        QVERIFY(m_msp->comeBack());
        QVERIFY(m_msp->waitForClient());
        QVERIFY(m_msp->inject(MSPClient::TRIG_OFF));
        QTRY_COMPARE(events.size(), death);
        client->send(MSPClient::RUN_HARD, QString());
        QTRY_COMPARE(success.size(), 2 * death);
        QVERIFY(outcomes(success).last());
    }
}

void TstMspClient::failedCommand_isNotSentAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::NoReply);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->send(MSPClient::SHUT_OPEN, QString());
    QTRY_COMPARE(m_msp->received(MSPClient::SHUT_OPEN), 1);
    m_msp->die();
    QTRY_COMPARE(outcomes(success), QList<bool>{false});
    m_msp->setFault(Fault::None);
    QVERIFY(m_msp->comeBack());
    QVERIFY(m_msp->waitForClient());
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(outcomes(success), (QList<bool>{false, true}));
    QCOMPARE(m_msp->received(MSPClient::SHUT_OPEN), 1);
}

void TstMspClient::information_isCarriedWhole()
{
    MSPInfo sent;
    sent.fwVersion = QStringLiteral("3.0-β");
    sent.MSPVersion = QStringLiteral("7");
    sent.setShutter(true);
    sent.setProbe(true);
    sent.setState(MSPInfo::MSPState(42));
    m_msp->setInfo(sent);
    const auto client = connectedClient();
    QVERIFY(client);
    QSignalSpy info(client.get(), &MSPClient::msp_info);
    client->info();
    QTRY_COMPARE(info.size(), 1);
    const auto received = info.at(0).at(0).value<MSPInfo>();
    QCOMPARE(received.fwVersion, sent.fwVersion);
    QCOMPARE(received.MSPVersion, sent.MSPVersion);
    QVERIFY(received.shutter());
    QVERIFY(received.probe());
    QVERIFY(!received.shock());
    QCOMPARE(int(received.state()), 42);
}

void TstMspClient::informationAskedBeforeTheThreadRuns_isAnswered()
{
    // As an instrument starts: everything is posted before the worker thread does its first work.
    QThread thread;
    auto *client = new MSPClient;
    client->setTimes(quick);
    client->moveToThread(&thread);
    connect(&thread, &QThread::finished, client, &QObject::deleteLater);
    int infos = 0;
    connect(client, &MSPClient::msp_info, this, [&infos] { ++infos; });
    QMetaObject::invokeMethod(client, &MSPClient::info, Qt::QueuedConnection);
    thread.start();
    QTRY_COMPARE(infos, 1);
    QCOMPARE(m_msp->infoRequests(), 1);
    thread.quit();
    QVERIFY(thread.wait(5000));
}

void TstMspClient::informationAskedWithoutServer_isAnsweredOnceByTheNext()
{
    m_msp->die();
    MSPClient client;
    client.setTimes(quick);
    QSignalSpy info(&client, &MSPClient::msp_info);
    client.info();
    client.info();
    QTest::qWait(3 * quick.firstPause);
    QCOMPARE(info.size(), 0);
    QVERIFY(m_msp->comeBack());
    QTRY_COMPARE(info.size(), 1);
    client.info();
    QTRY_COMPARE(info.size(), 2);
    QCOMPARE(m_msp->infoRequests(), 2);
}

void TstMspClient::lostInformation_isAskedAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::FirstReplyLost);
    QSignalSpy info(client.get(), &MSPClient::msp_info);
    client->info();
    QTRY_COMPARE(info.size(), 1);
    QCOMPARE(m_msp->infoRequests(), 2);
}

void TstMspClient::lateInformation_isToldOnce()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::LateReply);
    m_msp->setLateBy(quick.reply * 3 / 2);
    QSignalSpy info(client.get(), &MSPClient::msp_info);
    QSignalSpy success(client.get(), &MSPClient::msp_success);
    client->info();
    QTRY_COMPARE(info.size(), 1);
    QCOMPARE(m_msp->infoRequests(), 2);
    // The second answer stands in the stream before the one to this command.
    QTest::qWait(quick.reply);
    m_msp->setFault(Fault::None);
    client->send(MSPClient::ABORT, QString());
    QTRY_COMPARE(success.size(), 1);
    QCOMPARE(info.size(), 1);
}

void TstMspClient::informationCutByTheServersDeath_isAskedAgain()
{
    const auto client = connectedClient();
    QVERIFY(client);
    m_msp->setFault(Fault::CutMidFrame);
    QSignalSpy info(client.get(), &MSPClient::msp_info);
    client->info();
    client->info();
    QTRY_VERIFY(m_msp->infoRequests() >= 1);
    QTRY_COMPARE(m_msp->clientCount(), 0);
    m_msp->setFault(Fault::None);
    QTRY_COMPARE(info.size(), 1);
}

void TstMspClient::events_areCarriedWithTheirCode_data()
{
    QTest::addColumn<int>("event");
    QTest::addColumn<int>("code");
    QTest::newRow("system error") << int(MSPClient::SYS_ERR) << 3;
    QTest::newRow("unknown system error") << int(MSPClient::SYS_ERR) << 32767;
    QTest::newRow("negative code") << int(MSPClient::SYS_ERR) << -1;
    QTest::newRow("shutter opened") << int(MSPClient::SHUT_OPENED) << 0;
    QTest::newRow("trigger released") << int(MSPClient::TRIG_OFF) << 0;
    QTest::newRow("unknown event") << 6 << 0;
    QTest::newRow("negative event") << -100 << 0;
}

void TstMspClient::events_areCarriedWithTheirCode()
{
    QFETCH(const int, event);
    QFETCH(const int, code);
    const auto client = connectedClient();
    QVERIFY(client);
    QSignalSpy events(client.get(), &MSPClient::msp_event);
    QVERIFY(m_msp->inject(MSPClient::MSPEvent(event), short(code)));
    QTRY_COMPARE(events.size(), 1);
    QCOMPARE(int(events.at(0).at(0).value<MSPClient::MSPEvent>()), event);
    QCOMPARE(int(events.at(0).at(1).value<short>()), code);
}

void TstMspClient::pause_growsToItsLongest()
{
    // A server that hangs up on everybody.
    m_msp->die();
    MSPServer server;
    QVERIFY2(server.listen(m_msp->serverName()), qPrintable(server.errorString()));
    QElapsedTimer time;
    time.start();
    QVector<qint64> attempts;
    connect(
        &server, &MSPServer::clientConnected, this,
        [&] {
            attempts.append(time.elapsed());
            server.dropClients();
        },
        Qt::QueuedConnection);
    MSPClient client;
    client.setTimes({400, 20, 80});
    QTRY_VERIFY(attempts.size() >= 6);
    // Only the lower bounds are sure on a busy machine; a timer may fire a few milliseconds early.
    const QVector<qint64> pauses{20, 40, 80, 80, 80};
    for (int i = 0; i < pauses.size(); ++i)
        QVERIFY2(attempts.at(i + 1) - attempts.at(i) >= pauses.at(i) * 9 / 10,
                 qPrintable(QStringLiteral("pause %1").arg(i)));
    const auto *retry = client.findChild<QTimer *>(QStringLiteral("retry"));
    QVERIFY(retry);
    QCOMPARE(retry->interval(), 80);
}

void TstMspClient::pause_isShortAgainAfterAServerThatSpoke()
{
    m_msp->die();
    MSPClient client;
    client.setTimes(quick);
    const auto retry = [&] { return client.findChild<QTimer *>(QStringLiteral("retry")); };
    QTRY_VERIFY(retry() && retry()->interval() == quick.longestPause);
    QVERIFY(m_msp->comeBack());
    QSignalSpy info(&client, &MSPClient::msp_info);
    client.info();
    QTRY_COMPARE(info.size(), 1);
    m_msp->die();
    QTRY_VERIFY(retry()->isActive());
    QVERIFY(retry()->interval() < quick.longestPause);
}

void TstMspClient::timesOfTheLink_areTheInstruments()
{
    m_msp->die();
    const MSPClient::Times times;
    QCOMPARE(times.reply, 2000);
    QCOMPARE(times.longestPause, 5000);
    MSPClient client;
    const auto retry = [&] { return client.findChild<QTimer *>(QStringLiteral("retry")); };
    QTRY_VERIFY(retry() && retry()->isActive());
    QCOMPARE(retry()->interval(), 250);
    QTRY_COMPARE(retry()->interval(), 500);
}

void TstMspClient::client_worksInTheThreadItWasMovedTo()
{
    QThread thread;
    auto *client = new MSPClient;
    client->setTimes(quick);
    client->moveToThread(&thread);
    connect(&thread, &QThread::finished, client, &QObject::deleteLater);
    QVector<QThread *> emitters;
    connect(
        client, &MSPClient::msp_success, client, [&](bool) { emitters.append(QThread::currentThread()); },
        Qt::DirectConnection);
    int successes = 0;
    int events = 0;
    connect(client, &MSPClient::msp_success, this, [&successes] { ++successes; });
    connect(client, &MSPClient::msp_event, this, [&events] { ++events; });
    thread.start();
    QVERIFY(m_msp->waitForClient());
    QMetaObject::invokeMethod(client, [client] { client->send(MSPClient::LIGHT_ON, QString()); });
    QTRY_COMPARE(m_msp->received(MSPClient::LIGHT_ON), 1);
    QVERIFY(m_msp->inject(MSPClient::PROBE_OFF));
    QTRY_COMPARE(events, 1);
    QTRY_COMPARE(successes, 1);
    thread.quit();
    QVERIFY(thread.wait(5000));
    QCOMPARE(emitters, QVector<QThread *>{&thread});
}

void TstMspClient::endOfTheThreadWhileRequestsAreOpen_isClean()
{
    for (int run = 0; run < 50; ++run) {
        m_msp->setFault(run % 2 ? Fault::NoReply : Fault::None);
        if (run % 5 == 4)
            m_msp->die();
        QThread thread;
        QPointer<MSPClient> client = new MSPClient;
        client->setTimes(quick);
        client->moveToThread(&thread);
        connect(&thread, &QThread::finished, client.data(), &QObject::deleteLater);
        thread.start();
        QMetaObject::invokeMethod(client.data(), &MSPClient::info, Qt::QueuedConnection);
        QMetaObject::invokeMethod(client.data(),
                                  [c = client.data()] { c->send(MSPClient::ABORT, QString()); });
        if (run % 3 == 0)
            QTest::qWait(2);
        thread.quit();
        QVERIFY(thread.wait(5000));
        QVERIFY(!client);
        QVERIFY(m_msp->comeBack());
    }
}

QTEST_GUILESS_MAIN(TstMspClient)
#include "tst_mspclient.moc"
