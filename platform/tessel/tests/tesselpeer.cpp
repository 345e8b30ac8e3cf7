// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// tesselpeer serve [PORT] | MODE PORT: another process for the tests, which serves, or ends in one of the
// ways in which programs end. Whatever the middleware does wrong at the end shows in its exit status or on
// stderr.
#include <QCoreApplication>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "testtessel.h"

using namespace tessel;

namespace {

/// The beginning of a message; the name follows.
const QByteArray WhoIsThere = QByteArray::fromHex("8401016e") + "test.Interface";

PService *published = nullptr;

int serveCall(const Tuple &request, Tuple &reply)
{
    if (request.class_name() == "sleep") {
        QThread::msleep(static_cast<unsigned long>(request.get("ms").toInt()));
        reply = request;
        return 2;
    }
    if (request.class_name() == "exit")
        std::exit(0);
    if (request.class_name() == "die")
        std::_Exit(9);
    if (request.class_name() == "status")
        return request.get("status").toInt();
    if (request.class_name() == "large") {
        reply.set("text", Value(AString(QByteArray(2 * 1024 * 1024, 'x'))));
        return 1;
    }
    if (request.class_name() == "republish") {
        *published = publishService("peer", &serveCall);
        return 1;
    }
    if (request.class_name() == "publish again") {
        (*published)->publish();
        return 1;
    }
    if (request.class_name() == "close") {
        ServiceManager::auto_create().close();
        return 1;
    }
    return echo(request, reply);
}

AString peerAt(const char *port)
{
    return AString(QByteArray("test.Interface:peer@TCPIP:localhost:") + port);
}

int callOnce(const PService &peer)
{
    Tuple reply;
    return peer ? peer->call(Tuple("echo"), reply) : -1;
}

int serve(QCoreApplication &app, const char *port)
{
    PService service = publishService("peer", &serveCall);
    // cppcheck-suppress danglingLifetime ; used by what the loop below calls only
    published = &service;
    ServiceManager &manager = ServiceManager::auto_create();
    if (!manager.listen(AString(QByteArray("TCPIP:localhost:") + port)))
        return 2;
    std::printf("%d\n", manager.port());
    std::fflush(stdout);
    return app.exec();
}

/// What a service uses, and what is destroyed when the process ends.
struct Resource
{
    std::atomic<bool> isDestroyed{false};
    ~Resource()
    {
        isDestroyed = true;
        QThread::msleep(30); // the requests go on coming
    }
};

/// A service of this process that is called all the time while the process ends, and calls of another one.
void keepCalling(const char *port)
{
    static Resource resource;
    publishService("busy", [](const Tuple &, Tuple &) {
        if (resource.isDestroyed)
            std::_Exit(5);
        return 1;
    });
    ServiceManager &manager = ServiceManager::auto_create();
    if (!manager.listen("TCPIP:localhost:0"))
        std::_Exit(2);
    static const std::string peerPort(port);
    std::thread([] {
        const PService peer = Service::bind(peerAt(peerPort.c_str()));
        for (;;)
            callOnce(peer);
    }).detach();
    // From outside, over the wire.
    static std::atomic<int> answered{0};
    const quint16 own = manager.port();
    std::thread([own] {
        RawPeer raw(own);
        // The session is the last element, in eight bytes.
        raw.send(framed(WhoIsThere + QByteArray::fromHex("64") + "busy"));
        const QByteArray session = raw.receive().right(9);
        do {
            raw.send(framed(QByteArray::fromHex("840302") + session + QByteArray::fromHex("82617880")));
            ++answered;
        } while (!raw.receive().isEmpty());
    }).detach();
    while (answered < 10)
        QThread::msleep(5);
}

struct CallsAtTheVeryEnd
{
    PService peer;
    ~CallsAtTheVeryEnd()
    {
        // The connections are closed by now, and no new one can be made.
        if (callOnce(peer) != ERR_PEER_GONE || Service::bind(AString("peer@TCPIP:localhost:1")))
            std::_Exit(4);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return 64;
    const QByteArray mode(argv[1]);
    const char *const port = argc > 2 ? argv[2] : "0";
    if (mode == "no-application") {
        tessel::init();
        const PService peer = Service::bind(peerAt(port));
        publishService("own", &echo); // to listen, an application is needed
        return callOnce(peer) == 1 ? 0 : 3;
    }

    auto app = std::make_unique<QCoreApplication>(argc, argv);
    tessel::init();
    if (mode == "serve")
        return serve(*app, port);
    if (mode == "return") {
        keepCalling(port);
        return 0;
    }
    if (mode == "return-amid-binding") {
        static Resource resource;
        static std::atomic<int> bound{0};
        static const std::string peerPort(port);
        std::thread([] {
            for (;; ++bound)
                callOnce(Service::bind(peerAt(peerPort.c_str())));
        }).detach();
        while (bound < 5)
            QThread::msleep(1);
        return 0;
    }
    if (mode == "exit") {
        keepCalling(port);
        QTimer::singleShot(0, [] { std::exit(0); });
        return app->exec();
    }
    if (mode == "exit-in-other-thread") {
        keepCalling(port);
        std::thread([] { std::exit(0); }).join();
        return 3;
    }
    if (mode == "application-gone") {
        const PService peer = Service::bind(peerAt(port));
        keepCalling(port);
        app.reset();
        ServiceManager::auto_create().close();
        if (ServiceManager::auto_create().listen("TCPIP:localhost:0"))
            return 4;
        const PService again = Service::bind(peerAt(port));
        return callOnce(peer) == 1 && callOnce(again) == 1 ? 0 : 3;
    }
    if (mode == "next-application") {
        publishService("own", &echo);
        ServiceManager &manager = ServiceManager::auto_create();
        if (!manager.listen("TCPIP:localhost:0"))
            return 4;
        const quint16 own = manager.port();
        const AString address(QByteArray("TCPIP:localhost:") + QByteArray::number(own));
        for (int round = 0; round < 3; ++round) {
            RawPeer raw(own);
            raw.send(framed(WhoIsThere + QByteArray::fromHex("63") + "own"));
            if (raw.receive().isEmpty())
                return 5;
            // The connections end with the application, while it is still there to end them.
            app.reset();
            if (!raw.waitForClosed(2000))
                return 6;
            app = std::make_unique<QCoreApplication>(argc, argv);
            if (!manager.listen(address))
                return 7;
        }
        return 0;
    }
    if (mode == "call-from-a-static") {
        static CallsAtTheVeryEnd late;
        late.peer = Service::bind(peerAt(port));
        return callOnce(late.peer) == 1 ? 0 : 3;
    }
    if (mode == "listen-at-the-end") {
        struct ListensAtTheVeryEnd
        {
            ~ListensAtTheVeryEnd()
            {
                ServiceManager &manager = ServiceManager::auto_create();
                manager.close();
                if (manager.listen("TCPIP:localhost:0"))
                    std::_Exit(4);
            }
        };
        static ListensAtTheVeryEnd late;
        Q_UNUSED(late)
        publishService("own", &echo);
        return ServiceManager::auto_create().listen("TCPIP:localhost:0") ? 0 : 3;
    }
    return 64;
}
