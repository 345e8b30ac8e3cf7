// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "transport.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkSession>
#include <QSharedPointer>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTimer>

#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <fcntl.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "framebuffer.h"
#include "protocol.h"
#include "tcpsocket.h"
#include "tessel/description.h"

namespace tessel {

namespace {

constexpr int MostConnections = 64;
constexpr int MostLeaving = 64; // answered for the last time, and about to close
constexpr int FrameTime =
    5000; // ms that a frame may take to come in whole, and a new peer to say what it wants
constexpr int LingerTime = 250; // ms that a peer has to read why it is dropped
constexpr int MostUnread = protocol::HeaderSize + protocol::MaxPayload; // bytes of answers
constexpr int OwnWait = 50; // ms that reading from a caller's connection waits by itself

QHostAddress addressOf(const QByteArray &host)
{
    // Not through the resolver: this name never leaves the machine, whatever its hosts file says.
    if (host == "localhost")
        return QHostAddress(QHostAddress::LocalHost);
    // Nor any other name: asking for one can take longer than any limit of ours.
    return QHostAddress(QString::fromLatin1(host));
}

/// \return how much of \p place it takes.
socklen_t socketAddress(const QHostAddress &host, quint16 port, sockaddr_storage &place)
{
    place = {};
    if (host.protocol() == QAbstractSocket::IPv4Protocol) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(host.toIPv4Address());
        std::memcpy(&place, &address, sizeof address);
        return sizeof address;
    }
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    const Q_IPV6ADDR bytes = host.toIPv6Address();
    std::memcpy(&address.sin6_addr, &bytes, sizeof bytes);
    if (!host.scopeId().isEmpty())
        address.sin6_scope_id = ::if_nametoindex(host.scopeId().toLatin1().constData());
    std::memcpy(&place, &address, sizeof address);
    return sizeof address;
}

class TcpConnection : public Connection
{
public:
    Status open(const Description &address, int milliseconds)
    {
        const QHostAddress host = addressOf(address.host);
        if (host.isNull() || address.port == 0)
            return ERR_REFUSED;
        const QDeadlineTimer deadline(milliseconds);
        // By the caller's thread itself, here and later: two or three system calls for each message instead
        // of six; answers that come too late are read at no other time; and Qt's sockets share objects that
        // are gone while a process ends, which some other thread may do just now.
        sockaddr_storage place;
        const socklen_t size = socketAddress(host, address.port, place);
        const int descriptor = ::socket(place.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        if (descriptor < 0)
            return ERR_REFUSED;
        m_socket = TcpSocket(descriptor);
        const Status status = connectTo(place, size, deadline);
        if (status != OK) {
            m_socket.close();
            return status;
        }
        const timeval wait{0, OwnWait * 1000};
        ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
        ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
        return OK;
    }

    bool send(const QByteArray &frame, const QDeadlineTimer &deadline) override
    {
        if (!isUsable())
            return false;
        int done = 0;
        while (done < frame.size()) {
            int sent = 0;
            const TcpSocket::Result result =
                m_socket.send(frame.constData() + done, frame.size() - done, sent);
            done += sent;
            if (result == TcpSocket::Result::Closed)
                m_socket.close();
            if (result == TcpSocket::Result::Closed
                || (result == TcpSocket::Result::Later && !waitFor(POLLOUT, deadline))) {
                m_halfSent = done > 0;
                return false;
            }
        }
        return true;
    }

    Status receive(QByteArray &payload, const QDeadlineTimer &deadline) override
    {
        for (;;) {
            switch (m_frames.next(payload)) {
            case FrameBuffer::Next::Frame:
                return OK;
            case FrameBuffer::Next::TooLarge:
                return ERR_TOO_LARGE;
            case FrameBuffer::Next::None:
                break;
            }
            const Status status = fill(deadline);
            if (status != OK)
                return status;
        }
    }

    bool isUsable() const override { return m_socket.isOpen() && !m_halfSent; }

private:
    Status connectTo(const sockaddr_storage &place, socklen_t size, const QDeadlineTimer &deadline) const
    {
        int error = 0;
        if (::connect(m_socket.descriptor(), reinterpret_cast<const sockaddr *>(&place), size) != 0) {
            error = errno;
            if (error == EINPROGRESS || error == EINTR) {
                if (!waitFor(POLLOUT, deadline))
                    return ERR_TIMED_OUT;
                socklen_t length = sizeof error;
                if (::getsockopt(m_socket.descriptor(), SOL_SOCKET, SO_ERROR, &error, &length) != 0)
                    error = errno;
            }
        }
        return error == 0 ? OK : error == ETIMEDOUT ? ERR_TIMED_OUT : ERR_REFUSED;
    }
    /// Waits for some more bytes.
    Status fill(const QDeadlineTimer &deadline)
    {
        if (!m_socket.isOpen())
            return ERR_PEER_GONE;
        // Most answers come at once, and then there was no need to ask before reading.
        bool waits = deadline.remainingTime() >= OwnWait;
        for (;;) {
            if (!waits && !waitFor(POLLIN, deadline))
                return ERR_TIMED_OUT;
            switch (m_socket.receive(m_frames, waits)) {
            case TcpSocket::Result::Done:
                return OK;
            case TcpSocket::Result::Closed:
                m_socket.close();
                return ERR_PEER_GONE;
            case TcpSocket::Result::Later:
                waits = false;
                break;
            }
        }
    }

    bool waitFor(short events, const QDeadlineTimer &deadline) const
    {
        pollfd descriptor{m_socket.descriptor(), events, 0};
        for (;;) {
            const int ready = ::poll(&descriptor, 1, static_cast<int>(deadline.remainingTime()));
            if (ready >= 0 || errno != EINTR)
                return ready > 0;
        }
    }

    TcpSocket m_socket;
    FrameBuffer m_frames;
    bool m_halfSent = false;
};

/// One accepted connection: collects frames, hands them to the handler, writes the answers. Deletes itself.
class ServedConnection : public QObject
{
public:
    ServedConnection(int descriptor, const Handler &handler, QObject *parent)
        : QObject(parent)
        , m_socket(descriptor)
        , m_handler(handler)
        , m_readable(descriptor, QSocketNotifier::Read)
        , m_writable(descriptor, QSocketNotifier::Write)
    {
        m_writable.setEnabled(false);
        m_frameTimer.setSingleShot(true);
        connect(&m_readable, &QSocketNotifier::activated, this, &ServedConnection::read);
        connect(&m_writable, &QSocketNotifier::activated, this, &ServedConnection::write);
        // A peer that says nothing, sends a frame by drops or does not take its answers holds its place no
        // longer.
        connect(&m_frameTimer, &QTimer::timeout, this, &ServedConnection::end);
        m_frameTimer.start(FrameTime);
    }

