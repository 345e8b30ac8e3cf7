// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_DISPATCHER_H
#define TESSEL_DISPATCHER_H

#include <QByteArray>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "tessel/description.h"
#include "tessel/service.h"
#include "transport.h"
#include "workqueue.h"

namespace tessel {

/// The published services, and the thread on which requests reach them.
class Dispatcher
{
public:
    Dispatcher();
    ~Dispatcher();

    /// For good, at the end of the process: no request reaches a service any more.
    void stop();
    /// At the end of an application: the endpoints are closed, and its events are dispatched no more. The
    /// next one may listen again.
    void rest();

    bool listen(const Description &address);
    quint16 lastPort() const;
    void close();

    void publish(const PService &service);
    void unpublish(const Service &service);
    /// \return whether this process itself listens at the address; \p service is then the one described,
    /// or empty when it is not published here.
    bool findLocal(const Description &description, PService &service) const;

private:
    struct Published
    {
        PService service;
        qint64 session = 0;
        Tuple context; ///< its session context, the same for every call
    };

    Answer answer(Status received, const QByteArray &payload);
    Answer welcome(const QByteArray &interfaceName, const QByteArray &name, quint32 number) const;
    Published publishedAs(qint64 session) const;

    mutable std::mutex m_mutex;
    std::vector<Published> m_published;
    std::vector<Description> m_addresses; // of the open endpoints
    quint16 m_lastPort = 0;

    // Touched on the dispatch thread only.
    std::vector<std::unique_ptr<Endpoint>> m_endpoints;
    bool m_answering = false; // a service is at work
    QThread m_thread;
    WorkQueue m_queue; // lives on the dispatch thread
    std::atomic<bool> m_stopped{false};
};

} // namespace tessel

#endif // TESSEL_DISPATCHER_H
