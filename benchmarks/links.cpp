// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A call through the middleware beside a raw echo of as many bytes, and a notification on its way to a QML
// binding beside a bare queued signal.
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QThread>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include <arpa/inet.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <benchmark/benchmark.h>
#include <nap/records.h>
#include <tessel/tessel.h>

#include "napobserver.h"

namespace nap = com::halvar::nap;

/// What stands on the interface thread: a property that a binding reads.
class Display : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

public:
    double value() const { return m_value; }
    int received() const { return m_received; }
    void show(double value)
    {
        ++m_received;
        if (std::exchange(m_value, value) != value)
            emit valueChanged();
    }
    void showDetection(const nap::DetectionResult &result) { show(result.get_value()); }

signals:
    void valueChanged();

private:
    double m_value = 0;
    int m_received = 0;
};

/// Emits on the thread it lives on.
class Source : public QObject
{
    Q_OBJECT

signals:
    void measured(double value);
};

namespace {

constexpr int burst = 1000;

class Peer
{
public:
    static Peer &instance()
    {
        static Peer peer;
        return peer;
    }
    bool isRunning() const { return m_servicePort > 0; }
    int servicePort() const { return m_servicePort; }
    int echoPort() const { return m_echoPort; }

private:
    Peer()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--peer")});
        while (!m_process.canReadLine() && m_process.waitForReadyRead(5000)) { }
        const QList<QByteArray> ports = m_process.readLine().simplified().split(' ');
        if (ports.size() == 2) {
            m_servicePort = ports.at(0).toInt();
            m_echoPort = ports.at(1).toInt();
        }
    }
    ~Peer()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    QProcess m_process;
    int m_servicePort = 0;
    int m_echoPort = 0;
};

struct Traffic
{
    quint64 sent = 0;
    quint64 received = 0;
};

// The kernel's count for this process's connection to \p port.
Traffic trafficWith(int port)
{
    const QStringList descriptors =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::System | QDir::Files);
    for (const QString &descriptor : descriptors) {
        const int socket = descriptor.toInt();
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (::getpeername(socket, reinterpret_cast<sockaddr *>(&peer), &size) != 0
            || ntohs(peer.sin_port) != port)
            continue;
        tcp_info info{};
        size = sizeof info;
        if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0)
            return {info.tcpi_bytes_sent, info.tcpi_bytes_received};
    }
    return {};
}

nap::DetectionResult detection(double value)
{
    nap::DetectionResult result;
    result.set_value(value);
    result.set_sigma(0.125);
    result.set_decision(nap::POSITIVE);
    result.set_sourceActivity(37.5);
    return result;
}

tessel::PService echoService()
{
    tessel::init();
    return tessel::Service::bind(tessel::AString(
        QStringLiteral("bench.Echo:echo@TCPIP:localhost:%1").arg(Peer::instance().servicePort())));
}

void call(benchmark::State &state)
{
    const tessel::PService service = Peer::instance().isRunning() ? echoService() : tessel::PService();
    if (!service) {
        state.SkipWithError("no peer");
        return;
    }
    const nap::DetectionResult request = detection(1.5);
    for (auto _ : state) {
        tessel::Tuple reply;
        if (service->call(request, reply) < 0)
            state.SkipWithError("the call failed");
    }
    state.SetItemsProcessed(state.iterations());
}

// Bytes of one call and of its answer.
Traffic trafficOfACall()
{
    const tessel::PService service = echoService();
    if (!service)
        return {};
    const nap::DetectionResult request = detection(1.5);
    tessel::Tuple reply;
    const Traffic before = trafficWith(Peer::instance().servicePort());
    service->call(request, reply);
    const Traffic after = trafficWith(Peer::instance().servicePort());
    return {after.sent - before.sent, after.received - before.received};
}

void echo(benchmark::State &state)
{
    static const Traffic traffic = Peer::instance().isRunning() ? trafficOfACall() : Traffic();
    if (traffic.sent == 0 || traffic.received == 0) {
        state.SkipWithError("no peer, or no count of its traffic");
        return;
    }
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(quint16(Peer::instance().echoPort()));
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const std::array<std::uint32_t, 2> sizes{std::uint32_t(traffic.sent), std::uint32_t(traffic.received)};
    if (::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || ::send(socket, sizes.data(), sizeof sizes, MSG_NOSIGNAL) != ssize_t(sizeof sizes))
        state.SkipWithError("no echo");
    const std::vector<char> request(sizes[0]);
    std::vector<char> reply(sizes[1]);
    for (auto _ : state) {
        if (::send(socket, request.data(), request.size(), MSG_NOSIGNAL) != ssize_t(request.size())
            || ::recv(socket, reply.data(), reply.size(), MSG_WAITALL) != ssize_t(reply.size()))
            state.SkipWithError("the echo failed");
    }
    ::close(socket);
    state.counters["bytes"] = double(traffic.sent + traffic.received);
    state.SetItemsProcessed(state.iterations());
}

/// A thread that stands for the middleware's, and a binding that shows what arrives.
class Bound
{
public:
    Bound()
        : component(&engine)
    {
        engine.rootContext()->setContextProperty(QStringLiteral("display"), &display);
        component.setData("import QtQml 2.2\nQtObject { property string text: display.value.toFixed(2) }",
                          QUrl());
        bound.reset(component.create());
        worker.moveToThread(&thread);
        thread.start();
    }
    ~Bound()
    {
        thread.quit();
        thread.wait();
    }
    // Calls \p emission(value) there, each with another value, until all have been shown here.
    template <class Emission>
    void run(benchmark::State &state, Emission emission)
    {
        int number = 0;
        for (auto _ : state) {
            const int awaited = display.received() + burst;
            QMetaObject::invokeMethod(
                &worker,
                [&number, &emission] {
                    for (int i = 0; i < burst; ++i)
                        emission(++number / 100.0);
                },
                Qt::QueuedConnection);
            while (display.received() < awaited)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        if (!bound || bound->property("text").toString() != QString::number(number / 100.0, 'f', 2))
            state.SkipWithError("the binding does not show the last value");
        state.SetItemsProcessed(state.iterations() * burst);
    }

    Display display;
    QQmlEngine engine;
    QQmlComponent component;
    std::unique_ptr<QObject> bound;
    QThread thread;
    QObject worker;
};

void notification(benchmark::State &state)
{
    Bound bound;
    const tessel::AutoRef<NAPObserver> observer(new NAPObserver);
    QObject::connect(observer->nap_client(), &NAPClient::nap_DetectionResult, &bound.display,
                     &Display::showDetection);
    bound.run(state, [&observer](double value) {
        nap::NotificationMessage message;
        message.set_id("NAP_DETECTION");
        message.set_detection(detection(value));
        observer->onMessage(message);
    });
}

void bareSignal(benchmark::State &state)
{
    Bound bound;
    Source source;
    QObject::connect(&source, &Source::measured, &bound.display, &Display::show);
    bound.run(state, [&source](double value) { emit source.measured(value); });
}

const bool registered = [] {
    benchmark::RegisterBenchmark("link, call of the service:library", call)->UseRealTime();
    benchmark::RegisterBenchmark("link, call of the service:raw TCP echo", echo)->UseRealTime();
    benchmark::RegisterBenchmark("link, notification to a binding:library", notification)->UseRealTime();
    benchmark::RegisterBenchmark("link, notification to a binding:queued signal", bareSignal)->UseRealTime();
    return true;
}();

} // namespace

#include "links.moc"
