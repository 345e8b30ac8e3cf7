// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_REMOTESERVICE_H
#define TESSEL_REMOTESERVICE_H

#include <atomic>
#include <memory>

#include "tessel/description.h"
#include "tessel/service.h"
#include "transport.h"

namespace tessel {

/// The proxy of a service in another process. Each calling thread has a connection of its own to it.
class RemoteService : public Service
{
public:
    /// Asks the peer who it is. \return empty when it is not what the description names, after
    /// \p milliseconds at the latest.
    static PService bind(const Description &description, int milliseconds);

    int call(const Tuple &request, Tuple &reply) override;

private:
    RemoteService(const Description &description, const QByteArray &interfaceName, qint64 session);
    ~RemoteService() override;

    const Description m_description;
    const qint64 m_session;
    const quint64 m_id; // in this process; an address in memory is used again
    std::atomic<bool> m_gone{false};
    // Outlived by connections of other threads, which see by it that they are of no use any more.
    const std::shared_ptr<const int> m_alive;
};

} // namespace tessel

#endif // TESSEL_REMOTESERVICE_H
