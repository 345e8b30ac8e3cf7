// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>

#include <thread>

#include "peerprocess.h"
#include "testtessel.h"

using namespace tessel;

namespace {

/// Somebody else at a port: does with each connection what the test says.
class Somebody
{
public:
    explicit Somebody(std::function<void(QTcpSocket &)> talk)
        : m_thread([this, talk = std::move(talk)] {
            QTcpServer server;
            server.listen(QHostAddress(QHostAddress::LocalHost));
            m_port = server.serverPort();
            while (!m_ends) {
                if (!server.waitForNewConnection(20))
                    continue;
                const std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
                talk(*socket);
            }
        })
    {
        while (m_port == 0)
            QThread::msleep(1);
    }
    ~Somebody()
    {
        m_ends = true;
        m_thread.join();
    }
    AString description() const
    {
        return AString("test.Interface:peer@TCPIP:localhost:" + QByteArray::number(m_port.load()));
    }

private:
    std::atomic<quint16> m_port{0};
    std::atomic<bool> m_ends{false};
    std::thread m_thread;
};

/// Answers, and keeps the connection until the other end closes it.
void answer(QTcpSocket &socket, const QByteArray &bytes)
{
    socket.write(bytes);
    socket.waitForBytesWritten(2000);
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(2000))
        socket.readAll();
}

QByteArray numberOf(QTcpSocket &socket)
{
    // 4 bytes of length, array, kind, then the number.
    while (socket.bytesAvailable() < 20 && socket.waitForReadyRead(2000)) { }
    const QByteArray start = socket.readAll().mid(6, 5);
    const int first = static_cast<unsigned char>(start.at(0));
    return start.left(first < 24 ? 1 : first == 24 ? 2 : first == 25 ? 3 : 5);
}

} // namespace

