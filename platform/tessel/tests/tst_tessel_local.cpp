// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTcpServer>
#include <QTest>

#include <thread>

#include "peerprocess.h"
#include "testtessel.h"

using namespace tessel;

namespace {

AString at(const char *name, quint16 port, const char *host = "localhost")
{
    return AString(QByteArray(name) + "@TCPIP:" + host + ':' + QByteArray::number(port));
}

/// Where the kernel says that somebody listens on the port, as it writes addresses.
QList<QByteArray> listenersOn(quint16 port)
{
    const QByteArray suffix = ':' + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
    QList<QByteArray> addresses;
    for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile file(QString::fromLatin1(table));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            const QList<QByteArray> columns = line.simplified().split(' ');
            constexpr char listening[] = "0A";
            if (columns.size() > 3 && columns.at(1).endsWith(suffix) && columns.at(3) == listening)
                addresses << columns.at(1).left(columns.at(1).size() - suffix.size());
        }
    }
    return addresses;
}

QString contextService()
{
    Tuple context;
    return Service::save_session_context(context) ? context.get("service").toAString().toString()
                                                  : QStringLiteral("none");
}

} // namespace

class TstTesselLocal : public QObject
{
    Q_OBJECT

    ServiceManager *m_manager = nullptr;

private slots:
    void initTestCase()
    {
        tessel::init();
        m_manager = &ServiceManager::auto_create();
        QCOMPARE(&ServiceManager::auto_create(), m_manager);
    }

    void init()
    {
        Service::clear_session_context();
        QVERIFY(m_manager->listen("TCPIP:localhost:0"));
        QVERIFY(m_manager->port() != 0);
    }

    void cleanup() { m_manager->close(); }

    void localhost_isListenedToOnLoopbackOnly()
    {
        QCOMPARE(listenersOn(m_manager->port()), QList<QByteArray>{"0100007F"});
    }

    void otherAddresses_areListenedToWhenAskedFor()
    {
        QVERIFY(m_manager->listen("TCPIP:0.0.0.0:0"));
        QCOMPARE(listenersOn(m_manager->port()), QList<QByteArray>{"00000000"});
        QVERIFY(m_manager->listen("TCPIP:127.0.0.2:0"));
        QCOMPARE(listenersOn(m_manager->port()), QList<QByteArray>{"0200007F"});
    }

    void listeningWhereTheProcessListens_isTrueAndOpensNothing()
    {
        const quint16 port = m_manager->port();
        QVERIFY(m_manager->listen(AString("TCPIP:localhost:" + QByteArray::number(port))));
        QCOMPARE(listenersOn(port).size(), 1);
        QCOMPARE(m_manager->port(), port);
    }

