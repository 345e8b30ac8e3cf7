// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_PROTOCOL_H
#define TESSEL_PROTOCOL_H

#include <QByteArray>

#include "tessel/status.h"
#include "tessel/tuple.h"

namespace tessel {

/// The messages between two processes, and their bytes. Pure functions, no state.
namespace protocol {

constexpr int HeaderSize = 4; // length of what follows, big-endian
constexpr int MaxPayload = 1024 * 1024;
constexpr int MaxNesting = 32; // tuples within tuples
constexpr int MaxFields = 4096; // of one tuple

enum Kind : int {
    Hello = 1, ///< who is there? interface and service name
    Welcome = 2, ///< status, interface, service name and session
    Call = 3, ///< session and request
    Reply = 4 ///< status and reply
};

/// One message; which members count depends on its kind.
struct Message
{
    Kind kind = Hello;
    quint32 number = 0; ///< chosen by the caller, returned with the answer; 0: the connection itself
    int status = OK;
    qint64 session = 0;
    QByteArray interfaceName;
    QByteArray serviceName;
    Tuple tuple;
};

/// \param frame the whole frame, header included; empty on failure.
/// \return OK, ERR_TOO_LARGE, or ERR_MALFORMED for a text that is not UTF-8: what a peer would not accept.
Status encode(const Message &message, QByteArray &frame);
/// \param payload a frame without its header.
/// \return OK, ERR_MALFORMED or ERR_TOO_LARGE; \p message then holds what could be read, its number included.
Status decode(const QByteArray &payload, Message &message);
/// Length announced by a header of HeaderSize bytes; 0 for one that is shorter.
quint32 payloadSize(const QByteArray &header);
/// The same of HeaderSize bytes.
quint32 payloadSize(const char *header);

} // namespace protocol
} // namespace tessel

#endif // TESSEL_PROTOCOL_H