class TstTesselCalls : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        tessel::init();
        tessel::set_call_time_limit(5000);
    }

    void call_bringsTheReplyAndTheStatus()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QVERIFY(service);
        QCOMPARE(service->interface_name(), QByteArray("test.Interface"));
        QCOMPARE(service->name(), QByteArray("peer"));
        Tuple request("echo");
        request.set("text", Value(AString(QStringLiteral("é"))));
        request.set("date", Value(TimeDate(2024, 2, 29)));
        Tuple reply;
        QCOMPARE(service->call(request, reply), 1);
        QVERIFY(reply == request);
    }

    void call_bringsTheServicesOwnStatus_data()
    {
        QTest::addColumn<int>("status");
        for (const int status :
             {0, 1, -1, 2147483647, -2147483647 - 1, int(ERR_TIMED_OUT), int(ERR_PEER_GONE)})
            QTest::addRow("%d", status) << status;
    }
    void call_bringsTheServicesOwnStatus()
    {
        QFETCH(int, status);
        const PeerProcess peer;
        const PService service = peer.bind();
        QVERIFY(service);
        QCOMPARE(callPeer(*service, "status", "status", status), status);
        // Also one that means that some other peer is gone: this one is not.
        QCOMPARE(callPeer(*service, "echo"), 1);
    }

    void bind_withoutAnInterfaceTakesAnyOne()
    {
        const PeerProcess peer;
        const PService service = Service::bind(AString("peer@TCPIP:127.0.0.1:" + peer.portText()));
        QVERIFY(service);
        QCOMPARE(service->interface_name(), QByteArray("test.Interface"));
    }

    void bind_toAnotherNameOrInterfaceIsEmpty()
    {
        const PeerProcess peer;
        for (const char *name : {"other", "test.Other:peer", "test.Interface:peers", "\xff"})
            QVERIFY(!Service::bind(AString(QByteArray(name) + "@TCPIP:localhost:" + peer.portText())));
        QVERIFY(peer.bind());
    }

    void bind_toNoDescriptionIsEmpty()
    {
        for (const char *text : {"", "peer", "peer@TCPIP:localhost", "peer@TCPIP:localhost:0",
                                 "peer@TCPIP:no.such.name.invalid:1"}) {
            QElapsedTimer timer;
            timer.start();
            QVERIFY(!Service::bind(text));
            QVERIFY(timer.elapsed() < 500);
        }
    }

    void bind_toAClosedPortIsRefusedAtOnce()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress(QHostAddress::LocalHost)));
        const QByteArray port = QByteArray::number(server.serverPort());
        server.close();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!Service::bind(AString("peer@TCPIP:localhost:" + port)));
        QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));
    }

    void bind_toASilentListenerGivesUpWithinASecond()
    {
        QTcpServer server; // the system accepts, nobody answers
        QVERIFY(server.listen(QHostAddress(QHostAddress::LocalHost)));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!Service::bind(AString("peer@TCPIP:localhost:" + QByteArray::number(server.serverPort()))));
        QVERIFY2(timer.elapsed() >= 900 && timer.elapsed() < 1500,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void bind_toSomebodyElseIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("a web server") << QByteArray("HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n");
        QTest::newRow("nonsense") << framed("nonsense");
        QTest::newRow("an empty frame") << framed(QByteArray());
        QTest::newRow("2 GB announced") << header(0x7fffffff);
        QTest::newRow("half a frame") << header(20) + "half";
        QTest::newRow("an answer to no call") << framed(QByteArray::fromHex("84040020826080"));
    }
    void bind_toSomebodyElseIsEmpty()
    {
        QFETCH(QByteArray, bytes);
        const Somebody somebody([bytes](QTcpSocket &socket) {
            socket.waitForReadyRead(2000);
            answer(socket, bytes);
        });
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!Service::bind(somebody.description()));
        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    }

    void bind_toOneThatDripsIsOverWithinASecond()
    {
        const Somebody somebody([](QTcpSocket &socket) {
            socket.waitForReadyRead(2000);
            socket.write(header(1000));
            for (int i = 0; i < 60 && socket.state() == QAbstractSocket::ConnectedState; ++i) {
                socket.write("x");
                socket.waitForBytesWritten(50);
                QThread::msleep(50);
            }
        });
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!Service::bind(somebody.description()));
        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    }

    void bind_believesAPeerOnlyThatIsTheOneDescribed_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<QByteArray>("interfaceName");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("believed");
        const QByteArray ok("00");
        QTest::newRow("the one") << ok << QByteArray("test.Interface") << QByteArray("peer") << true;
        QTest::newRow("other interface") << ok << QByteArray("test.Interfacf") << QByteArray("peer") << false;
        QTest::newRow("other name") << ok << QByteArray("test.Interface") << QByteArray("pear") << false;
        QTest::newRow("not here") << QByteArray("20") << QByteArray("test.Interface") << QByteArray("peer")
                                  << false;
    }
    void bind_believesAPeerOnlyThatIsTheOneDescribed()
    {
        QFETCH(QByteArray, status);
        QFETCH(QByteArray, interfaceName);
        QFETCH(QByteArray, name);
        QFETCH(bool, believed);
        const Somebody somebody([&](QTcpSocket &socket) {
            answer(socket,
                   framed(QByteArray::fromHex("8602") + numberOf(socket) + QByteArray::fromHex(status)
                          + "\x6e" + interfaceName + "\x64" + name + QByteArray::fromHex("01")));
        });
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(bool(Service::bind(somebody.description())), believed);
        QVERIFY2(timer.elapsed() < 900, qPrintable(QString::number(timer.elapsed())));
    }

    void call_ofAServiceThatAnswersTooLateTimesOut_andItsReplyIsSkipped()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QVERIFY(service);
        tessel::set_call_time_limit(100);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(callPeer(*service, "sleep", "ms", 400), int(ERR_TIMED_OUT));
        QVERIFY2(timer.elapsed() >= 90 && timer.elapsed() < 350,
                 qPrintable(QString::number(timer.elapsed())));
        tessel::set_call_time_limit(5000);
        Tuple request("echo");
        request.set("n", Value(5));
        Tuple reply;
        QCOMPARE(service->call(request, reply), 1); // not 2, which the late one says
        QVERIFY(reply == request);
    }

    void callTimeLimit_isAtLeastAMillisecond()
    {
        tessel::set_call_time_limit(-5);
        QCOMPARE(tessel::call_time_limit(), 1);
    }

    void call_thatIsTooLargeIsNotSent()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        Tuple request("echo");
        request.set("text", Value(AString(QByteArray(1024 * 1024, 'x'))));
        Tuple reply;
        QCOMPARE(service->call(request, reply), int(ERR_TOO_LARGE));
        request.set("text", Value(AString(QByteArray("\xff"))));
        QCOMPARE(service->call(request, reply), int(ERR_MALFORMED));
        request.set("text", Value(AString(QByteArray(1000 * 1000, 'x'))));
        QCOMPARE(service->call(request, reply), 1);
        QVERIFY(reply == request);
    }

    void replyThatIsTooLarge_isAStatus()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QCOMPARE(callPeer(*service, "large"), int(ERR_TOO_LARGE));
        QCOMPARE(callPeer(*service, "echo"), 1);
    }

    void peerThatDiesDuringACall_isGone()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(callPeer(*service, "die"), int(ERR_PEER_GONE));
        QCOMPARE(callPeer(*service, "echo"), int(ERR_PEER_GONE));
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    }

    void peerThatIsKilledDuringACall_isGone()
    {
        PeerProcess peer;
        const PService service = peer.bind();
        std::atomic<int> status{0};
        std::thread caller([&] { status = callPeer(*service, "sleep", "ms", 10000); });
        QThread::msleep(200);
        peer.kill();
        caller.join();
        QVERIFY2(status == int(ERR_PEER_GONE) || status == int(ERR_REFUSED),
                 qPrintable(QString::number(status)));
        QCOMPARE(callPeer(*service, "echo"), int(ERR_PEER_GONE));
    }

    void restartedPeer_isAnotherOne()
    {
        auto peer = std::make_unique<PeerProcess>();
        const quint16 port = peer->port();
        const PService usedHere = peer->bind();
        const PService notYetUsedInTheOtherThread = peer->bind();
        QVERIFY(usedHere && notYetUsedInTheOtherThread);
        QCOMPARE(callPeer(*usedHere, "echo"), 1);
        peer.reset();
        PeerProcess restarted(port);
        QCOMPARE(restarted.port(), port);
        QCOMPARE(callPeer(*usedHere, "echo"), int(ERR_PEER_GONE));
        int status = 0;
        std::thread([&] { status = callPeer(*notYetUsedInTheOtherThread, "echo"); }).join();
        QCOMPARE(status, int(ERR_PEER_GONE));
        QCOMPARE(callPeer(*notYetUsedInTheOtherThread, "echo"), int(ERR_PEER_GONE));
        const PService fresh = restarted.bind();
        QVERIFY(fresh);
        QCOMPARE(callPeer(*fresh, "echo"), 1);
        QCOMPARE(callPeer(*usedHere, "echo"), int(ERR_PEER_GONE));
    }

    void servicePublishedAnew_endsItsOldProxies()
    {
        const PeerProcess peer;
        const PService old = peer.bind();
        QCOMPARE(callPeer(*old, "republish"), 1);
        QCOMPARE(callPeer(*old, "echo"), int(ERR_PEER_GONE));
        const PService fresh = peer.bind();
        QVERIFY(fresh);
        QCOMPARE(callPeer(*fresh, "echo"), 1);
    }

    void servicePublishedTwice_keepsItsProxies()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QCOMPARE(callPeer(*service, "publish again"), 1);
        QCOMPARE(callPeer(*service, "echo"), 1);
    }

    void serviceThatClosesItsEndpoint_stillAnswersThatCall()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        QCOMPARE(callPeer(*service, "close"), 1);
        QTRY_VERIFY(callPeer(*service, "echo") == ERR_PEER_GONE);
        QVERIFY(!peer.bind());
        QVERIFY(peer.isRunning());
    }

    void manyThreads_callOneProxyAtOnce()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        std::atomic<int> right{0};
        std::vector<std::thread> threads; // without an event loop
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                for (int n = 0; n < 100; ++n) {
                    Tuple request("echo");
                    request.set("n", Value(1000 * i + n));
                    Tuple reply;
                    if (service->call(request, reply) == 1 && reply == request)
                        ++right;
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(right.load(), 800);
    }

    void proxyReleasedByAnotherThread_leavesNothingToTheNextOne()
    {
        // The next proxy may lie where the one before was: this thread's connection of that one is not its
        // own.
        const PeerProcess one;
        const PeerProcess other;
        for (int i = 0; i < 50; ++i) {
            PService service = (i % 2 == 0 ? one : other).bind();
            QVERIFY(service);
            QCOMPARE(callPeer(*service, "echo"), 1);
            std::thread([taken = std::move(service)]() mutable { taken.reset(); }).join();
        }
    }

    void connectionsOfThreadsThatHaveEnded_areClosed()
    {
        const PeerProcess peer;
        const PService service = peer.bind();
        for (int i = 0; i < 200; ++i) { // more than a server keeps open
            int status = 0;
            std::thread([&] { status = callPeer(*service, "echo"); }).join();
            QCOMPARE(status, 1);
        }
    }
};

QTEST_GUILESS_MAIN(TstTesselCalls)
#include "tst_tessel_calls.moc"
