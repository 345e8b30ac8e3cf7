// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TRANSPORT_H
#define TESSEL_TRANSPORT_H

#include <QByteArray>
#include <QDeadlineTimer>

#include <functional>
#include <memory>

#include "tessel/status.h"

namespace tessel {

struct Description;

/// What carries frames between processes. One source implements it (tcptransport.cpp); another transport
/// replaces that source.

/// Before the first connection or endpoint of the process, once.
void prepareTransport();

/// A caller's connection: blocking, used by the thread that opened it.
class Connection
{
public:
    virtual ~Connection() = default;
    virtual bool send(const QByteArray &frame, const QDeadlineTimer &deadline) = 0;
    /// The next frame's payload, valid until the next one is asked for. ERR_TIMED_OUT, ERR_PEER_GONE or
    /// ERR_TOO_LARGE when there is none.
    virtual Status receive(QByteArray &payload, const QDeadlineTimer &deadline) = 0;
    /// Whether the next frame can follow: none is half sent.
    virtual bool isUsable() const = 0;
};

/// Null when nothing accepts there within the time; \p status then says why: ERR_REFUSED, or ERR_TIMED_OUT.
std::unique_ptr<Connection> openConnection(const Description &address, int milliseconds, Status &status);

/// What an endpoint does with a payload that came in.
struct Answer
{
    QByteArray frame; ///< to answer with
    bool keepsConnection = true; ///< else nothing more is read from it
    bool knowsPeer = false; ///< the peer has shown that it speaks with a service of ours
};
/// \p received is OK for a payload, which is valid until the handler returns, ERR_TOO_LARGE for a frame that
/// announces more than the limit, ERR_REFUSED for a connection too many.
using Handler = std::function<Answer(Status received, const QByteArray &payload)>;

/// A listening end. Lives on, and calls its handler on, the thread that opened it, which runs an event loop.
class Endpoint
{
public:
    virtual ~Endpoint() = default;
    virtual quint16 port() const = 0;
};

/// Whether a connection to \p address ends at an endpoint opened at \p endpoint, on the same machine.
bool reaches(const Description &address, const Description &endpoint);

/// Null when the address cannot be listened on.
std::unique_ptr<Endpoint> openEndpoint(const Description &address, Handler handler);

} // namespace tessel

#endif // TESSEL_TRANSPORT_H
