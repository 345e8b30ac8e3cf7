// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "dispatcher.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QRandomGenerator>

#include <algorithm>
#include <memory>

#include "protocol.h"

namespace tessel {

namespace {

qint64 newSession()
{
    // By chance, so that a restarted process has others; positive, so that any language can hold it.
    return static_cast<qint64>(QRandomGenerator::system()->generate64() >> 1);
}

Status encodeReply(quint32 number, int status, const Tuple &tuple, QByteArray &frame)
{
    protocol::Message reply;
    reply.kind = protocol::Reply;
    reply.number = number;
    reply.status = status;
    reply.tuple = tuple;
    return protocol::encode(reply, frame);
}

/// A reply without a tuple.
QByteArray replyFrame(quint32 number, int status)
{
    QByteArray frame;
    encodeReply(number, status, Tuple(), frame);
    return frame;
}

} // namespace

Dispatcher::Dispatcher()
{
    prepareTransport();
    m_thread.setObjectName(QStringLiteral("tessel dispatch"));
    m_queue.moveToThread(&m_thread);
    // By the thread itself, as the last thing it does: no other may touch them.
    QObject::connect(
        &m_thread, &QThread::finished, &m_queue, [this] { m_endpoints.clear(); }, Qt::DirectConnection);
}

Dispatcher::~Dispatcher()
{
    stop();
}

void Dispatcher::stop()
{
    if (!m_stopped.exchange(true))
        rest();
}

void Dispatcher::rest()
{
    // A service that is stuck does not keep the process from ending.
    constexpr unsigned long patience = 2000; // ms
    // A service that ends the process itself is on the dispatch thread: that goes no further anyway.
    if (QThread::currentThread() == &m_thread || !m_thread.isRunning())
        return;
    m_thread.quit();
    m_thread.wait(patience);
}

bool Dispatcher::listen(const Description &address)
{
    if (m_stopped || !QCoreApplication::instance())
        return false;
    if (!m_thread.isRunning()) {
        // Those of an application that has ended.
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_addresses.clear();
    }
    if (address.port != 0) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const Description &open : m_addresses) {
            if (open.port == address.port && open.host == address.host)
                return true;
        }
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
    m_thread.start(); // when it does not run yet
    m_queue.doAndWait(open);
    if (port == 0)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_addresses.push_back(address);
    m_addresses.back().port = port;
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
    const auto closeAll = [this] {
        if (!m_answering) {
            m_endpoints.clear();
            return;
        }
        // Asked for by a service that one of these connections is waiting for: they go after its answer.
        const auto closing = std::make_shared<std::vector<std::unique_ptr<Endpoint>>>(std::move(m_endpoints));
        m_endpoints.clear();
        QMetaObject::invokeMethod(
            &m_queue, [closing] { closing->clear(); }, Qt::QueuedConnection);
    };
    if (m_thread.isRunning())
        m_queue.doAndWait(closeAll);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_addresses.clear();
    m_lastPort = 0;
}

void Dispatcher::publish(const PService &service)
{
    PService replaced; // released without the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (Published &published : m_published) {
        if (published.service == service)
            return; // its proxies go on
        if (published.service->interface_name() == service->interface_name()
            && published.service->name() == service->name()) {
            replaced = published.service;
            published = {service, newSession(), service->session_context()};
            return;
        }
    }
    m_published.push_back({service, newSession(), service->session_context()});
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

bool Dispatcher::findLocal(const Description &description, PService &service) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool here =
        std::any_of(m_addresses.begin(), m_addresses.end(),
                    [&description](const Description &open) { return reaches(description, open); });
    if (!here)
        return false;
    for (const Published &published : m_published) {
        if (published.service->name() == description.name
            && (description.interfaceName.isEmpty()
                || published.service->interface_name() == description.interfaceName)) {
            service = published.service;
            break;
        }
    }
    return true;
}

Dispatcher::Published Dispatcher::publishedAs(qint64 session) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Published &published : m_published) {
        if (published.session == session)
            return published;
    }
    return {};
}

Answer Dispatcher::welcome(const QByteArray &interfaceName, const QByteArray &name, quint32 number) const
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
    Answer answer;
    protocol::encode(message, answer.frame);
    answer.knowsPeer = message.status == OK;
    return answer;
}

Answer Dispatcher::answer(Status received, const QByteArray &payload)
{
    protocol::Message message;
    const Status status = received == OK ? protocol::decode(payload, message) : received;
    if (status != OK)
        return {replyFrame(message.number, status), false, false};
    switch (message.kind) {
    case protocol::Hello:
        return welcome(message.interfaceName, message.serviceName, message.number);
    case protocol::Call: {
        const Published published = publishedAs(message.session);
        if (!published.service)
            return {replyFrame(0, ERR_PEER_GONE), false, false};
        Tuple reply;
        m_answering = true;
        Service::set_session_context(published.context);
        const int result = published.service->call(message.tuple, reply);
        Service::clear_session_context();
        m_answering = false;
        QByteArray frame;
        const Status encoded = encodeReply(message.number, result, reply, frame);
        return {encoded == OK ? frame : replyFrame(message.number, encoded), true, true};
    }
    case protocol::Welcome:
    case protocol::Reply:
        break;
    }
    return {replyFrame(message.number, ERR_MALFORMED), false, false};
}

} // namespace tessel
