// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <mspserver.h>

class TstMspServer : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void nameOfALivingServer_isRefused();
    void fileOfADeadServer_isReplaced();
    void fileThatIsNoSocket_isLeftAlone();
    void impossibleName_isToldClearly();
    void socket_isItsOwnersOnly_data();
    void socket_isItsOwnersOnly();
    void request_isAnsweredOnce();
    void answerToAGoneClient_isIgnored();
    void malformedAndServerSideMessages_areReportedAndSurvived();
    void oversizedFrame_dropsThatClientOnly();
    void clientDroppedFromWithinItsOwnCommand_isSurvived();
    void events_reachEveryClient();

private:
    QString name() const { return m_directory->filePath(QStringLiteral("msp")); }
    std::unique_ptr<QLocalSocket> client();
    static QByteArray bytes(const msp::Message &message) { return msp::frame(msp::encode(message)); }
    static QByteArray received(QLocalSocket &socket, int size);

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<MSPServer> m_server;
};

void TstMspServer::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_server = std::make_unique<MSPServer>();
    QVERIFY2(m_server->listen(name()), qPrintable(m_server->errorString()));
}

void TstMspServer::cleanup()
{
    m_server.reset();
    m_directory.reset();
}

std::unique_ptr<QLocalSocket> TstMspServer::client()
{
    const int before = m_server->clientCount();
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(name());
    if (!QTest::qWaitFor([&] { return m_server->clientCount() == before + 1; }))
        socket.reset();
    return socket;
}

QByteArray TstMspServer::received(QLocalSocket &socket, int size)
{
    QByteArray bytes;
    // On a time-out the caller's comparison shows what is missing.
    [[maybe_unused]] const bool complete = QTest::qWaitFor([&] {
        bytes += socket.readAll();
        return bytes.size() >= size;
    });
    return bytes;
}

void TstMspServer::nameOfALivingServer_isRefused()
{
    MSPServer second;
    QVERIFY(!second.listen(name()));
    QCOMPARE(second.errorString(), QStringLiteral("The MSP server \"%1\" is already running.").arg(name()));
    QVERIFY(client());
}

void TstMspServer::fileOfADeadServer_isReplaced()
{
    m_server.reset();
    {
        QLocalServer dead;
        QVERIFY(dead.listen(name()));
        // What a killed process leaves: the file, with nobody behind it.
        QVERIFY(QFile::rename(name(), name() + QStringLiteral(".kept")));
    }
    QVERIFY(QFile::rename(name() + QStringLiteral(".kept"), name()));
    m_server = std::make_unique<MSPServer>();
    QVERIFY2(m_server->listen(name()), qPrintable(m_server->errorString()));
    QVERIFY(client());
}

void TstMspServer::fileThatIsNoSocket_isLeftAlone()
{
    QFile file(m_directory->filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("kept"), 4);
    file.close();
    MSPServer server;
    QVERIFY(!server.listen(file.fileName()));
    QCOMPARE(
        server.errorString(),
        QStringLiteral("The MSP server \"%1\" cannot be started: %1 is no socket.").arg(file.fileName()));
    QCOMPARE(file.size(), 4);
}

void TstMspServer::impossibleName_isToldClearly()
{
    MSPServer server;
    const QString nowhere = m_directory->filePath(QStringLiteral("missing/msp"));
    QVERIFY(!server.listen(nowhere));
    QVERIFY2(server.errorString().startsWith(
                 QStringLiteral("The MSP server \"%1\" cannot be started: ").arg(nowhere)),
             qPrintable(server.errorString()));
}

void TstMspServer::socket_isItsOwnersOnly_data()
{
    QTest::addColumn<int>("mask");
    QTest::newRow("no mask") << 0;
    QTest::newRow("usual mask") << 022;
}

void TstMspServer::socket_isItsOwnersOnly()
{
    QFETCH(int, mask);
    m_server = std::make_unique<MSPServer>();
    const mode_t before = umask(static_cast<mode_t>(mask));
    const bool listening = m_server->listen(name());
    umask(before);
    QVERIFY2(listening, qPrintable(m_server->errorString()));
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(m_server->fullServerName()).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0700);
    QVERIFY(client());
}

