// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "protocol.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QtEndian>

#include <cmath>
#include <limits>

namespace tessel {
namespace protocol {

namespace {

void writeText(QCborStreamWriter &cbor, const QByteArray &utf8)
{
    cbor.appendTextString(utf8.constData(), utf8.size());
}

bool writeTuple(QCborStreamWriter &cbor, const Tuple &tuple, int depth)
{
    if (depth > MaxNesting)
        return false;
    cbor.startArray(2);
    writeText(cbor, tuple.class_name());
    cbor.startArray(static_cast<quint64>(tuple.size()));
    for (int i = 0; i < tuple.size(); ++i) {
        const Value value = tuple.value(i);
        cbor.startArray(3);
        writeText(cbor, tuple.name(i));
        cbor.append(int(value.type()));
        switch (value.type()) {
        case T_BOOL:
            cbor.append(value.toBool());
            break;
        case T_INT:
            cbor.append(value.toInt());
            break;
        case T_DOUBLE:
            cbor.append(value.toDouble());
            break;
        case T_ASTRING:
            writeText(cbor, value.toAString().toUtf8());
            break;
        case T_TUPLE:
            if (!writeTuple(cbor, value.toTuple(), depth + 1))
                return false;
            break;
        case T_TIME_DATE:
            cbor.append(value.toTimeDate().milliseconds());
            break;
        case T_TIME_PERIOD:
            cbor.append(value.toTimePeriod().microseconds());
            break;
        case T_NONE:
            cbor.append(QCborSimpleType::Null);
            break;
        }
        cbor.endArray();
    }
    cbor.endArray();
    cbor.endArray();
    return true;
}

/// Reads one message; the first thing that is not as expected stops it.
class Decoder
{
public:
    explicit Decoder(const QByteArray &payload)
        : m_cbor(payload)
    { }

    Status status() const { return m_status; }

    bool enterArray(quint64 size)
    {
        return expect(m_cbor.isArray() && m_cbor.isLengthKnown() && m_cbor.length() == size)
            && expect(m_cbor.enterContainer());
    }

    bool leaveArray() { return expect(!m_cbor.hasNext()) && expect(m_cbor.leaveContainer()); }

    bool readInteger(qint64 &value, qint64 least, qint64 most)
    {
        if (!expect(m_cbor.isInteger()))
            return false;
        // Beyond 63 bits the reader's conversion wraps: such numbers are none of ours.
        if (m_cbor.isUnsignedInteger()) {
            if (!expect(m_cbor.toUnsignedInteger() <= quint64(std::numeric_limits<qint64>::max())))
                return false;
        } else if (!expect(quint64(m_cbor.toNegativeInteger()) - 1
                           <= quint64(std::numeric_limits<qint64>::max()))) {
            return false;
        }
        value = m_cbor.toInteger();
        return expect(value >= least && value <= most) && next();
    }

    bool readText(QByteArray &utf8)
    {
        if (!expect(m_cbor.isString()))
            return false;
        QString text;
        auto chunk = m_cbor.readString();
        while (chunk.status == QCborStreamReader::Ok) {
            text += chunk.data;
            chunk = m_cbor.readString();
        }
        utf8 = text.toUtf8();
        return expect(chunk.status == QCborStreamReader::EndOfString);
    }

    bool readTuple(Tuple &tuple, int depth)
    {
        if (depth > MaxNesting) {
            m_status = ERR_TOO_LARGE;
            return false;
        }
        QByteArray className;
        if (!enterArray(2) || !readText(className) || !expect(m_cbor.isArray() && m_cbor.isLengthKnown())
            || !expect(m_cbor.enterContainer()))
            return false;
        tuple = Tuple();
        tuple.set_class_name(className);
        while (m_cbor.hasNext()) {
            if (!readField(tuple, depth))
                return false;
        }
        return leaveArray() && leaveArray();
    }

    bool atEnd() { return expect(!m_cbor.hasNext() && m_cbor.lastError() == QCborError::NoError); }

    /// All bytes of the payload belong to the message.
    bool hasConsumed(int size) { return expect(m_cbor.currentOffset() == size); }

private:
    bool readField(Tuple &tuple, int depth)
    {
        constexpr int mostFields = 4096;
        QByteArray name;
        qint64 type = T_NONE;
        Value value;
        if (!enterArray(3) || !readText(name) || !readInteger(type, T_BOOL, T_TIME_PERIOD)
            || !readValue(static_cast<Types>(type), value, depth))
            return false;
        // A name twice could be read two ways.
        if (!expect(!tuple.is_set(name.constData()) && tuple.size() < mostFields))
            return false;
        tuple.set(name, value);
        return leaveArray();
    }

