// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <QJsonDocument>
#include <QLocalSocket>

#include <sys/stat.h>

#include "controlserver.h"

using simulator::ControlServer;

namespace {

/// A server that obeys everything but "no", and a client of it.
class Bench
{
public:
    Bench()
        : server([this](const QJsonObject &command) {
            commands.append(command);
            return command.value(QLatin1String("command")).toString() == QLatin1String("no")
                ? simulator::refusal(QStringLiteral("no"))
                : QJsonObject{{QStringLiteral("ok"), true}};
        })
        , name(directory.filePath(QStringLiteral("control")))
    {
        if (!server.listen(name))
            qFatal("%s", qPrintable(server.errorString()));
        connect(client);
    }
    void connect(QLocalSocket &socket) const
    {
        socket.connectToServer(name);
        if (!socket.waitForConnected())
            qFatal("%s", qPrintable(socket.errorString()));
    }
    /// The next line that \p socket receives; empty when none comes.
    static QJsonObject line(QLocalSocket &socket)
    {
        if (!QTest::qWaitFor([&socket] { return socket.canReadLine(); }))
            return {};
        return QJsonDocument::fromJson(socket.readLine()).object();
    }
    QJsonObject ask(const QByteArray &bytes)
    {
        client.write(bytes);
        return line(client);
    }

    QVector<QJsonObject> commands;
    QTemporaryDir directory;
    ControlServer server;
    QString name;
    QLocalSocket client;
};

const QJsonObject Obeyed{{QStringLiteral("ok"), true}};

} // namespace

class TstControlServer : public QObject
{
    Q_OBJECT
private slots:
    void socket_isItsOwnersOnly()
    {
        const mode_t before = umask(0);
        Bench bench;
        umask(before);
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(bench.name).constData(), &status), 0);
        QCOMPARE(int(status.st_mode & 0777), 0700);
    }

    void everyLine_getsOneAnswerInOrder();
    void brokenLines_areRefusedAndHarmless_data();
    void brokenLines_areRefusedAndHarmless();
    void keyThatStandsTwice_isNamed();
    void lineInPieces_isPutTogether();
    void tooLongLine_dropsItsClientOnly();
    void endlessLine_dropsItsClient();
    void notices_reachSubscribersOnly();
    void name_isTakenWhileAServerLives();
};

void TstControlServer::everyLine_getsOneAnswerInOrder()
{
    Bench bench;
    bench.client.write("{\"command\": \"a\", \"tag\": 1}\n{\"command\": \"no\", \"tag\": {\"x\": "
                       "[]}}\n{\"command\": \"c\"}\n");
    QCOMPARE(Bench::line(bench.client),
             QJsonObject({{QStringLiteral("ok"), true}, {QStringLiteral("tag"), 1}}));
    const QJsonObject refused = Bench::line(bench.client);
    QCOMPARE(refused.value(QLatin1String("ok")), QJsonValue(false));
    QCOMPARE(refused.value(QLatin1String("error")).toString(), QStringLiteral("no"));
    QVERIFY(refused.value(QLatin1String("tag")).isObject());
    QCOMPARE(Bench::line(bench.client), Obeyed);
}

void TstControlServer::brokenLines_areRefusedAndHarmless_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty") << QByteArray("\n");
    QTest::newRow("words") << QByteArray("press the trigger\n");
    QTest::newRow("list") << QByteArray("[1, 2]\n");
    QTest::newRow("text") << QByteArray("\"press\"\n");
    QTest::newRow("half an object") << QByteArray("{\"command\": \"a\"\n");
    QTest::newRow("two objects") << QByteArray("{} {}\n");
    QTest::newRow("zero bytes") << QByteArray("\0\0\0\n", 4);
    QTest::newRow("no UTF-8") << QByteArray("{\"command\": \"\xff\xfe\"}\n");
    QTest::newRow("deep nesting") << QByteArray(5000, '[') + '\n';
}