    void listeningWhereSomebodyElseListens_isFalse()
    {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress(QHostAddress::LocalHost)));
        QVERIFY(!m_manager->listen(AString("TCPIP:localhost:" + QByteArray::number(other.serverPort()))));
    }

    void listeningToNoAddress_isFalse()
    {
        for (const char *address :
             {"", "TCPIP", "TCPIP:localhost", "UDP:localhost:1", "TCPIP:localhost:65536",
              "nap_server@TCPIP:localhost:0", "TCPIP:198.51.100.1:0", "TCPIP:no.such:0"})
            QVERIFY2(!m_manager->listen(address), address);
    }

    void closing_freesThePortAndItCanBeOpenedAgain()
    {
        const quint16 port = m_manager->port();
        m_manager->close();
        QCOMPARE(m_manager->port(), quint16(0));
        QCOMPARE(listenersOn(port).size(), 0);
        QVERIFY(m_manager->listen(AString("TCPIP:localhost:" + QByteArray::number(port))));
        QCOMPARE(listenersOn(port).size(), 1);
    }

    void serviceOfThisProcess_isItself()
    {
        const PService service = publishService("own", &echo);
        QVERIFY(Service::bind(at("own", m_manager->port())) == service);
        QVERIFY(Service::bind(at("test.Interface:own", m_manager->port(), "127.0.0.1")) == service);
        QVERIFY(!Service::bind(at("test.Other:own", m_manager->port())));
        service->unpublish();
        QVERIFY(!Service::bind(at("own", m_manager->port())));
    }

    void anEndpointForEveryAddress_isReachedThroughLoopback()
    {
        QVERIFY(m_manager->listen("TCPIP:0.0.0.0:0"));
        const PService service = publishService("own", &echo);
        QVERIFY(Service::bind(at("own", m_manager->port())) == service);
        service->unpublish();
    }

    void askingForAnAbsentServiceOfThisProcess_isEmptyAtOnce_alsoOnTheDispatchThread()
    {
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!Service::bind(at("nobody", m_manager->port())));
        std::atomic<qint64> took{-1};
        const quint16 port = m_manager->port();
        const PService asking = publishService("asking", [&took, port](const Tuple &, Tuple &) {
            QElapsedTimer inside;
            inside.start();
            const bool found = bool(Service::bind(at("nobody", port, "127.0.0.1")));
            took = inside.elapsed();
            return found ? 0 : 1;
        });
        RawPeer raw(port);
        raw.send(framed(QByteArray::fromHex("8401016e") + "test.Interface"
                        + "\x66"
                          "asking"));
        const QByteArray welcome = raw.receive();
        QVERIFY(welcome.size() > 9);
        // Its session is the last element, in eight bytes: a call in it.
        raw.send(framed(QByteArray::fromHex("840302") + welcome.right(9) + QByteArray::fromHex("82617880")));
        QCOMPARE(raw.receive(), QByteArray::fromHex("84040201826080"));
        QVERIFY(took >= 0 && took < 500);
        QVERIFY(timer.elapsed() < 2000);
        asking->unpublish();
    }

    void publishing_needsAName()
    {
        const PService service(new TestService(&echo));
        QVERIFY(!service->publish());
        service->set_name("named");
        QVERIFY(service->publish());
        service->unpublish();
    }

    void publishingTheSameInterfaceAndName_replacesTheOneBefore()
    {
        const PService first = publishService("same", &echo);
        const PService other = publishService("same", &echo, "test.Other");
        const PService second = publishService("same", &echo);
        QVERIFY(Service::bind(at("test.Interface:same", m_manager->port())) == second);
        QVERIFY(Service::bind(at("test.Other:same", m_manager->port())) == other);
        first->unpublish(); // is not published any more
        QVERIFY(Service::bind(at("test.Interface:same", m_manager->port())) == second);
        second->unpublish();
        other->unpublish();
    }

    void publishingAgain_keepsTheServicesProxies()
    {
        const PService service = publishService("again", &echo);
        QVERIFY(service->publish());
        QVERIFY(Service::bind(at("again", m_manager->port())) == service);
        service->unpublish();
        QVERIFY(!Service::bind(at("again", m_manager->port())));
    }

    void manager_ownsWhatIsPublished()
    {
        struct Counting : TestService
        {
            explicit Counting(std::atomic<int> &alive)
                : TestService(&echo)
                , m_alive(alive)
            {
                ++m_alive;
            }
            ~Counting() override { --m_alive; }
            std::atomic<int> &m_alive;
        };
        std::atomic<int> alive{0};
        auto *service = new Counting(alive);
        service->set_name("counted");
        service->publish();
        QCOMPARE(alive.load(), 1);
        service->unpublish();
        QCOMPARE(alive.load(), 0);
        for (int i = 0; i < 2; ++i) {
            auto *next = new Counting(alive);
            next->set_name("counted");
            next->publish();
            QCOMPARE(alive.load(), 1);
        }
        const PService bound = Service::bind(at("counted", m_manager->port()));
        bound->unpublish();
        QCOMPARE(alive.load(), 1);
    }

    void baseService_implementsNothing()
    {
        struct Bare : Service
        {
            Bare()
                : Service("test.Bare")
            { }
        };
        const PService bare(new Bare);
        Tuple reply;
        QCOMPARE(bare->call(Tuple("any"), reply), -1000014);
    }

    void directCall_setsTheServicesContextWhereThereIsNone_andItStays()
    {
        const PService service = publishService("direct", &echo);
        QCOMPARE(contextService(), QStringLiteral("none"));
        {
            const SessionContextScope scope(*service);
            QCOMPARE(contextService(), QStringLiteral("direct"));
        }
        QCOMPARE(contextService(), QStringLiteral("direct"));
        service->unpublish();
    }

    void directCall_keepsTheCallersContextAndPutsItBack()
    {
        const PService service = publishService("direct", &echo);
        Tuple own("context");
        own.set("service", Value(AString("caller")));
        Service::set_session_context(own);
        {
            const SessionContextScope scope(*service);
            QCOMPARE(contextService(), QStringLiteral("caller"));
            Service::set_session_context(Tuple("changed by the operation"));
        }
        QCOMPARE(contextService(), QStringLiteral("caller"));
        service->unpublish();
    }

    void context_belongsToItsThread()
    {
        Service::set_session_context(Tuple("mine"));
        QString other;
        std::thread([&] { other = contextService(); }).join();
        QCOMPARE(other, QStringLiteral("none"));
    }

    void requests_findTheirServicesContext_oneAtATimeOnTheDispatchThread()
    {
        std::atomic<int> atWork{0};
        std::atomic<int> most{0};
        QMutex mutex;
        QStringList contexts;
        QSet<QThread *> threads;
        const PService service = publishService("served", [&](const Tuple &, Tuple &) {
            most = qMax(most.load(), ++atWork);
            {
                const QMutexLocker lock(&mutex);
                contexts << contextService();
                threads << QThread::currentThread();
            }
            QThread::msleep(2);
            --atWork;
            return 1;
        });
        std::vector<std::thread> callers;
        for (int i = 0; i < 4; ++i) {
            callers.emplace_back([port = m_manager->port()] {
                RawPeer raw(port);
                raw.send(framed(QByteArray::fromHex("8401016e") + "test.Interface"
                                + "\x66"
                                  "served"));
                const QByteArray session = raw.receive().right(9);
                for (int n = 0; n < 5; ++n) {
                    raw.send(
                        framed(QByteArray::fromHex("840302") + session + QByteArray::fromHex("82617880")));
                    raw.receive();
                }
            });
        }
        for (std::thread &caller : callers)
            caller.join();
        service->unpublish();
        QCOMPARE(most.load(), 1);
        QCOMPARE(contexts.size(), 20);
        QCOMPARE(contexts.count(QStringLiteral("served")), 20);
        QCOMPARE(threads.size(), 1);
        QVERIFY(!threads.contains(QThread::currentThread()));
    }

    void tearDownWhileRequestsAreInFlight_isSafe()
    {
        for (int round = 0; round < 20; ++round) {
            auto value = std::make_unique<int>(round);
            std::atomic<bool> ends{false};
            PService service = publishService("flying", [&value](const Tuple &, Tuple &) { return *value; });
            std::thread caller([&ends, port = m_manager->port()] {
                RawPeer raw(port);
                raw.send(framed(QByteArray::fromHex("8401016e") + "test.Interface"
                                + "\x66"
                                  "flying"));
                const QByteArray session = raw.receive().right(9);
                while (!ends && raw.isConnected()) {
                    raw.send(
                        framed(QByteArray::fromHex("840302") + session + QByteArray::fromHex("82617880")));
                    if (raw.receive(200).isEmpty())
                        break;
                }
            });
            QThread::msleep(5);
            service->unpublish();
            service.reset();
            m_manager->close(); // comes back when no request is at work any more
            value.reset();
            ends = true;
            caller.join();
            QVERIFY(m_manager->listen("TCPIP:localhost:0"));
        }
    }
};

QTEST_GUILESS_MAIN(TstTesselLocal)
#include "tst_tessel_local.moc"
