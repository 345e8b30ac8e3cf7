// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <rapidcheck.h>

#include <cstring>

#include "framebuffer.h"
#include "protocol.h"
#include "testtessel.h"

using namespace tessel;
using Next = FrameBuffer::Next;

namespace {

/// Puts \p bytes in as far as there is room for them. \return how many that were
int put(FrameBuffer &frames, const QByteArray &bytes)
{
    int size = 0;
    char *const room = frames.room(size);
    const int taken = qMin(size, bytes.size());
    std::memcpy(room, bytes.constData(), std::size_t(taken));
    frames.add(taken);
    return taken;
}

} // namespace

class TstTesselFrames : public QObject
{
    Q_OBJECT

private slots:
    void framesInAnyPieces_comeOutWholeAndInTheirOrder()
    {
        QVERIFY(rc::check("frames cut anywhere", [] {
            const auto sizes = *rc::gen::container<std::vector<int>>(
                rc::gen::oneOf(rc::gen::inRange(0, 20), rc::gen::inRange(4000, 9000)));
            QByteArray stream;
            QList<QByteArray> payloads;
            for (const int size : sizes) {
                payloads << QByteArray(size, char('a' + payloads.size() % 26));
                stream += framed(payloads.last());
            }
            FrameBuffer frames;
            QList<QByteArray> out;
            int given = 0;
            while (given < stream.size()) {
                const int piece = *rc::gen::oneOf(rc::gen::inRange(1, 8), rc::gen::inRange(1, 20000));
                given += put(frames, stream.mid(given, piece));
                QByteArray payload;
                Next next = frames.next(payload);
                for (; next == Next::Frame; next = frames.next(payload))
                    out << QByteArray(payload.constData(), payload.size());
                RC_ASSERT(next == Next::None);
            }
            RC_ASSERT(out == payloads);
            RC_ASSERT(frames.isEmpty());
        }));
    }

    void payload_staysUntilThereIsRoomForMore()
    {
        FrameBuffer frames;
        put(frames, framed("first") + framed("second") + header(100) + "half");
        QByteArray first;
        QByteArray second;
        QByteArray none;
        QCOMPARE(frames.next(first), Next::Frame);
        QCOMPARE(frames.next(second), Next::Frame);
        QCOMPARE(frames.next(none), Next::None);
        QCOMPARE(first, QByteArray("first"));
        QCOMPARE(second, QByteArray("second"));
        QVERIFY(!frames.isEmpty());
        QCOMPARE(put(frames, QByteArray(96, '.')), 96);
        QCOMPARE(frames.next(first), Next::Frame);
        QCOMPARE(first, "half" + QByteArray(96, '.'));
    }

    void lengthAboveTheLimit_isTooLargeHoweverLittleHasCome_data()
    {
        QTest::addColumn<quint32>("size");
        QTest::addColumn<int>("next");
        QTest::newRow("the most") << quint32(protocol::MaxPayload) << int(Next::None);
        QTest::newRow("one more") << quint32(protocol::MaxPayload) + 1 << int(Next::TooLarge);
        QTest::newRow("2 GB") << quint32(0x7fffffff) << int(Next::TooLarge);
        QTest::newRow("4 GB") << quint32(0xffffffff) << int(Next::TooLarge);
    }
    void lengthAboveTheLimit_isTooLargeHoweverLittleHasCome()
    {
        QFETCH(quint32, size);
        QFETCH(int, next);
        FrameBuffer frames;
        QByteArray payload;
        put(frames, header(size).left(3));
        QCOMPARE(frames.next(payload), Next::None);
        put(frames, header(size).mid(3));
        QCOMPARE(int(frames.next(payload)), next);
    }

    void memory_isThatOfTheFrameUnderWay()
    {
        FrameBuffer frames;
        int size = 0;
        frames.room(size);
        QVERIFY2(size <= 4096, qPrintable(QString::number(size)));
        QByteArray whole = framed(QByteArray(protocol::MaxPayload, 'x'));
        QByteArray payload;
        while (!whole.isEmpty()) {
            frames.room(size);
            QVERIFY(size <= protocol::HeaderSize + protocol::MaxPayload);
            whole.remove(0, put(frames, whole));
            const Next next = frames.next(payload);
            QCOMPARE(next, whole.isEmpty() ? Next::Frame : Next::None);
        }
        QCOMPARE(payload, QByteArray(protocol::MaxPayload, 'x'));
        frames.room(size);
        QVERIFY2(size <= 4096, qPrintable(QString::number(size)));
    }

    void clear_forgetsWhatHasCome()
    {
        FrameBuffer frames;
        put(frames, header(10) + "half");
        frames.clear();
        QVERIFY(frames.isEmpty());
        put(frames, framed("whole"));
        QByteArray payload;
        QCOMPARE(frames.next(payload), Next::Frame);
        QCOMPARE(payload, QByteArray("whole"));
    }
};

QTEST_GUILESS_MAIN(TstTesselFrames)
#include "tst_tessel_frames.moc"