void TstMspServer::request_isAnsweredOnce()
{
    QVector<MSPServer::Request> requests;
    connect(m_server.get(), &MSPServer::commandReceived, this,
            [&](MSPServer::Request request) { requests.append(request); });
    const auto socket = client();
    QVERIFY(socket);
    socket->write(bytes(msp::Command{7, MSPClient::ABORT, QString()})
                  + bytes(msp::Command{8, MSPClient::RUN_HARD, QString()}));
    QTRY_COMPARE(requests.size(), 2);
    m_server->replySuccess(requests.at(1), false);
    m_server->replySuccess(requests.at(1), true);
    m_server->replySuccess(requests.at(0), true);
    m_server->replySuccess(4711, true);
    // A further answer would stand before this event.
    m_server->sendEvent(MSPClient::PROBE_ON);
    const QByteArray expected = bytes(msp::CommandReply{8, false}) + bytes(msp::CommandReply{7, true})
        + bytes(msp::Event{MSPClient::PROBE_ON, 0});
    QCOMPARE(received(*socket, expected.size()), expected);
}

void TstMspServer::answerToAGoneClient_isIgnored()
{
    QVector<MSPServer::Request> requests;
    connect(m_server.get(), &MSPServer::infoRequested, this,
            [&](MSPServer::Request request) { requests.append(request); });
    auto socket = client();
    QVERIFY(socket);
    socket->write(bytes(msp::InfoRequest{1}));
    QTRY_COMPARE(requests.size(), 1);
    socket.reset();
    QTRY_COMPARE(m_server->clientCount(), 0);
    m_server->replyInfo(requests.at(0), MSPInfo());
    QVERIFY(m_server->infoFrame(requests.at(0), MSPInfo()).isEmpty());
    QVERIFY(client());
}

void TstMspServer::malformedAndServerSideMessages_areReportedAndSurvived()
{
    QSignalSpy malformed(m_server.get(), &MSPServer::malformedReceived);
    QSignalSpy requests(m_server.get(), &MSPServer::infoRequested);
    const auto socket = client();
    QVERIFY(socket);
    socket->write(msp::frame("garbage"));
    socket->write(bytes(msp::Event{MSPClient::SHUT_OPENED, 0}));
    socket->write(bytes(msp::InfoRequest{1}));
    QTRY_COMPARE(requests.size(), 1);
    QCOMPARE(malformed.size(), 2);
    QCOMPARE(m_server->clientCount(), 1);
}

void TstMspServer::oversizedFrame_dropsThatClientOnly()
{
    const auto good = client();
    const auto bad = client();
    QVERIFY(good && bad);
    bad->write(QByteArray(8, '\xff'));
    QTRY_COMPARE(m_server->clientCount(), 1);
    QTRY_COMPARE(bad->state(), QLocalSocket::UnconnectedState);
    QCOMPARE(good->state(), QLocalSocket::ConnectedState);
}

void TstMspServer::clientDroppedFromWithinItsOwnCommand_isSurvived()
{
    int commands = 0;
    connect(m_server.get(), &MSPServer::commandReceived, this, [&](MSPServer::Request request) {
        ++commands;
        m_server->dropClients();
        m_server->replySuccess(request, true);
    });
    const auto socket = client();
    QVERIFY(socket);
    socket->write(bytes(msp::Command{1, MSPClient::ABORT, QString()})
                  + bytes(msp::Command{2, MSPClient::ABORT, QString()}));
    QTRY_COMPARE(socket->state(), QLocalSocket::UnconnectedState);
    QCOMPARE(commands, 1);
    QCOMPARE(socket->readAll(), QByteArray());
}

void TstMspServer::events_reachEveryClient()
{
    const auto first = client();
    const auto second = client();
    QVERIFY(first && second);
    m_server->sendEvent(MSPClient::SYS_ERR, 5);
    const QByteArray expected = bytes(msp::Event{MSPClient::SYS_ERR, 5});
    QCOMPARE(received(*first, expected.size()), expected);
    QCOMPARE(received(*second, expected.size()), expected);
}

QTEST_GUILESS_MAIN(TstMspServer)
#include "tst_mspserver.moc"
