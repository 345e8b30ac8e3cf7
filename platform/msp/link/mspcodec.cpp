// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "mspcodec.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QHash>
#include <QVariant>
#include <QtEndian>

#include <limits>

namespace msp {

namespace {

using Fields = QHash<QString, QVariant>;

/// Nothing in a message is nested; what a future peer may nest in a field of its own is skipped this deep.
constexpr int skippedDepth = 8;

QString key(const char *text)
{
    return QString::fromLatin1(text);
}

/// The next piece of a text or of bytes lies within the message. The reader makes room for as much as is
/// announced before it sees that the bytes are missing.
bool fits(const QCborStreamReader &reader)
{
    return reader.currentStringChunkSize() <= qsizetype(maximumPayload);
}

std::optional<QString> readText(QCborStreamReader &reader)
{
    QString text = QLatin1String("");
    while (fits(reader)) {
        const auto chunk = reader.readString();
        if (chunk.status == QCborStreamReader::Error)
            return std::nullopt;
        if (chunk.status == QCborStreamReader::EndOfString)
            return text;
        text += chunk.data;
    }
    return std::nullopt;
}

bool skipBytes(QCborStreamReader &reader)
{
    while (fits(reader)) {
        const auto chunk = reader.readByteArray();
        if (chunk.status != QCborStreamReader::Ok)
            return chunk.status == QCborStreamReader::EndOfString;
    }
    return false;
}

/// False when the bytes are no CBOR, or nested deeper than \p depth.
bool skip(QCborStreamReader &reader, int depth)
{
    if (reader.isString())
        return readText(reader).has_value();
    if (reader.isByteArray())
        return skipBytes(reader);
    if (!reader.isContainer())
        return reader.next();
    if (depth == 0 || !reader.enterContainer())
        return false;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        if (!skip(reader, depth - 1))
            return false;
    }
    return reader.lastError() == QCborError::NoError && reader.leaveContainer();
}

/// One value as it is used here: text, whole number, flag or null; anything else is skipped and leaves an
/// invalid variant. False when the bytes are no CBOR.
bool readValue(QCborStreamReader &reader, QVariant &value)
{
    value.clear();
    if (reader.isString()) {
        const std::optional<QString> text = readText(reader);
        if (!text)
            return false;
        value = *text;
        return true;
    }
    if (reader.isInteger()) {
        const quint64 magnitude =
            reader.isUnsignedInteger() ? reader.toUnsignedInteger() : quint64(reader.toNegativeInteger());
        // Numbers that no field can hold stay invalid, as if they were missing. A negative number is
        // carried as its distance from zero, and 0 stands for one that does not fit.
        if (magnitude > 0 || reader.isUnsignedInteger()) {
            if (magnitude <= quint64(std::numeric_limits<qint64>::max()))
                value = reader.isUnsignedInteger() ? qint64(magnitude) : -qint64(magnitude);
        }
        return skip(reader, skippedDepth);
    }
    if (reader.isBool()) {
        value = reader.toBool();
        return skip(reader, skippedDepth);
    }
    if (reader.isNull()) {
        value = QVariant::fromValue(QString());
        return skip(reader, skippedDepth);
    }
    return skip(reader, skippedDepth);
}

/// All fields of the map that fills \p payload.
std::optional<Fields> readFields(const QByteArray &payload)
{
    QCborStreamReader reader(payload);
    if (!reader.isMap() || !reader.enterContainer())
        return std::nullopt;
    Fields fields;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        if (!reader.isString())
            return std::nullopt;
        const std::optional<QString> name = readText(reader);
        QVariant value;
        if (!name || !reader.hasNext() || !readValue(reader, value))
            return std::nullopt;
        fields.insert(*name, value);
    }
    if (reader.lastError() != QCborError::NoError || !reader.leaveContainer()
        || reader.currentOffset() != payload.size())
        return std::nullopt;
    return fields;
}

bool isType(const Fields &fields, const char *name, QMetaType::Type type)
{
    return QMetaType::Type(fields.value(key(name)).type()) == type;
}

template <typename Number>
bool take(const Fields &fields, const char *name, Number &number)
{
    if (!isType(fields, name, QMetaType::LongLong))
        return false;
    const qint64 value = fields.value(key(name)).toLongLong();
    if (value < qint64(std::numeric_limits<Number>::min())
        || value > qint64(std::numeric_limits<Number>::max()))
        return false;
    number = Number(value);
    return true;
}

template <typename Enumeration>
bool takeEnumeration(const Fields &fields, const char *name, Enumeration &enumeration)
{
    int value = 0;
    if (!take(fields, name, value))
        return false;
    enumeration = Enumeration(value);
    return true;
}

bool takeText(const Fields &fields, const char *name, QString &text)
{
    if (!isType(fields, name, QMetaType::QString))
        return false;
    text = fields.value(key(name)).toString();
    return true;
}

/// A flag that is absent is not set.
bool flag(const Fields &fields, const char *name)
{
    return isType(fields, name, QMetaType::Bool) && fields.value(key(name)).toBool();
}

void append(QCborStreamWriter &writer, const char *name, const QString &text)
{
    writer.append(QLatin1String(name));
    if (text.isNull())
        writer.append(QCborSimpleType::Null);
    else
        writer.append(text);
}

