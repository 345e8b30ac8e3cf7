// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What a message may take: room for what has come, not for what it announces; n bytes of it no more than
// 40 n + 20 MB.
#include <QTest>

#include "memorypeak.h"
#include "protocol.h"

using namespace tessel;

namespace {

/// The head of a text or an array (\p major) of \p size bytes or elements.
QByteArray head(int major, int size)
{
    QByteArray bytes(1, char(major << 5 | 25));
    return bytes.append(char(size >> 8)).append(char(size));
}

QByteArray tuple(const QByteArrayList &fields)
{
    return QByteArray::fromHex("8260") + head(4, fields.size()) + fields.join();
}

/// As many fields of one byte's name as there are, each of \p type.
QByteArrayList fields(int count, int type, const QByteArray &value)
{
    QByteArrayList list;
    for (int i = 0; i < count; ++i) {
        const QByteArray name = QByteArray::number(i, 36);
        list.append(QByteArray::fromHex("83") + char(0x60 + name.size()) + name + char(type) + value);
    }
    return list;
}

/// A call whose tuple is full of \p inner, up to the longest payload.
QByteArray callFullOf(const QByteArray &inner)
{
    const QByteArray start = QByteArray::fromHex("84030709");
    const int perField = inner.size() + 6;
    const int count = qMin((protocol::MaxPayload - 16) / perField, int(protocol::MaxFields));
    return start + tuple(fields(count, T_TUPLE, inner));
}

const QByteArray emptyTuple = QByteArray::fromHex("826080");
const QByteArray emptyText("\x60");

} // namespace

class TstTesselMemory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!memorypeak::isMeasurable())
            QSKIP("The sanitizers' own memory would be measured.");
    }

    void decoding_takesNoMoreThanFortyTimesTheMessage_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QByteArray &payload, Status status) {
            QTest::newRow(name) << payload << int(status);
        };
        row("empty tuples", callFullOf(tuple(fields(36, T_TUPLE, emptyTuple))), OK);
        row("tuples of one text", callFullOf(tuple(fields(1, T_ASTRING, emptyText))), OK);
        row("tuples of seventeen texts", callFullOf(tuple(fields(17, T_ASTRING, emptyText))), OK);
        row("texts", callFullOf(tuple(fields(900, T_ASTRING, emptyText))), OK);
        row("flags", callFullOf(tuple(fields(1290, T_BOOL, "\xf5"))), OK);
        row("one text",
            QByteArray::fromHex("84030709") + "\x82\x7a" + QByteArray::fromHex("000f0000")
                + QByteArray(0xf0000, 'x') + '\x80',
            OK);
        row("text of 2 GB announced", QByteArray::fromHex("84030709827a7fffffff80"), ERR_MALFORMED);
        row("text of the whole message announced",
            QByteArray::fromHex("84030709827a000fffff") + QByteArray(0xf0000, 'x'), ERR_MALFORMED);
        row("4 billion fields announced",
            QByteArray::fromHex("84030709"
                                "82609affffffff"),
            ERR_MALFORMED);
        QByteArray nested = QByteArray::fromHex("84030709");
        for (int i = 0; i <= protocol::MaxNesting; ++i)
            nested += QByteArray::fromHex("826099ffff83616105");
        row("65,535 fields announced at each level", nested, ERR_TOO_LARGE);
    }
    void decoding_takesNoMoreThanFortyTimesTheMessage()
    {
        QFETCH(QByteArray, payload);
        QFETCH(int, status);
        QVERIFY(payload.size() <= protocol::MaxPayload);
        protocol::Message message;
        QCOMPARE(int(protocol::decode(payload, message)), status);
        message = protocol::Message();
        memorypeak::verify(payload.size(), [&] { protocol::decode(payload, message); });
    }
};

QTEST_APPLESS_MAIN(TstTesselMemory)
#include "tst_tessel_memory.moc"
