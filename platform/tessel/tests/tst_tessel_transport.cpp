// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What carries the frames, without the services behind it: peers that read late, stop half-way or go, and
// waits that signals interrupt.
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpServer>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tessel/description.h"
#include "testtessel.h"
#include "transport.h"

using namespace tessel;

namespace {

constexpr int SmallBuffer = 16 * 1024; // bytes that the system keeps of a connection, about

Description addressAt(quint16 port)
{
    Description address;
    Description::parseAddress("TCPIP:localhost:" + QByteArray::number(port), address);
    return address;
}

/// An endpoint on a thread of its own. Its descriptors are this process's, too.
class Serving
{
public:
    explicit Serving(Handler handler)
    {
        m_thread.start();
        m_context.moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            &m_context, [this, &handler] { m_endpoint = openEndpoint(addressAt(0), std::move(handler)); },
            Qt::BlockingQueuedConnection);
    }
    ~Serving()
    {
        QMetaObject::invokeMethod(
            &m_context, [this] { m_endpoint.reset(); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }
    quint16 port() const { return m_endpoint ? m_endpoint->port() : 0; }

private:
    QThread m_thread;
    QObject m_context;
    std::unique_ptr<Endpoint> m_endpoint;
};

/// A peer with the system's own calls, which can be told how little to buffer.
class Peer
{
public:
    explicit Peer(quint16 port)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &SmallBuffer, sizeof SmallBuffer);
        const timeval patience{5, 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_isConnected = ::connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }
    ~Peer() { ::close(m_socket); }

    bool isConnected() const { return m_isConnected; }
    bool send(const QByteArray &bytes)
    {
        return ::send(m_socket, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
    }
    void stopSending() { ::shutdown(m_socket, SHUT_WR); }
    void reset()
    {
        const linger atOnce{1, 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        ::close(std::exchange(m_socket, -1));
    }
    /// Up to \p size bytes; less when the other end closes.
    QByteArray receive(int size)
    {
        QByteArray bytes(size, '\0');
        int done = 0;
        while (done < size) {
            const ssize_t got = ::recv(m_socket, bytes.data() + done, std::size_t(size - done), 0);
            if (got <= 0)
                break;
            done += int(got);
        }
        bytes.truncate(done);
        return bytes;
    }
    bool isClosedByOther()
    {
        char byte = 0;
        return ::recv(m_socket, &byte, 1, 0) == 0;
    }

    /// Makes the system keep little of what the other end, in this process, sends here.
    bool shortenOtherEnd() const
    {
        sockaddr_in own{};
        socklen_t size = sizeof own;
        ::getsockname(m_socket, reinterpret_cast<sockaddr *>(&own), &size);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 2000) {
            for (int other = 0; other < 256; ++other) {
                sockaddr_in remote{};
                size = sizeof remote;
                if (::getpeername(other, reinterpret_cast<sockaddr *>(&remote), &size) == 0
                    && remote.sin_family == AF_INET && remote.sin_port == own.sin_port)
                    return ::setsockopt(other, SOL_SOCKET, SO_SNDBUF, &SmallBuffer, sizeof SmallBuffer) == 0;
            }
            QThread::msleep(1); // not accepted yet
        }
        return false;
    }

private:
    int m_socket;
    bool m_isConnected = false;
};

/// Answers "N" with a frame of 10,000 letters, another for each N.
Answer longAnswer(Status, const QByteArray &payload)
{
    return {framed(QByteArray(10000, char('a' + payload.toInt() % 26))), true, true};
}

qint64 threadTime() // ms
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
}

void noticeSignal(int) { }

} // namespace

