// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MSPCODEC_H
#define MSPCODEC_H

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

#include "mspclient.h"
#include "mspexport.h"
#include "mspinfo.h"

/// The messages between MSPClient and the MSP server, and their bytes (docs/msp-messages.md).
///
/// A message is one CBOR map in a frame: four bytes of length, most significant first, then as many bytes
/// of CBOR. decode() and FrameReader do no I/O and never fail on hostile bytes otherwise than by saying so.
namespace msp {

/// Name of the server's local socket: what the environment variable HALVAR_MSP_SERVER holds, an absolute
/// path or a plain name, otherwise \c defaultServerName. A plain name stands for a file in the directory for
/// temporary files.
MSP_EXPORT QString serverName();
constexpr char defaultServerName[] = "halvar-msp";
constexpr char serverNameVariable[] = "HALVAR_MSP_SERVER";

/// Longest payload of a frame. The longest honest message is some hundred bytes.
constexpr quint32 maximumPayload = 64 * 1024;
/// Bytes of a frame's length.
constexpr int headerSize = 4;

struct Command
{
    quint32 number = 0; ///< chosen by the client; the answer carries it back
    MSPClient::MSPCommand command = MSPClient::NB_COMMANDS;
    QString params; ///< null and empty are told apart
};

struct InfoRequest
{
    quint32 number = 0;
};

struct CommandReply
{
    quint32 number = 0;
    bool ok = false;
};

struct InfoReply
{
    quint32 number = 0;
    MSPInfo info;
};

struct Event
{
    MSPClient::MSPEvent event = MSPClient::SYS_ERR;
    short code = 0;
};

using Message = std::variant<Command, InfoRequest, CommandReply, InfoReply, Event>;

/// The payload of \p message, without its frame.
MSP_EXPORT QByteArray encode(const Message &message);
/// The message in \p payload; nothing when it is not exactly one well-formed message of a known kind with
/// all its fields. Fields that it does not know are skipped; unknown commands, events and states are carried
/// as their number.
MSP_EXPORT std::optional<Message> decode(const QByteArray &payload);
/// \p payload with its length in front.
MSP_EXPORT QByteArray frame(const QByteArray &payload);

/// Cuts a stream of bytes into the payloads of its frames.
class MSP_EXPORT FrameReader
{
public:
    void append(const QByteArray &bytes) { m_buffer.append(bytes); }
    /// The next whole payload; nothing when bytes are missing or the stream is broken.
    std::optional<QByteArray> next();
    /// A frame announced more than maximumPayload: where the next one begins is unknown, so the connection
    /// is of no use any more.
    bool isBroken() const { return m_broken; }
    void clear();

private:
    QByteArray m_buffer;
    bool m_broken = false;
};

} // namespace msp

#endif // MSPCODEC_H
