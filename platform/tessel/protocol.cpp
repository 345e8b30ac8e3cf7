// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "protocol.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QIODevice>
#include <QSet>
#include <QTextCodec>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>

#include "tuplebuilder.h"

namespace tessel {
namespace protocol {

namespace {

constexpr int FewFields = 16; // as many as a record may have to be handled the quick way

bool isAscii(const QByteArray &text)
{
    const char *byte = text.constData();
    const char *const end = byte + text.size();
    for (quint64 eight = 0; end - byte >= qptrdiff(sizeof eight); byte += sizeof eight) {
        std::memcpy(&eight, byte, sizeof eight);
        if (eight & Q_UINT64_C(0x8080808080808080))
            return false;
    }
    return std::none_of(byte, end, [](char one) { return (one & 0x80) != 0; });
}

bool isUtf8(const QByteArray &text)
{
    if (isAscii(text))
        return true;
    // A byte order mark is a letter like any other here.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    constexpr int utf8 = 106;
    QTextCodec::codecForMib(utf8)->toUnicode(text.constData(), text.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Appends what is written, and nothing more: the writer writes each number and each text by itself.
class FrameDevice : public QIODevice
{
public:
    explicit FrameDevice(QByteArray &frame)
        : m_frame(frame)
    {
        constexpr int usual = 512; // most messages fit
        m_frame.resize(usual);
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    int written() const { return m_written; }
    /// More was written than a frame may hold, and is not in it.
    bool isTooSmall() const { return m_isTooSmall; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 size) override
    {
        if (size > HeaderSize + MaxPayload - m_written)
            m_isTooSmall = true;
        if (m_isTooSmall)
            return size;
        if (m_written + size > m_frame.size())
            m_frame.resize(qMax(2 * m_frame.size(), m_written + int(size)));
        std::memcpy(m_frame.data() + m_written, bytes, std::size_t(size));
        m_written += int(size);
        return size;
    }

private:
    QByteArray &m_frame;
    int m_written = HeaderSize; // its length stands there when that is known
    bool m_isTooSmall = false;
};

/// Writes one message into a frame; what a peer would not accept stops it.
class Encoder
{
public:
    explicit Encoder(QByteArray &frame)
        : m_device(frame)
        , m_cbor(&m_device)
    { }

    Status status() const { return m_status == OK && m_device.isTooSmall() ? ERR_TOO_LARGE : m_status; }
    int written() const { return m_device.written(); }
    QCborStreamWriter &cbor() { return m_cbor; }

    void writeText(const QByteArray &utf8)
    {
        if (utf8.size() > MaxPayload)
            fail(ERR_TOO_LARGE);
        else if (!isUtf8(utf8))
            fail(ERR_MALFORMED);
        else
            m_cbor.appendTextString(utf8.constData(), utf8.size());
    }

    void writeTuple(const Tuple &tuple, int depth)
    {
        const int size = tuple.size();
        if (depth > MaxNesting || size > MaxFields)
            fail(ERR_TOO_LARGE);
        m_cbor.startArray(2);
        writeText(tuple.class_name());
        m_cbor.startArray(static_cast<quint64>(size));
        for (int i = 0; i < size && m_status == OK; ++i) {
            m_cbor.startArray(3);
            writeText(tuple.name(i));
            writeValue(tuple.value(i), depth);
            endArray();
            m_status = status();
        }
        endArray();
        endArray();
    }

    void endArray()
    {
        // After a failure the array is not complete, and nobody will see it.
        if (m_status == OK)
            m_cbor.endArray();
    }

private:
    void writeValue(const Value &value, int depth)
    {
        m_cbor.append(int(value.type()));
        switch (value.type()) {
        case T_BOOL:
            m_cbor.append(value.toBool());
            break;
        case T_INT:
            m_cbor.append(value.toInt());
            break;
        case T_DOUBLE:
            m_cbor.append(value.toDouble());
            break;
        case T_ASTRING:
            writeText(value.toAString().toUtf8());
            break;
        case T_TUPLE:
            writeTuple(value.toTuple(), depth + 1);
            break;
        case T_TIME_DATE:
            m_cbor.append(value.toTimeDate().milliseconds());
            break;
        case T_TIME_PERIOD:
            m_cbor.append(value.toTimePeriod().microseconds());
            break;
        case T_NONE: // never in a tuple
            fail(ERR_MALFORMED);
            break;
        }
    }

    void fail(Status status)
    {
        if (m_status == OK)
            m_status = status;
    }

    FrameDevice m_device;
    QCborStreamWriter m_cbor;
    Status m_status = OK;
};

/// Reads one message; the first thing that is not as expected stops it.
class Decoder
{
public:
    explicit Decoder(const QByteArray &payload)
        : m_cbor(payload)
        , m_size(payload.size())
    { }

    Status status() const { return m_status; }

    /// The kind, which comes first, decides how many \p elements there must be.
    bool enterMessage(quint64 &elements)
    {
        if (!expect(m_cbor.isArray() && m_cbor.isLengthKnown()))
            return false;
        elements = m_cbor.length();
        return expect(m_cbor.enterContainer());
    }

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
        // A text in one piece that lies within the message: its length is not believed further than that.
        if (!expect(m_cbor.isString() && m_cbor.isLengthKnown() && m_cbor.length() <= quint64(m_size)))
            return false;
        utf8.resize(int(m_cbor.length()));
        const auto chunk = m_cbor.readStringChunk(utf8.data(), utf8.size());
        if (!expect(chunk.status == QCborStreamReader::Ok && chunk.data == utf8.size()))
            return false;
        const auto end = m_cbor.readStringChunk(nullptr, 0);
        return expect(end.status == QCborStreamReader::EndOfString && isUtf8(utf8));
    }

    bool readTuple(Tuple &tuple, int depth)
    {
        if (depth > MaxNesting) {
            m_status = ERR_TOO_LARGE;
            return false;
        }
        QByteArray className;
        if (!enterArray(2) || !readText(className) || !expect(m_cbor.isArray() && m_cbor.isLengthKnown()))
            return false;
        const quint64 fields = m_cbor.length(); // announced; whether they are there remains to be seen
        if (!expect(m_cbor.enterContainer()))
            return false;
        tuple = Tuple();
        tuple.set_class_name(className);
        TupleBuilder::reserve(tuple, int(qMin<quint64>(fields, FewFields)));
        QSet<QByteArray> names;
        while (m_cbor.hasNext()) {
            if (tuple.size() == MaxFields) {
                m_status = ERR_TOO_LARGE;
                return false;
            }
            if (!readField(tuple, names, depth))
                return false;
        }
        return leaveArray() && leaveArray();
    }

    /// All bytes of the payload belong to the message.
    bool hasConsumed(int size) { return expect(m_cbor.currentOffset() == size); }

private:
    bool readField(Tuple &tuple, QSet<QByteArray> &names, int depth)
    {
        QByteArray name;
        qint64 type = T_NONE;
        Value value;
        if (!enterArray(3) || !readText(name) || !readInteger(type, T_BOOL, T_TIME_PERIOD)
            || !readValue(static_cast<Types>(type), value, depth))
            return false;
        // A name twice could be read two ways.
        if (!expect(isNew(name, tuple, names)))
            return false;
        TupleBuilder::append(tuple, name, value);
        return leaveArray();
    }

    /// Looks among the few names of a record itself, and in a set where there are many.
    static bool isNew(const QByteArray &name, const Tuple &tuple, QSet<QByteArray> &names)
    {
        const int size = tuple.size();
        if (size < FewFields)
            return !TupleBuilder::contains(tuple, name);
        if (size == FewFields) {
            for (int i = 0; i < size; ++i)
                names.insert(tuple.name(i));
        }
        const int before = names.size();
        names.insert(name);
        return names.size() > before;
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
    const int m_size;
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

Status encode(const Message &message, QByteArray &frame)
{
    Encoder encoder(frame);
    QCborStreamWriter &cbor = encoder.cbor();
    cbor.startArray(elementsOf(message.kind));
    cbor.append(int(message.kind));
    cbor.append(message.number);
    switch (message.kind) {
    case Hello:
        encoder.writeText(message.interfaceName);
        encoder.writeText(message.serviceName);
        break;
    case Welcome:
        cbor.append(message.status);
        encoder.writeText(message.interfaceName);
        encoder.writeText(message.serviceName);
        cbor.append(message.session);
        break;
    case Call:
        cbor.append(message.session);
        encoder.writeTuple(message.tuple, 1);
        break;
    case Reply:
        cbor.append(message.status);
        encoder.writeTuple(message.tuple, 1);
        break;
    }
    encoder.endArray();
    const Status status = encoder.status();
    if (status == OK) {
        frame.truncate(encoder.written());
        qToBigEndian(static_cast<quint32>(frame.size() - HeaderSize), frame.data());
    } else {
        frame.clear();
    }
    return status;
}

Status decode(const QByteArray &payload, Message &message)
{
    message = Message();
    if (payload.size() > MaxPayload)
        return ERR_TOO_LARGE;
    Decoder decoder(payload);
    quint64 elements = 0;
    qint64 kind = 0;
    qint64 number = 0;
    if (!decoder.enterMessage(elements) || !decoder.readInteger(kind, Hello, Reply)
        || !decoder.readInteger(number, 0, std::numeric_limits<quint32>::max()))
        return ERR_MALFORMED;
    message.kind = static_cast<Kind>(kind);
    message.number = static_cast<quint32>(number);
    if (elements != elementsOf(message.kind))
        return ERR_MALFORMED;
    if (!readBody(decoder, message) || !decoder.leaveArray() || !decoder.hasConsumed(payload.size()))
        return decoder.status() == OK ? ERR_MALFORMED : decoder.status();
    return OK;
}

quint32 payloadSize(const QByteArray &header)
{
    return header.size() < HeaderSize ? 0 : payloadSize(header.constData());
}

quint32 payloadSize(const char *header)
{
    return qFromBigEndian<quint32>(header);
}

} // namespace protocol
} // namespace tessel