class TstTesselTransport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepareTransport(); }

    void answersThatAreReadLate_comeWholeAndInTheirOrder_data()
    {
        QTest::addColumn<bool>("stops");
        QTest::newRow("of a peer that goes on") << false;
        QTest::newRow("of a peer that has said all") << true;
    }
    void answersThatAreReadLate_comeWholeAndInTheirOrder()
    {
        QFETCH(bool, stops);
        constexpr int requests = 60; // 600 kB of answers: less than the limit, far more than the system keeps
        std::atomic<int> served{0};
        const Serving serving([&served](Status status, const QByteArray &payload) {
            const Answer answer = longAnswer(status, payload);
            ++served;
            return answer;
        });
        Peer peer(serving.port());
        QVERIFY(peer.isConnected());
        QVERIFY(peer.shortenOtherEnd());
        QByteArray expected;
        for (int i = 0; i < requests; ++i) {
            QVERIFY(peer.send(framed(QByteArray::number(i))));
            expected += longAnswer(OK, QByteArray::number(i)).frame;
        }
        QTRY_COMPARE(served.load(), requests);
        if (stops)
            peer.stopSending();
        QThread::msleep(20);
        QVERIFY(peer.receive(expected.size()) == expected);
        if (stops) {
            QVERIFY(peer.isClosedByOther());
        } else {
            QVERIFY(peer.send(framed("7")));
            const QByteArray next = longAnswer(OK, "7").frame;
            QVERIFY(peer.receive(next.size()) == next);
        }
    }

    void handlerThatWaitsInAnEventLoop_isNotCalledAgainForThatConnection()
    {
        std::atomic<bool> inside{false};
        std::atomic<bool> calledInside{false};
        std::atomic<bool> payloadKept{true};
        std::atomic<qint64> busy{0};
        const Serving serving([&](Status, const QByteArray &payload) {
            calledInside = calledInside || inside;
            if (payload == "wait") {
                inside = true;
                QEventLoop loop;
                QTimer::singleShot(200, &loop, &QEventLoop::quit);
                const qint64 before = threadTime();
                loop.exec();
                busy = threadTime() - before;
                inside = false;
                payloadKept = payload == "wait";
            }
            return Answer{framed(QByteArray(payload.constData(), payload.size())), true, true};
        });
        Peer peer(serving.port());
        QVERIFY(peer.send(framed("wait")));
        QTRY_VERIFY(inside);
        QVERIFY(peer.send(framed("next")));
        QCOMPARE(peer.receive(16), framed("wait") + framed("next"));
        QVERIFY(!calledInside);
        QVERIFY(payloadKept);
        // What arrived meanwhile was not asked for again and again.
        QVERIFY2(busy < 30, qPrintable(QString::number(busy)));
    }

    void peerThatGoesWhileItsRequestIsServed_harmsNothing()
    {
        std::atomic<int> served{0};
        const Serving serving([&served](Status, const QByteArray &) {
            QEventLoop loop;
            QTimer::singleShot(100, &loop, &QEventLoop::quit);
            loop.exec();
            ++served;
            return Answer{framed("answer"), true, true};
        });
        for (int round = 0; round < 3; ++round) {
            Peer peer(serving.port());
            QVERIFY(peer.send(framed("request") + framed("and another")));
            peer.reset();
        }
        QTRY_VERIFY(served >= 3);
        Peer good(serving.port());
        QVERIFY(good.send(framed("request")));
        QCOMPARE(good.receive(10), framed("answer"));
    }

    void waitThatSignalsInterrupt_lastsAsLongAsItShould()
    {
        struct sigaction notice = {};
        notice.sa_handler = noticeSignal; // without SA_RESTART: each one ends a system call
        struct sigaction before = {};
        ::sigaction(SIGUSR1, &notice, &before);
        const Serving serving([](Status, const QByteArray &payload) {
            if (payload == "late")
                QThread::msleep(200);
            return payload == "never" ? Answer{QByteArray(), true, true}
                                      : Answer{framed("answer"), true, true};
        });
        Status status = OK;
        const auto connection = openConnection(addressAt(serving.port()), 1000, status);
        QVERIFY(connection);
        std::atomic<bool> ends{false};
        std::thread disturbing([&ends, waiting = ::pthread_self()] {
            while (!ends) {
                ::pthread_kill(waiting, SIGUSR1);
                QThread::msleep(5);
            }
        });
        QByteArray payload;
        const bool sent = connection->send(framed("late"), QDeadlineTimer(1000));
        const Status late = connection->receive(payload, QDeadlineTimer(1000));
        const QByteArray answer(payload.constData(), payload.size());
        QElapsedTimer timer;
        timer.start();
        connection->send(framed("never"), QDeadlineTimer(1000));
        const Status never = connection->receive(payload, QDeadlineTimer(300));
        const qint64 taken = timer.elapsed();
        ends = true;
        disturbing.join();
        ::sigaction(SIGUSR1, &before, nullptr);
        QVERIFY(sent);
        QCOMPARE(int(late), int(OK));
        QCOMPARE(answer, QByteArray("answer"));
        QCOMPARE(int(never), int(ERR_TIMED_OUT));
        QVERIFY2(taken >= 295 && taken < 1000, qPrintable(QString::number(taken)));
        QVERIFY(connection->isUsable());
    }

    void connectionWhoseFrameIsHalfSent_isOfNoUse()
    {
        QTcpServer silent; // the system takes what it can, nobody reads
        QVERIFY(silent.listen(QHostAddress(QHostAddress::LocalHost)));
        Status status = OK;
        const auto connection = openConnection(addressAt(silent.serverPort()), 1000, status);
        QVERIFY(connection);
        const QByteArray frame = framed(QByteArray(1024 * 1024, 'x'));
        QElapsedTimer timer;
        bool sent = true;
        for (int i = 0; sent && i < 100; ++i) {
            QVERIFY(connection->isUsable());
            timer.start();
            sent = connection->send(frame, QDeadlineTimer(150));
        }
        QVERIFY(!sent);
        QVERIFY2(timer.elapsed() >= 145 && timer.elapsed() < 1000,
                 qPrintable(QString::number(timer.elapsed())));
        QVERIFY(!connection->isUsable());
        QVERIFY(!connection->send(frame, QDeadlineTimer(150)));
    }

    void connectionWhosePeerHasClosed_isGone()
    {
        auto serving = std::make_unique<Serving>(&longAnswer);
        Status status = OK;
        const auto connection = openConnection(addressAt(serving->port()), 1000, status);
        QVERIFY(connection);
        QVERIFY(connection->send(framed("1"), QDeadlineTimer(1000)));
        QByteArray payload;
        QCOMPARE(int(connection->receive(payload, QDeadlineTimer(1000))), int(OK));
        QCOMPARE(payload.size(), 10000);
        serving.reset();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(int(connection->receive(payload, QDeadlineTimer(2000))), int(ERR_PEER_GONE));
        QVERIFY(timer.elapsed() < 1000);
        QVERIFY(!connection->isUsable());
        QVERIFY(!connection->send(framed("2"), QDeadlineTimer(1000)));
        QCOMPARE(int(connection->receive(payload, QDeadlineTimer(1000))), int(ERR_PEER_GONE));
    }
};

QTEST_GUILESS_MAIN(TstTesselTransport)
#include "tst_tessel_transport.moc"