    bool readValue(Types type, Value &value, int depth)
    {
        constexpr qint64 least = std::numeric_limits<qint64>::min();
        constexpr qint64 most = std::numeric_limits<qint64>::max();
        qint64 integer = 0;
        switch (type) {
        case T_BOOL:
            if (!expect(m_cbor.isBool()))
                return false;
            value = Value(m_cbor.toBool());
            return next();
        case T_INT:
            if (!readInteger(integer, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()))
                return false;
            value = Value(static_cast<int>(integer));
            return true;
        case T_DOUBLE:
            if (!expect(m_cbor.isDouble()))
                return false;
            value = Value(m_cbor.toDouble());
            return next();
        case T_ASTRING: {
            QByteArray utf8;
            if (!readText(utf8))
                return false;
            value = Value(AString(utf8));
            return true;
        }
        case T_TUPLE: {
            Tuple nested;
            if (!readTuple(nested, depth + 1))
                return false;
            value = Value(nested);
            return true;
        }
        case T_TIME_DATE:
            if (!readInteger(integer, least, most))
                return false;
            value = Value(TimeDate(integer));
            return true;
        case T_TIME_PERIOD:
            if (!readInteger(integer, least, most))
                return false;
            value = Value(TimePeriod(integer));
            return true;
        case T_NONE:
            break;
        }
        return expect(false);
    }

    bool next() { return expect(m_cbor.next()); }

    bool expect(bool condition)
    {
        if (!condition && m_status == OK)
            m_status = ERR_MALFORMED;
        return condition && m_status == OK;
    }

    QCborStreamReader m_cbor;
    Status m_status = OK;
};

bool readBody(Decoder &decoder, Message &message)
{
    constexpr qint64 intLeast = std::numeric_limits<int>::min();
    constexpr qint64 intMost = std::numeric_limits<int>::max();
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    qint64 status = OK;
    switch (message.kind) {
    case Hello:
        return decoder.readText(message.interfaceName) && decoder.readText(message.serviceName);
    case Welcome:
        if (!decoder.readInteger(status, intLeast, intMost))
            return false;
        message.status = static_cast<int>(status);
        return decoder.readText(message.interfaceName) && decoder.readText(message.serviceName)
            && decoder.readInteger(message.session, 0, most);
    case Call:
        return decoder.readInteger(message.session, 0, most) && decoder.readTuple(message.tuple, 1);
    case Reply:
        if (!decoder.readInteger(status, intLeast, intMost))
            return false;
        message.status = static_cast<int>(status);
        return decoder.readTuple(message.tuple, 1);
    }
    return false;
}

quint64 elementsOf(Kind kind)
{
    switch (kind) {
    case Welcome:
        return 6;
    case Hello:
    case Call:
    case Reply:
        break;
    }
    return 4;
}

} // namespace

QByteArray encode(const Message &message)
{
    QByteArray payload;
    QCborStreamWriter cbor(&payload);
    cbor.startArray(elementsOf(message.kind));
    cbor.append(int(message.kind));
    cbor.append(message.number);
    bool fits = true;
    switch (message.kind) {
    case Hello:
        writeText(cbor, message.interfaceName);
        writeText(cbor, message.serviceName);
        break;
    case Welcome:
        cbor.append(message.status);
        writeText(cbor, message.interfaceName);
        writeText(cbor, message.serviceName);
        cbor.append(message.session);
        break;
    case Call:
        cbor.append(message.session);
        fits = writeTuple(cbor, message.tuple, 1);
        break;
    case Reply:
        cbor.append(message.status);
        fits = writeTuple(cbor, message.tuple, 1);
        break;
    }
    cbor.endArray();
    if (!fits || payload.size() > MaxPayload)
        return QByteArray();
    QByteArray frame(HeaderSize, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    return frame + payload;
}

Status decode(const QByteArray &payload, Message &message)
{
    message = Message();
    if (payload.size() > MaxPayload)
        return ERR_TOO_LARGE;
    // The kind decides the length of the outer array, so it is looked at first.
    QCborStreamReader outer(payload);
    if (!outer.isArray() || !outer.isLengthKnown())
        return ERR_MALFORMED;
    Decoder decoder(payload);
    qint64 kind = 0;
    qint64 number = 0;
    if (!decoder.enterArray(outer.length()) || !decoder.readInteger(kind, Hello, Reply)
        || !decoder.readInteger(number, 0, std::numeric_limits<quint32>::max()))
        return ERR_MALFORMED;
    message.kind = static_cast<Kind>(kind);
    message.number = static_cast<quint32>(number);
    if (outer.length() != elementsOf(message.kind))
        return ERR_MALFORMED;
    if (!readBody(decoder, message) || !decoder.leaveArray() || !decoder.hasConsumed(payload.size()))
        return decoder.status() == OK ? ERR_MALFORMED : decoder.status();
    return OK;
}

quint32 payloadSize(const QByteArray &header)
{
    return header.size() < HeaderSize ? 0 : qFromBigEndian<quint32>(header.constData());
}

} // namespace protocol
} // namespace tessel