    bool knowsPeer() const { return m_knowsPeer; }
    bool isEnded() const { return m_ended; }
    bool isLeaving() const { return m_leaving; }

    /// Says why, and goes.
    void refuse(Status status) { answer(m_handler(status, QByteArray())); }

    /// Nothing more is read or written.
    void end()
    {
        if (m_ended)
            return;
        m_ended = true;
        m_readable.setEnabled(false);
        m_writable.setEnabled(false);
        m_socket.close();
        if (!m_serving)
            deleteLater();
    }

private:
    void read()
    {
        if (m_ended)
            return;
        if (m_serving) {
            // The service waits in an event loop of its own, in which more arrives: that is for afterwards.
            m_readable.setEnabled(false);
            return;
        }
        switch (m_socket.receive(m_frames)) {
        case TcpSocket::Result::Closed:
            endWhenRead();
            return;
        case TcpSocket::Result::Later:
            return;
        case TcpSocket::Result::Done:
            break;
        }
        if (m_leaving) {
            m_frames.clear();
            return;
        }
        m_serving = true;
        serve();
        m_serving = false;
        if (m_ended)
            deleteLater();
        else
            m_readable.setEnabled(true);
    }

    void serve()
    {
        QByteArray payload;
        for (;;) {
            switch (m_frames.next(payload)) {
            case FrameBuffer::Next::TooLarge:
                answer(m_handler(ERR_TOO_LARGE, QByteArray()));
                return;
            case FrameBuffer::Next::None:
                if ((!m_frames.isEmpty() || !m_knowsPeer) && !m_frameTimer.isActive())
                    m_frameTimer.start(FrameTime);
                return;
            case FrameBuffer::Next::Frame:
                m_frameTimer.stop();
                answer(m_handler(OK, payload));
                break;
            }
            if (m_leaving || m_ended)
                return;
            if (m_unsent.size() > MostUnread) {
                end();
                return;
            }
        }
    }

    void answer(const Answer &answer)
    {
        if (m_ended)
            return;
        m_knowsPeer = m_knowsPeer || answer.knowsPeer;
        if (!answer.keepsConnection) {
            // Closing with bytes unread would take the answer back before the peer has seen it.
            m_leaving = true;
            m_frames.clear();
            m_frameTimer.start(LingerTime);
        }
        int sent = 0;
        if (m_unsent.isEmpty() && !answer.frame.isEmpty()
            && m_socket.send(answer.frame.constData(), answer.frame.size(), sent)
                == TcpSocket::Result::Closed) {
            end();
            return;
        }
        if (sent < answer.frame.size()) {
            m_unsent += answer.frame.mid(sent);
            m_writable.setEnabled(true);
        }
    }

