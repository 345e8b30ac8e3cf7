// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "transport.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkSession>
#include <QSharedPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <sys/socket.h>

#include "protocol.h"
#include "tessel/description.h"

namespace tessel {

namespace {

constexpr int MostConnections = 64;
constexpr int MostLeaving = 64; // answered for the last time, and about to close
constexpr int FrameTime =
    5000; // ms that a frame may take to come in whole, and a new peer to say what it wants
constexpr int LingerTime = 250; // ms that a peer has to read why it is dropped
constexpr int BufferSize = protocol::HeaderSize + protocol::MaxPayload;

QHostAddress addressOf(const QByteArray &host)
{
    // Not through the resolver: this name never leaves the machine, whatever its hosts file says.
    if (host == "localhost")
        return QHostAddress(QHostAddress::LocalHost);
    // Nor any other name: asking for one can take longer than any limit of ours.
    return QHostAddress(QString::fromLatin1(host));
}

int remaining(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

class TcpConnection : public Connection
{
public:
    Status open(const Description &address, int milliseconds)
    {
        const QHostAddress host = addressOf(address.host);
        if (host.isNull() || address.port == 0)
            return ERR_REFUSED;
        m_socket.setProxy(QNetworkProxy::NoProxy);
        m_socket.setReadBufferSize(BufferSize);
        m_socket.connectToHost(host, address.port);
        if (!m_socket.waitForConnected(milliseconds)) {
            return m_socket.error() == QAbstractSocket::SocketTimeoutError ? ERR_TIMED_OUT : ERR_REFUSED;
        }
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        return OK;
    }

    bool send(const QByteArray &frame, int milliseconds) override
    {
        const QDeadlineTimer deadline(milliseconds);
        if (m_socket.state() != QAbstractSocket::ConnectedState || m_socket.write(frame) != frame.size())
            return false;
        m_socket.flush();
        while (m_socket.bytesToWrite() > 0) {
            if (deadline.hasExpired() || !m_socket.waitForBytesWritten(remaining(deadline)))
                return false;
        }
        return true;
    }

    Status receive(QByteArray &payload, int milliseconds) override
    {
        const QDeadlineTimer deadline(milliseconds);
        if (!await(protocol::HeaderSize, deadline))
            return failure();
        const quint32 size = protocol::payloadSize(m_socket.peek(protocol::HeaderSize));
        if (size > protocol::MaxPayload)
            return ERR_TOO_LARGE;
        if (!await(protocol::HeaderSize + int(size), deadline))
            return failure();
        m_socket.skip(protocol::HeaderSize);
        payload = m_socket.read(size);
        return OK;
    }

    bool isUsable() const override
    {
        return m_socket.state() == QAbstractSocket::ConnectedState && m_socket.bytesToWrite() == 0;
    }

private:
    bool await(int bytes, const QDeadlineTimer &deadline)
    {
        while (m_socket.bytesAvailable() < bytes) {
            if (!m_socket.waitForReadyRead(remaining(deadline)) && m_socket.bytesAvailable() < bytes)
                return false;
        }
        return true;
    }

    Status failure() const
    {
        return m_socket.state() == QAbstractSocket::ConnectedState ? ERR_TIMED_OUT : ERR_PEER_GONE;
    }

    QTcpSocket m_socket;
};

/// One accepted connection: collects frames, hands them to the handler, writes the answers. Deletes itself.
class ServedConnection : public QObject
{
public:
    ServedConnection(QTcpSocket *socket, const Handler &handler, QObject *parent)
        : QObject(parent)
        , m_socket(socket)
        , m_handler(handler)
    {
        m_socket->setParent(this);
        m_socket->setReadBufferSize(BufferSize);
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_frameTimer.setSingleShot(true);
        connect(m_socket, &QTcpSocket::readyRead, this, &ServedConnection::serve);
        connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
        // A peer that says nothing, sends a frame by drops or does not take its answers holds its place no
        // longer.
        connect(&m_frameTimer, &QTimer::timeout, m_socket, &QTcpSocket::abort);
        m_frameTimer.start(FrameTime);
    }

    bool knowsPeer() const { return m_knowsPeer; }
    bool isDropped() const { return m_dropped; }
    bool isLeaving() const { return m_leaving; }
    void drop()
    {
        m_dropped = true;
        m_socket->abort();
    }

    /// Says why, and goes.
    void refuse(Status status) { answer(m_handler(status, QByteArray())); }

private:
    void serve()
    {
        if (m_leaving) {
            m_socket->skip(m_socket->bytesAvailable());
            return;
        }
        while (m_socket->state() == QAbstractSocket::ConnectedState
               && m_socket->bytesAvailable() >= protocol::HeaderSize) {
            const quint32 size = protocol::payloadSize(m_socket->peek(protocol::HeaderSize));
            if (size > protocol::MaxPayload) {
                answer(m_handler(ERR_TOO_LARGE, QByteArray()));
                return;
            }
            if (m_socket->bytesAvailable() < protocol::HeaderSize + qint64(size))
                break;
            m_frameTimer.stop();
            m_socket->skip(protocol::HeaderSize);
            answer(m_handler(OK, m_socket->read(size)));
            if (m_leaving)
                return;
            if (m_socket->bytesToWrite() > BufferSize) {
                m_socket->abort();
                return;
            }
        }
        if ((m_socket->bytesAvailable() > 0 || !m_knowsPeer) && !m_frameTimer.isActive())
            m_frameTimer.start(FrameTime);
    }

    void answer(const Answer &answer)
    {
        if (!answer.frame.isEmpty()) {
            m_socket->write(answer.frame);
            m_socket->flush();
        }
        m_knowsPeer = m_knowsPeer || answer.knowsPeer;
        if (!answer.keepsConnection) {
            // Closing with bytes unread would take the answer back before the peer has seen it.
            m_leaving = true;
            m_socket->skip(m_socket->bytesAvailable());
            m_frameTimer.start(LingerTime);
        }
    }

    QTcpSocket *const m_socket;
    const Handler &m_handler;
    QTimer m_frameTimer;
    bool m_knowsPeer = false;
    bool m_leaving = false;
    bool m_dropped = false; // about to be deleted
};

class TcpEndpoint : public Endpoint
{
public:
    explicit TcpEndpoint(Handler handler)
        : m_handler(std::move(handler))
    {
        m_server.setProxy(QNetworkProxy::NoProxy);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    }
    ~TcpEndpoint() override { m_server.close(); }

    bool open(const Description &address)
    {
        const QHostAddress host = addressOf(address.host);
        if (host.isNull() || !m_server.listen(host, address.port))
            return false;
        // Qt lets 50 wait to be accepted; one more, and the system makes it try again a second later.
        ::listen(static_cast<int>(m_server.socketDescriptor()), MostConnections * 4);
        return true;
    }

    quint16 port() const override { return m_server.serverPort(); }

private:
    void accept()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            if (!hasRoom())
                (new ServedConnection(socket, m_handler, &m_connections))->refuse(ERR_REFUSED);
            else
                new ServedConnection(socket, m_handler, &m_connections);
        }
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
            if (connection->isDropped())
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
            leaver->drop();
        if (taken < MostConnections)
            return true;
        if (stranger)
            stranger->drop();
        return stranger;
    }

    const Handler m_handler;
    QTcpServer m_server;
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