void append(QCborStreamWriter &writer, const char *name, qint64 number)
{
    writer.append(QLatin1String(name));
    writer.append(number);
}

void appendFlag(QCborStreamWriter &writer, const char *name, bool value)
{
    writer.append(QLatin1String(name));
    writer.append(value);
}

struct Writer
{
    QCborStreamWriter &writer;

    void start(quint64 fields, const char *type) const
    {
        writer.startMap(fields);
        append(writer, "type", QString::fromLatin1(type));
    }
    void operator()(const Command &message) const
    {
        start(4, "command");
        append(writer, "number", message.number);
        append(writer, "command", message.command);
        append(writer, "params", message.params);
    }
    void operator()(const InfoRequest &message) const
    {
        start(2, "info");
        append(writer, "number", message.number);
    }
    void operator()(const CommandReply &message) const
    {
        start(3, "success");
        append(writer, "number", message.number);
        appendFlag(writer, "ok", message.ok);
    }
    void operator()(const InfoReply &message) const
    {
        const MSPInfo &info = message.info;
        start(13, "info-reply");
        append(writer, "number", message.number);
        append(writer, "fwVersion", info.fwVersion);
        append(writer, "MSPVersion", info.MSPVersion);
        appendFlag(writer, "shock", info.shock());
        appendFlag(writer, "shutter", info.shutter());
        appendFlag(writer, "shockDetector", info.shockDetector());
        appendFlag(writer, "DAC", info.DAC());
        appendFlag(writer, "highVoltage", info.highVoltage());
        appendFlag(writer, "shutterPosition", info.shutterPosition());
        appendFlag(writer, "abort", info.abort());
        appendFlag(writer, "probe", info.probe());
        append(writer, "state", info.state());
    }
    void operator()(const Event &message) const
    {
        start(3, "event");
        append(writer, "event", message.event);
        append(writer, "code", message.code);
    }
};

std::optional<Message> decodeInfoReply(const Fields &fields)
{
    InfoReply reply;
    MSPInfo::MSPState state = MSPInfo::STANDBY;
    if (!take(fields, "number", reply.number) || !takeText(fields, "fwVersion", reply.info.fwVersion)
        || !takeText(fields, "MSPVersion", reply.info.MSPVersion) || !takeEnumeration(fields, "state", state))
        return std::nullopt;
    reply.info.setShock(flag(fields, "shock"));
    reply.info.setShutter(flag(fields, "shutter"));
    reply.info.setShockDetector(flag(fields, "shockDetector"));
    reply.info.setDAC(flag(fields, "DAC"));
    reply.info.setHighVoltage(flag(fields, "highVoltage"));
    reply.info.setShutterPosition(flag(fields, "shutterPosition"));
    reply.info.setAbort(flag(fields, "abort"));
    reply.info.setProbe(flag(fields, "probe"));
    reply.info.setState(state);
    return reply;
}

} // namespace

QString serverName()
{
    const QString name = qEnvironmentVariable(serverNameVariable);
    return name.isEmpty() ? QString::fromLatin1(defaultServerName) : name;
}

QByteArray encode(const Message &message)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    std::visit(Writer{writer}, message);
    writer.endMap();
    return bytes;
}

std::optional<Message> decode(const QByteArray &payload)
{
    const std::optional<Fields> fields = readFields(payload);
    QString type;
    if (!fields || !takeText(*fields, "type", type))
        return std::nullopt;
    if (type == QLatin1String("event")) {
        Event event;
        if (!takeEnumeration(*fields, "event", event.event) || !take(*fields, "code", event.code))
            return std::nullopt;
        return event;
    }
    if (type == QLatin1String("success")) {
        CommandReply reply;
        if (!take(*fields, "number", reply.number) || !isType(*fields, "ok", QMetaType::Bool))
            return std::nullopt;
        reply.ok = flag(*fields, "ok");
        return reply;
    }
    if (type == QLatin1String("info-reply"))
        return decodeInfoReply(*fields);
    if (type == QLatin1String("command")) {
        Command command;
        if (!take(*fields, "number", command.number) || !takeEnumeration(*fields, "command", command.command)
            || !takeText(*fields, "params", command.params))
            return std::nullopt;
        return command;
    }
    if (type == QLatin1String("info")) {
        InfoRequest request;
        if (!take(*fields, "number", request.number))
            return std::nullopt;
        return request;
    }
    return std::nullopt;
}

QByteArray frame(const QByteArray &payload)
{
    QByteArray bytes(headerSize, Qt::Uninitialized);
    qToBigEndian(quint32(payload.size()), bytes.data());
    return bytes + payload;
}

std::optional<QByteArray> FrameReader::next()
{
    if (m_broken || m_buffer.size() < headerSize)
        return std::nullopt;
    const quint32 length = qFromBigEndian<quint32>(m_buffer.constData());
    if (length > maximumPayload) {
        m_broken = true;
        m_buffer.clear();
        return std::nullopt;
    }
    const int whole = headerSize + int(length);
    if (m_buffer.size() < whole)
        return std::nullopt;
    const QByteArray payload = m_buffer.mid(headerSize, int(length));
    m_buffer.remove(0, whole);
    return payload;
}

void FrameReader::clear()
{
    m_buffer.clear();
    m_broken = false;
}

} // namespace msp
