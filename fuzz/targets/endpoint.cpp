// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The middleware's serving end, alive on loopback. Each input is what one peer sends; the first byte says in
// which pieces. Whatever comes, it is answered in whole frames, no more than were sent and one that refuses,
// and another peer's call right after it is carried out. Runs in a private instrument, whose loopback is its
// own.
#include <tessel/tessel.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "harness.h"
#include "protocol.h"

namespace {

using namespace tessel;

/// Stands in an input for the service's session, which no corpus can know: a number of nine bytes in CBOR.
constexpr char Placeholder[] = "\x1bSESSION!";
constexpr int PlaceholderSize = 9;
// Longer than an input may take: fuzz/run looks again at what took too long, since a busy machine answers
// late.
constexpr int Patience = 60000; // ms

class Echo : public Service
{
public:
    Echo()
        : Service("fuzz.Echo")
    { }
    int call(const Tuple &request, Tuple &reply) override
    {
        reply = request;
        return request.size();
    }
};

class Peer
{
public:
    /// From an address of its own: one that has closed keeps its address and port busy for a minute.
    explicit Peer(quint16 port)
        : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        static quint32 number = 0;
        number = (number + 1) & 0xffff;
        const int on = 1;
        setsockopt(m_socket, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &on, sizeof on);
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const sockaddr_in own = address(0x7f010000 + number, 0);
        const sockaddr_in other = address(INADDR_LOOPBACK, port);
        FUZZ_VERIFY(bind(m_socket, reinterpret_cast<const sockaddr *>(&own), sizeof own) == 0);
        // The fuzzer's own clock would leave it half done.
        sigset_t clock;
        sigemptyset(&clock);
        sigaddset(&clock, SIGALRM);
        pthread_sigmask(SIG_BLOCK, &clock, nullptr);
        FUZZ_VERIFY(connect(m_socket, reinterpret_cast<const sockaddr *>(&other), sizeof other) == 0);
        pthread_sigmask(SIG_UNBLOCK, &clock, nullptr);
    }
    ~Peer() { close(m_socket); }
    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;

    /// False when the other end has closed, which it may do before it has all.
    bool send(const QByteArray &bytes)
    {
        int sent = 0;
        while (sent < bytes.size()) {
            // What comes back is taken at once: an end whose answers nobody takes stops reading, too.
            const short ready = wait(POLLIN | POLLOUT);
            FUZZ_VERIFY2(ready != 0, QStringLiteral("neither reads nor answers"));
            if ((ready & POLLIN) && !take())
                return false;
            if (!(ready & POLLOUT))
                continue;
            const auto size = ::send(m_socket, bytes.constData() + sent, size_t(bytes.size() - sent),
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
            if (size < 0 && errno != EAGAIN)
                return false;
            sent += size > 0 ? int(size) : 0;
        }
        return true;
    }
    void finish() { shutdown(m_socket, SHUT_WR); }
    /// Waits for the other end to close, or for a whole frame.
    void receive(bool frameOnly)
    {
        while (!(frameOnly && hasFrame())) {
            FUZZ_VERIFY2(wait(POLLIN) != 0, QStringLiteral("no answer and no end"));
            if (!take())
                return;
        }
    }
    QByteArray received;

private:
    static sockaddr_in address(quint32 host, quint16 port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(host);
        address.sin_port = htons(port);
        return address;
    }
    bool hasFrame() const
    {
        return received.size() >= protocol::HeaderSize
            && received.size() >= protocol::HeaderSize + int(protocol::payloadSize(received));
    }
    /// What has come of \p events; 0 when nothing has. The fuzzer's own clock interrupts any waiting.
    short wait(short events) const
    {
        pollfd poller{m_socket, events, 0};
        int ready = 0;
        do {
            ready = poll(&poller, 1, Patience);
        } while (ready < 0 && errno == EINTR);
        return ready == 1 ? poller.revents : short(0);
    }
    bool take()
    {
        char buffer[65536];
        const auto size = recv(m_socket, buffer, sizeof buffer, 0);
        if (size > 0)
            received.append(buffer, int(size));
        return size > 0;
    }
    const int m_socket;
};

quint16 port = 0;
qint64 session = 0;
Peer *honest = nullptr;

/// The honest peer's next answer.
protocol::Message ask(protocol::Message message)
{
    static quint32 number = 0;
    message.number = ++number;
    QByteArray frame;
    FUZZ_VERIFY(protocol::encode(message, frame) == OK);
    honest->received.clear();
    FUZZ_VERIFY(honest->send(frame));
    honest->receive(true);
    protocol::Message answer;
    FUZZ_VERIFY(protocol::decode(honest->received.mid(protocol::HeaderSize), answer) == OK);
    FUZZ_VERIFY(answer.number == number && answer.status >= 0);
    return answer;
}

int wholeFrames(const QByteArray &stream)
{
    int frames = 0;
    for (qint64 at = 0; at + protocol::HeaderSize <= stream.size(); ++frames) {
        at += protocol::HeaderSize + qint64(protocol::payloadSize(stream.mid(int(at), protocol::HeaderSize)));
        if (at > stream.size())
            break;
    }
    return frames;
}

/// The number of answers; each is a whole frame that decodes.
int answersIn(const QByteArray &stream)
{
    int answers = 0;
    for (int at = 0; at < stream.size(); ++answers) {
        const int size = int(protocol::payloadSize(stream.mid(at, protocol::HeaderSize)));
        protocol::Message message;
        FUZZ_VERIFY(protocol::decode(stream.mid(at + protocol::HeaderSize, size), message) == OK);
        FUZZ_VERIFY(message.kind == protocol::Welcome || message.kind == protocol::Reply);
        at += protocol::HeaderSize + size;
    }
    return answers;
}

} // namespace

void fuzz::prepare()
{
    init();
    ServiceManager &manager = ServiceManager::auto_create();
    FUZZ_VERIFY(manager.listen("TCPIP:localhost:0"));
    port = manager.port();
    const PService echo(new Echo);
    echo->set_name("echo");
    FUZZ_VERIFY(echo->publish());
    honest = new Peer(port);
    protocol::Message hello;
    hello.kind = protocol::Hello;
    hello.serviceName = "echo";
    session = ask(hello).session;
}

void fuzz::run(const QByteArray &input)
{
    if (input.isEmpty())
        return;
    QByteArray stream = input.mid(1);
    const int piece = input.at(0) == 0 ? std::max(1, stream.size()) : 16 * quint8(input.at(0));
    protocol::Message call;
    call.kind = protocol::Call;
    call.session = session;
    for (int at = 0; (at = stream.indexOf(Placeholder, at)) >= 0; at += PlaceholderSize) {
        for (int i = 1; i < PlaceholderSize; ++i)
            stream[at + i] = char(session >> (8 * (PlaceholderSize - 1 - i)));
    }

    Peer peer(port);
    for (int at = 0; at < stream.size() && peer.send(stream.mid(at, piece)); at += piece) { }
    peer.finish();
    peer.receive(false);
    FUZZ_VERIFY(answersIn(peer.received) <= wholeFrames(stream) + 1);

    call.tuple.set("text", Value(AString("still there?")));
    const protocol::Message reply = ask(call);
    FUZZ_VERIFY(reply.kind == protocol::Reply && reply.status == 1 && reply.tuple == call.tuple);
}