void TstControlServer::brokenLines_areRefusedAndHarmless()
{
    QFETCH(QByteArray, line);
    Bench bench;
    const QJsonObject answer = bench.ask(line);
    QCOMPARE(answer.value(QLatin1String("ok")), QJsonValue(false));
    QVERIFY(!answer.value(QLatin1String("error")).toString().isEmpty());
    QVERIFY(bench.commands.isEmpty());
    QCOMPARE(bench.ask("{\"command\": \"a\"}\n"), Obeyed);
}

void TstControlServer::keyThatStandsTwice_isNamed()
{
    Bench bench;
    const QJsonObject answer = bench.ask("{\"command\": \"a\", \"tag\": {}, \"t\\u0061g\": {}}\n");
    QCOMPARE(answer,
             simulator::refusal(
                 QStringLiteral("the key \"tag\" stands twice in its object, again after 28 bytes")));
    QVERIFY(bench.commands.isEmpty());
    QCOMPARE(bench.ask("{\"command\": \"a\"}\n"), Obeyed);
}

void TstControlServer::lineInPieces_isPutTogether()
{
    Bench bench;
    bench.client.write("{\"comm");
    bench.client.flush();
    QLocalSocket other; // whose answer comes after the server has seen the first piece
    bench.connect(other);
    other.write("{}\n");
    QCOMPARE(Bench::line(other), Obeyed);
    QCOMPARE(bench.ask("and\": \"a\"}\n"), Obeyed);
    QCOMPARE(bench.commands.size(), 2);
}

void TstControlServer::tooLongLine_dropsItsClientOnly()
{
    Bench bench;
    QLocalSocket other;
    bench.connect(other);
    const QByteArray longest =
        "{\"command\": \"" + QByteArray(ControlServer::LongestLine - 15, 'x') + "\"}\n";
    QCOMPARE(longest.size(), ControlServer::LongestLine + 1);
    QCOMPARE(bench.ask(longest), Obeyed);
    const QJsonObject answer = bench.ask("x" + longest);
    QCOMPARE(answer.value(QLatin1String("error")).toString(),
             QStringLiteral("the line is longer than 65536 bytes"));
    QTRY_COMPARE(bench.client.state(), QLocalSocket::UnconnectedState);
    other.write("{\"command\": \"a\"}\n");
    QCOMPARE(Bench::line(other), Obeyed);
}

void TstControlServer::endlessLine_dropsItsClient()
{
    Bench bench;
    bench.client.write(QByteArray(ControlServer::LongestLine * 4, '{'));
    QTRY_COMPARE(bench.client.state(), QLocalSocket::UnconnectedState);
    QVERIFY(bench.commands.isEmpty());
}

void TstControlServer::notices_reachSubscribersOnly()
{
    Bench bench;
    QLocalSocket other;
    bench.connect(other);
    QCOMPARE(bench.ask("{\"command\": \"subscribe\"}\n"), Obeyed);
    bench.server.notice({{QStringLiteral("notice"), QStringLiteral("beeper")}});
    QCOMPARE(Bench::line(bench.client).value(QLatin1String("notice")).toString(), QStringLiteral("beeper"));
    other.write("{\"command\": \"a\"}\n");
    QCOMPARE(Bench::line(other), Obeyed);

    bench.client.abort();
    bench.server.notice({{QStringLiteral("notice"), QStringLiteral("beeper")}});
    other.write("{\"command\": \"a\"}\n");
    QCOMPARE(Bench::line(other), Obeyed);
}

void TstControlServer::name_isTakenWhileAServerLives()
{
    Bench bench;
    ControlServer second([](const QJsonObject &) { return QJsonObject(); });
    QVERIFY(!second.listen(bench.name));
    QVERIFY(!second.errorString().isEmpty());
    QCOMPARE(bench.ask("{\"command\": \"a\"}\n"), Obeyed);
}

QTEST_GUILESS_MAIN(TstControlServer)
#include "tst_controlserver.moc"
