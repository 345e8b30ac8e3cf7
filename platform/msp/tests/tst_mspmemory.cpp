// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What a message of the link may take: room for what has come, not for what it announces; n bytes of it no
// more than 40 n + 20 MB.
#include <QTest>

#include "memorypeak.h"
#include <mspcodec.h>

namespace {

/// A map of many fields with different names, each of \p value, up to the longest payload.
QByteArray fullOf(const QByteArray &value)
{
    constexpr int nameSize = 3;
    QByteArray payload("\xbf");
    for (int i = 0; payload.size() + 1 + nameSize + value.size() < int(msp::maximumPayload); ++i)
        payload += char(0x60 + nameSize) + QByteArray::number(i, 36).rightJustified(nameSize, '0') + value;
    return payload + '\xff';
}

/// A text in \p count pieces of one byte.
QByteArray pieces(int count)
{
    return '\x7f' + QByteArray("\x61x").repeated(count) + '\xff';
}

} // namespace

class TstMspMemory : public QObject
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
        QTest::newRow("fields of nothing") << fullOf("\xf6");
        QTest::newRow("fields of numbers") << fullOf("\x18\x64");
        QTest::newRow("fields of texts") << fullOf("\x61x");
        QTest::newRow("fields of lists in lists") << fullOf("\x81\x81\x81\x80");
        QTest::newRow("one text in pieces") << "\xa1\x61x" + pieces(32000);
        QTest::newRow("a text of 2 GB announced") << QByteArray::fromHex("a161787a7fffffef");
        QTest::newRow("bytes of 2^62 announced") << QByteArray::fromHex("a161785b4000000000000000");
        QTest::newRow("a list of 2^62 announced") << QByteArray::fromHex("a161789b4000000000000000");
        QTest::newRow("a map of 2^62 announced") << QByteArray::fromHex("bb4000000000000000");
    }
    void decoding_takesNoMoreThanFortyTimesTheMessage()
    {
        QFETCH(QByteArray, payload);
        QVERIFY(payload.size() <= int(msp::maximumPayload));
        QVERIFY(!msp::decode(payload)); // and there is nothing in it that would be kept
        memorypeak::verify(payload.size(), [&] { msp::decode(payload); });
    }

    void stream_takesNoMoreThanWhatHasCome()
    {
        // A thousand times the longest frame, in pieces, and then one that announces 4 GB.
        const QByteArray frame = msp::frame(QByteArray(int(msp::maximumPayload), 'x'));
        memorypeak::verify(frame.size(), [&] {
            msp::FrameReader reader;
            for (int i = 0; i < 1000; ++i) {
                reader.append(frame.left(1000));
                reader.append(frame.mid(1000));
                while (reader.next()) { }
            }
            reader.append(QByteArray::fromHex("ffffffff") + frame);
            reader.next();
        });
    }
};

QTEST_APPLESS_MAIN(TstMspMemory)
#include "tst_mspmemory.moc"
