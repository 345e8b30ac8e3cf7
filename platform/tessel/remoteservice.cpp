// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "remoteservice.h"

#include <map>

#include "protocol.h"
#include "tessel/tessel.h"

namespace tessel {

namespace {

struct ThreadConnection
{
    std::weak_ptr<const int> owner;
    std::unique_ptr<Connection> connection;
};

thread_local bool threadEnds = false; // outlives the thread's connections

struct ThreadConnections
{
    std::map<quint64, ThreadConnection> byProxy;
    ~ThreadConnections() { threadEnds = true; }
};

/// The calling thread's connections, or null when they are gone already: proxies may be called and released
/// by what is destroyed at the very end of the process, when Qt's sockets cannot be used any more.
ThreadConnections *threadConnections()
{
    if (threadEnds)
        return nullptr;
    thread_local ThreadConnections connections;
    return &connections;
}

/// Closes those whose proxies were released by other threads.
void dropAbandoned(ThreadConnections &connections)
{
    for (auto entry = connections.byProxy.begin(); entry != connections.byProxy.end();) {
        if (entry->second.owner.expired())
            entry = connections.byProxy.erase(entry);
        else
            ++entry;
    }
}

quint64 nextId()
{
    static std::atomic<quint64> id{0};
    return ++id;
}

quint32 nextNumber()
{
    static std::atomic<quint32> last{0};
    quint32 number = ++last;
    if (number == 0) // stands for the connection itself
        number = ++last;
    return number;
}

/// Sends a message and waits for its answer; answers to earlier messages, which came too late for them, are
/// skipped. What the peer says about the connection itself (number 0) ends the exchange, too.
Status exchange(Connection &connection, const QByteArray &frame, quint32 number, protocol::Kind expected,
                const QDeadlineTimer &deadline, protocol::Message &answer)
{
    if (!connection.send(frame, deadline))
        return deadline.hasExpired() ? ERR_TIMED_OUT : ERR_PEER_GONE;
    for (;;) {
        QByteArray payload;
        const Status received = connection.receive(payload, deadline);
        if (received != OK)
            return received;
        const Status decoded = protocol::decode(payload, answer);
        if (decoded != OK)
            return decoded;
        if (answer.number == 0 && answer.kind == protocol::Reply)
            return OK;
        if (answer.number == number && (answer.kind == expected || answer.kind == protocol::Reply))
            return OK;
        if (deadline.hasExpired())
            return ERR_TIMED_OUT;
    }
}

} // namespace

RemoteService::RemoteService(const Description &description, const QByteArray &interfaceName, qint64 session)
    : Service(interfaceName.constData())
    , m_description(description)
    , m_session(session)
    , m_id(nextId())
    , m_alive(std::make_shared<const int>(0))
{
    set_name(AString(description.name));
}

RemoteService::~RemoteService()
{
    if (ThreadConnections *connections = threadConnections())
        connections->byProxy.erase(m_id);
}

PService RemoteService::bind(const Description &description, int milliseconds)
{
    ThreadConnections *const connections = threadConnections();
    if (!connections)
        return PService();
    const QDeadlineTimer deadline(milliseconds);
    Status status = OK;
    std::unique_ptr<Connection> connection = openConnection(description, milliseconds, status);
    if (!connection)
        return PService();
    protocol::Message hello;
    hello.kind = protocol::Hello;
    hello.number = nextNumber();
    hello.interfaceName = description.interfaceName;
    hello.serviceName = description.name;
    QByteArray frame;
    if (protocol::encode(hello, frame) != OK)
        return PService();
    protocol::Message welcome;
    status = exchange(*connection, frame, hello.number, protocol::Welcome, deadline, welcome);
    if (status != OK || welcome.kind != protocol::Welcome || welcome.status != OK
        || welcome.serviceName != description.name
        || (!description.interfaceName.isEmpty() && welcome.interfaceName != description.interfaceName))
        return PService();
    auto *service = new RemoteService(description, welcome.interfaceName, welcome.session);
    dropAbandoned(*connections);
    connections->byProxy[service->m_id] = {service->m_alive, std::move(connection)};
    return PService(service);
}

int RemoteService::call(const Tuple &request, Tuple &reply)
{
    ThreadConnections *const connections = threadConnections();
    if (m_gone || !connections)
        return ERR_PEER_GONE;
    protocol::Message message;
    message.kind = protocol::Call;
    message.number = nextNumber();
    message.session = m_session;
    message.tuple = request;
    QByteArray frame;
    const Status encoded = protocol::encode(message, frame);
    if (encoded != OK)
        return encoded;

    const QDeadlineTimer deadline(call_time_limit());
    // Taken out while in use: what is not put back is closed.
    std::unique_ptr<Connection> connection;
    const auto own = connections->byProxy.find(m_id);
    if (own != connections->byProxy.end())
        connection = std::move(own->second.connection);
    const bool fresh = !connection;
    if (fresh) {
        dropAbandoned(*connections);
        Status status = OK;
        connection = openConnection(m_description, call_time_limit(), status);
        if (status == ERR_REFUSED) {
            // It was there once.
            m_gone = true;
            return ERR_PEER_GONE;
        }
        if (status != OK)
            return status;
    }

    protocol::Message answer;
    const Status status = exchange(*connection, frame, message.number, protocol::Reply, deadline, answer);
    if (status == OK && answer.number == 0) {
        // Not the service's answer. A session that nobody knows: another process by now, or another service.
        m_gone = m_gone || answer.status == ERR_PEER_GONE;
        return answer.status < 0 ? answer.status : ERR_MALFORMED;
    }
    // After a time-out too: the answer is skipped when it comes after all.
    if ((status == OK || (status == ERR_TIMED_OUT && connection->isUsable())))
        connections->byProxy[m_id] = {m_alive, std::move(connection)};
    if (status == ERR_PEER_GONE && fresh)
        return ERR_REFUSED; // taken and dropped at once, which does not show that it is gone
    if (status == ERR_PEER_GONE)
        m_gone = true;
    if (status != OK)
        return status;
    reply = answer.tuple;
    return answer.status;
}

} // namespace tessel
