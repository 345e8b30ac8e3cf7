// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "remoteservice.h"

#include <QDeadlineTimer>

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

/// The calling thread's connections, by their proxy.
std::map<const RemoteService *, ThreadConnection> &threadConnections()
{
    thread_local std::map<const RemoteService *, ThreadConnection> connections;
    return connections;
}

void dropAbandonedConnections()
{
    auto &connections = threadConnections();
    for (auto entry = connections.begin(); entry != connections.end();) {
        if (entry->second.owner.expired())
            entry = connections.erase(entry);
        else
            ++entry;
    }
}

quint32 nextNumber()
{
    static std::atomic<quint32> number{0};
    return ++number;
}

/// Sends a message and waits for its answer; answers to earlier messages, which came too late for them, are
/// skipped.
Status exchange(Connection &connection, const QByteArray &frame, quint32 number, protocol::Kind expected,
                int milliseconds, protocol::Message &answer)
{
    const QDeadlineTimer deadline(milliseconds);
    if (!connection.send(frame, milliseconds))
        return deadline.hasExpired() ? ERR_TIMED_OUT : ERR_PEER_GONE;
    for (;;) {
        QByteArray payload;
        const Status received = connection.receive(payload, static_cast<int>(deadline.remainingTime()));
        if (received != OK)
            return received;
        const Status decoded = protocol::decode(payload, answer);
        if (decoded != OK)
            return decoded;
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
    , m_alive(std::make_shared<const int>(0))
{
    set_name(AString(description.name));
}

RemoteService::~RemoteService()
{
    threadConnections().erase(this);
}

PService RemoteService::bind(const Description &description, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    std::unique_ptr<Connection> connection = openConnection(description, milliseconds);
    if (!connection)
        return PService();
    protocol::Message hello;
    hello.kind = protocol::Hello;
    hello.number = nextNumber();
    hello.interfaceName = description.interfaceName;
    hello.serviceName = description.name;
    protocol::Message welcome;
    const Status status = exchange(*connection, protocol::encode(hello), hello.number, protocol::Welcome,
                                   static_cast<int>(deadline.remainingTime()), welcome);
    if (status != OK || welcome.kind != protocol::Welcome || welcome.status != OK
        || welcome.serviceName != description.name
        || (!description.interfaceName.isEmpty() && welcome.interfaceName != description.interfaceName))
        return PService();
    auto *service = new RemoteService(description, welcome.interfaceName, welcome.session);
    threadConnections()[service] = {service->m_alive, std::move(connection)};
    return PService(service);
}

int RemoteService::call(const Tuple &request, Tuple &reply)
{
    if (m_gone)
        return ERR_PEER_GONE;
    protocol::Message message;
    message.kind = protocol::Call;
    message.number = nextNumber();
    message.session = m_session;
    message.tuple = request;
    const QByteArray frame = protocol::encode(message);
    if (frame.isEmpty())
        return ERR_TOO_LARGE;

    const QDeadlineTimer deadline(call_time_limit());
    auto &connections = threadConnections();
    auto own = connections.find(this);
    if (own == connections.end()) {
        dropAbandonedConnections();
        auto connection = openConnection(m_description, call_time_limit());
        if (!connection) {
            m_gone = true;
            return ERR_PEER_GONE;
        }
        own = connections.emplace(this, ThreadConnection{m_alive, std::move(connection)}).first;
    }

    protocol::Message answer;
    const Status status = exchange(*own->second.connection, frame, message.number, protocol::Reply,
                                   static_cast<int>(deadline.remainingTime()), answer);
    if (status == ERR_TIMED_OUT)
        return status; // the answer is skipped when it comes after all
    if (status != OK || answer.status == ERR_PEER_GONE) {
        // Another process may answer there by now; it knows nothing of what was agreed with this one.
        m_gone = m_gone || status == ERR_PEER_GONE || answer.status == ERR_PEER_GONE;
        connections.erase(this);
        return status != OK ? status : ERR_PEER_GONE;
    }
    reply = answer.tuple;
    return answer.status;
}

} // namespace tessel
