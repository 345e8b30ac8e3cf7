// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_DISPATCHER_H
#define TESSEL_DISPATCHER_H

#include <QByteArray>
#include <QThread>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "tessel/description.h"
#include "tessel/service.h"
#include "transport.h"

namespace tessel {

/// The published services, and the thread on which requests reach them.
class Dispatcher
{
public:
    Dispatcher();
    ~Dispatcher();

    bool listen(const Description &address);
    quint16 lastPort() const;
    void close();

    void publish(const PService &service);
    void unpublish(const Service &service);
    /// The service itself, when it is published and this process listens at the address.
    PService local(const Description &description) const;

private:
    struct Published
    {
        PService service;
        qint64 session;
    };

    Answer answer(Status received, const QByteArray &payload);
    QByteArray welcome(const QByteArray &interfaceName, const QByteArray &name, quint32 number) const;
    PService serviceOf(qint64 session) const;

    mutable std::mutex m_mutex;
    std::vector<Published> m_published;
    std::map<quint16, QByteArray> m_hosts; // of the open endpoints, by port
    quint16 m_lastPort = 0;

    // Touched on the dispatch thread only.
    std::vector<std::unique_ptr<Endpoint>> m_endpoints;
    QThread m_thread;
    QObject m_context; // lives on the dispatch thread
};

} // namespace tessel

#endif // TESSEL_DISPATCHER_H