    void write()
    {
        if (m_ended)
            return;
        int sent = 0;
        if (m_socket.send(m_unsent.constData(), m_unsent.size(), sent) == TcpSocket::Result::Closed) {
            end();
            return;
        }
        m_unsent.remove(0, sent);
        if (!m_unsent.isEmpty())
            return;
        m_writable.setEnabled(false);
        if (!m_readable.isEnabled())
            end();
    }

    /// The peer has said all that it wants to say, but may still be reading.
    void endWhenRead()
    {
        if (m_unsent.isEmpty()) {
            end();
            return;
        }
        m_readable.setEnabled(false);
        m_frameTimer.start(FrameTime);
    }

    TcpSocket m_socket;
    const Handler &m_handler;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
    FrameBuffer m_frames;
    QByteArray m_unsent;
    QTimer m_frameTimer;
    bool m_knowsPeer = false;
    bool m_serving = false;
    bool m_leaving = false; // answered for the last time
    bool m_ended = false; // about to be deleted
};

class TcpEndpoint : public Endpoint, private QTcpServer
{
public:
    explicit TcpEndpoint(Handler handler)
        : m_handler(std::move(handler))
    {
        setProxy(QNetworkProxy::NoProxy);
    }

    bool open(const Description &address)
    {
        const QHostAddress host = addressOf(address.host);
        if (host.isNull() || !listen(host, address.port))
            return false;
        // Qt lets 50 wait to be accepted; one more, and the system makes it try again a second later.
        ::listen(static_cast<int>(socketDescriptor()), MostConnections * 4);
        return true;
    }

    quint16 port() const override { return serverPort(); }

private:
    void incomingConnection(qintptr descriptor) override
    {
        const bool isWelcome = hasRoom();
        auto *const connection =
            new ServedConnection(static_cast<int>(descriptor), m_handler, &m_connections);
        if (!isWelcome)
            connection->refuse(ERR_REFUSED);
    }

    /// For one more. Where all places are taken, the one goes that has been here for longest without saying
    /// what it wants.
    bool hasRoom()
    {
        ServedConnection *stranger = nullptr;
        ServedConnection *leaver = nullptr;
        int taken = 0;
        int leaving = 0;
        const QObjectList connections = m_connections.children(); // oldest first
        for (QObject *child : connections) {
            auto *connection = static_cast<ServedConnection *>(child);
            if (connection->isEnded())
                continue;
            // One that was answered for the last time takes no place, or each that is refused would be the
            // stranger that lets the next one in.
            if (connection->isLeaving()) {
                ++leaving;
                if (!leaver)
                    leaver = connection;
                continue;
            }
            ++taken;
            if (!stranger && !connection->knowsPeer())
                stranger = connection;
        }
        if (leaving >= MostLeaving)
            leaver->end();
        if (taken < MostConnections)
            return true;
        if (stranger)
            stranger->end();
        return stranger;
    }

    const Handler m_handler;
    QObject m_connections; // their parent
};

} // namespace

void prepareTransport()
{
    // Qt Network registers this type where it first needs it; two threads that do so at the same time make it
    // warn.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qRegisterMetaType<QSharedPointer<QNetworkSession>>();
    QT_WARNING_POP
}

std::unique_ptr<Connection> openConnection(const Description &address, int milliseconds, Status &status)
{
    auto connection = std::make_unique<TcpConnection>();
    status = connection->open(address, milliseconds);
    if (status != OK)
        return nullptr;
    return connection;
}

bool reaches(const Description &address, const Description &endpoint)
{
    if (address.port != endpoint.port)
        return false;
    const QHostAddress to = addressOf(address.host);
    const QHostAddress at = addressOf(endpoint.host);
    return to == at
        || (at == QHostAddress(QHostAddress::AnyIPv4) && to == QHostAddress(QHostAddress::LocalHost))
        || (at == QHostAddress(QHostAddress::AnyIPv6) && to == QHostAddress(QHostAddress::LocalHostIPv6));
}

std::unique_ptr<Endpoint> openEndpoint(const Description &address, Handler handler)
{
    auto endpoint = std::make_unique<TcpEndpoint>(std::move(handler));
    if (!endpoint->open(address))
        return nullptr;
    return endpoint;
}

} // namespace tessel
