// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "dispatcher.h"

#include <QMetaObject>
#include <QRandomGenerator>

#include <algorithm>
#include <limits>

#include "protocol.h"

namespace tessel {

namespace {

qint64 newSession()
{
    // By chance, so that a restarted process has others; positive, so that any language can hold it.
    return static_cast<qint64>(QRandomGenerator::system()->generate64() >> 1);
}

QByteArray replyFrame(quint32 number, int status, const Tuple &tuple = Tuple())
{
    protocol::Message reply;
    reply.kind = protocol::Reply;
    reply.number = number;
    reply.status = status;
    reply.tuple = tuple;
    return protocol::encode(reply);
}

} // namespace

Dispatcher::Dispatcher()
{
    m_thread.setObjectName(QStringLiteral("tessel dispatch"));
    m_context.moveToThread(&m_thread);
    m_thread.start();
}

Dispatcher::~Dispatcher()
{
    close();
    m_thread.quit();
    m_thread.wait();
}

bool Dispatcher::listen(const Description &address)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto open = m_hosts.find(address.port);
        if (address.port != 0 && open != m_hosts.end() && open->second == address.host)
            return true;
    }
    quint16 port = 0;
    const auto open = [this, &address, &port] {
        auto endpoint = openEndpoint(address, [this](Status received, const QByteArray &payload) {
            return answer(received, payload);
        });
        if (!endpoint)
            return;
        port = endpoint->port();
        m_endpoints.push_back(std::move(endpoint));
    };
    QMetaObject::invokeMethod(&m_context, open, Qt::BlockingQueuedConnection);
    if (port == 0)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hosts[port] = address.host;
    m_lastPort = port;
    return true;
}

quint16 Dispatcher::lastPort() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lastPort;
}

void Dispatcher::close()
{
    if (QThread::currentThread() == &m_thread)
        m_endpoints.clear();
    else if (m_thread.isRunning())
        QMetaObject::invokeMethod(
            &m_context, [this] { m_endpoints.clear(); }, Qt::BlockingQueuedConnection);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hosts.clear();
    m_lastPort = 0;
}

void Dispatcher::publish(const PService &service)
{
    PService replaced; // released without the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (Published &published : m_published) {
        if (published.service->interface_name() == service->interface_name()
            && published.service->name() == service->name()) {
            replaced = published.service;
            published = {service, newSession()};
            return;
        }
    }
    m_published.push_back({service, newSession()});
}

void Dispatcher::unpublish(const Service &service)
{
    PService removed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found =
        std::find_if(m_published.begin(), m_published.end(),
                     [&service](const Published &published) { return published.service.get() == &service; });
    if (found == m_published.end())
        return;
    removed = found->service;
    m_published.erase(found);
}

PService Dispatcher::local(const Description &description) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto open = m_hosts.find(description.port);
    if (open == m_hosts.end() || open->second != description.host)
        return PService();
    for (const Published &published : m_published) {
        if (published.service->name() == description.name
            && (description.interfaceName.isEmpty()
                || published.service->interface_name() == description.interfaceName))
            return published.service;
    }
    return PService();
}

PService Dispatcher::serviceOf(qint64 session) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Published &published : m_published) {
        if (published.session == session)
            return published.service;
    }
    return PService();
}

QByteArray Dispatcher::welcome(const QByteArray &interfaceName, const QByteArray &name, quint32 number) const
{
    protocol::Message message;
    message.kind = protocol::Welcome;
    message.number = number;
    message.status = ERR_NO_SUCH_SERVICE;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Published &published : m_published) {
        if (published.service->name() == name
            && (interfaceName.isEmpty() || published.service->interface_name() == interfaceName)) {
            message.status = OK;
            message.interfaceName = published.service->interface_name();
            message.serviceName = name;
            message.session = published.session;
            break;
        }
    }
    return protocol::encode(message);
}

Answer Dispatcher::answer(Status received, const QByteArray &payload)
{
    protocol::Message message;
    const Status status = received == OK ? protocol::decode(payload, message) : received;
    if (status != OK)
        return {replyFrame(message.number, status), false};
    switch (message.kind) {
    case protocol::Hello:
        return {welcome(message.interfaceName, message.serviceName, message.number), true};
    case protocol::Call: {
        const PService service = serviceOf(message.session);
        if (!service)
            return {replyFrame(message.number, ERR_PEER_GONE), true};
        Tuple reply;
        Service::set_session_context(service->session_context());
        const int result = service->call(message.tuple, reply);
        Service::clear_session_context();
        const QByteArray frame = replyFrame(message.number, result, reply);
        return {frame.isEmpty() ? replyFrame(message.number, ERR_TOO_LARGE) : frame, true};
    }
    case protocol::Welcome:
    case protocol::Reply:
        break;
    }
    return {replyFrame(message.number, ERR_MALFORMED), false};
}

} // namespace tessel
