// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A call through the middleware beside a raw echo of as many bytes: half of the calls take no longer than the
// figure. Both ends of each share one processor.
#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <vector>

#include <arpa/inet.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zmq.h>

#include <benchmark/benchmark.h>
#include <nap/records.h>
#include <tessel/tessel.h>

#include "core.h"
#include "goals.h"
#include "quantile.h"

namespace nap = com::halvar::nap;

namespace {

constexpr int batch = 1000; // calls, of which one figure comes

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
    int zeroMqPort() const { return m_zeroMqPort; }

private:
    Peer()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--peer")});
        while (!m_process.canReadLine() && m_process.waitForReadyRead(5000)) { }
        const QList<QByteArray> ports = m_process.readLine().simplified().split(' ');
        if (ports.size() == 3) {
            m_servicePort = ports.at(0).toInt();
            m_echoPort = ports.at(1).toInt();
            m_zeroMqPort = ports.at(2).toInt();
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
    int m_zeroMqPort = 0;
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

nap::DetectionResult detection()
{
    nap::DetectionResult result;
    result.set_value(1.5);
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

/// Bytes of one call and of its answer. The number of a call grows: this one's takes as many bytes as those
/// of most that follow.
Traffic trafficOfACall()
{
    const tessel::PService service = echoService();
    if (!service)
        return {};
    const nap::DetectionResult request = detection();
    tessel::Tuple reply;
    for (int i = 0; i < 300; ++i)
        service->call(request, reply);
    const Traffic before = trafficWith(Peer::instance().servicePort());
    service->call(request, reply);
    const Traffic after = trafficWith(Peer::instance().servicePort());
    return {after.sent - before.sent, after.received - before.received};
}

const Traffic &traffic()
{
    static const Traffic ofACall = Peer::instance().isRunning() ? trafficOfACall() : Traffic();
    return ofACall;
}

/// Times each \p exchange by itself.
template <class Exchange>
void time(benchmark::State &state, Exchange exchange)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> seconds(batch);
    for (auto _ : state) {
        Clock::time_point before = Clock::now();
        for (double &taken : seconds) {
            if (!exchange()) {
                state.SkipWithError("an exchange failed");
                return;
            }
            const Clock::time_point after = Clock::now();
            taken = std::chrono::duration<double>(after - before).count();
            before = after;
        }
        state.SetIterationTime(quantile(seconds, 0.5));
    }
    state.counters["bytes"] = double(traffic().sent + traffic().received);
}

bool isReady(benchmark::State &state, const OneCore &core)
{
    if (!core.isPinned())
        state.SkipWithError("no processor of its own");
    else if (traffic().sent == 0 || traffic().received == 0)
        state.SkipWithError("no peer, or no count of its traffic");
    else
        return true;
    return false;
}

void call(benchmark::State &state)
{
    const OneCore core;
    if (!isReady(state, core))
        return;
    const tessel::PService service = echoService();
    if (!service) {
        state.SkipWithError("no service");
        return;
    }
    const nap::DetectionResult request = detection();
    time(state, [&service, &request] {
        tessel::Tuple reply;
        return service->call(request, reply) == 1 && reply.size() == request.size();
    });
}

void echo(benchmark::State &state)
{
    const OneCore core;
    if (!isReady(state, core))
        return;
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(quint16(Peer::instance().echoPort()));
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const std::array<std::uint32_t, 2> sizes{std::uint32_t(traffic().sent),
                                             std::uint32_t(traffic().received)};
    if (::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || ::send(socket, sizes.data(), sizeof sizes, MSG_NOSIGNAL) != ssize_t(sizeof sizes))
        state.SkipWithError("no echo");
    const std::vector<char> request(sizes[0]);
    std::vector<char> reply(sizes[1]);
    time(state, [socket, &request, &reply] {
        return ::send(socket, request.data(), request.size(), MSG_NOSIGNAL) == ssize_t(request.size())
            && ::recv(socket, reply.data(), reply.size(), MSG_WAITALL) == ssize_t(reply.size());
    });
    ::close(socket);
}

void zeroMq(benchmark::State &state)
{
    const OneCore core;
    if (!isReady(state, core))
        return;
    void *const context = zmq_ctx_new();
    void *const socket = zmq_socket(context, ZMQ_REQ);
    const QByteArray address = "tcp://127.0.0.1:" + QByteArray::number(Peer::instance().zeroMqPort());
    if (zmq_connect(socket, address.constData()) != 0)
        state.SkipWithError("no ZeroMQ");
    // The first bytes say how many are wanted back.
    std::vector<char> request(traffic().sent);
    const auto wanted = std::uint32_t(traffic().received);
    std::memcpy(request.data(), &wanted, sizeof wanted);
    std::vector<char> reply(wanted);
    time(state, [socket, &request, &reply] {
        return zmq_send(socket, request.data(), request.size(), 0) == int(request.size())
            && zmq_recv(socket, reply.data(), reply.size(), 0) == int(reply.size());
    });
    zmq_close(socket);
    zmq_ctx_destroy(context);
}

const bool registered = [] {
    benchmark::RegisterBenchmark("link, call of the service:library", call)->UseManualTime()->Iterations(1);
    benchmark::RegisterBenchmark("link, call of the service:raw TCP echo", echo)
        ->UseManualTime()
        ->Iterations(1);
    benchmark::RegisterBenchmark("link, call of the service:ZeroMQ request and reply", zeroMq)
        ->UseManualTime()
        ->Iterations(1);

    goal("link, call of the service", "raw TCP echo", 1.6);
    return true;
}();

} // namespace
