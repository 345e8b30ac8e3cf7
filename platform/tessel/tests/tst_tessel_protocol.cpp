// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

#include <rapidcheck.h>

#include "protocol.h"
#include "testtuples.h"

using namespace tessel;
using namespace tessel::protocol;

namespace {

QByteArray payloadOf(const Message &message)
{
    QByteArray frame;
    return encode(message, frame) == OK ? frame.mid(HeaderSize) : QByteArray();
}

Message callOf(const Tuple &request, quint32 number = 7, qint64 session = 9)
{
    Message message;
    message.kind = Call;
    message.number = number;
    message.session = session;
    message.tuple = request;
    return message;
}

Tuple nested(int depth)
{
    Tuple tuple("T");
    for (int i = 1; i < depth; ++i) {
        Tuple outer("T");
        outer.set("in", Value(tuple));
        tuple = outer;
    }
    return tuple;
}

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

Message sample(int kind)
{
    Message message = callOf(Tuple("com.halvar.nap.NAPServer.startMeasure"));
    message.kind = static_cast<Kind>(kind);
    message.tuple.set("autoStop", Value(true));
    message.tuple.set("text", Value(AString(QStringLiteral("é"))));
    Tuple data("com::halvar::nap::MeasureCustomData");
    data.set("at", Value(TimeDate(1709164800000)));
    data.set("for", Value(TimePeriod(-5)));
    message.tuple.set("customData", Value(data));
    message.interfaceName = "com.halvar.nap.NAPServer";
    message.serviceName = "nap_server";
    message.status = -1000014;
    return message;
}

bool same(const Message &a, const Message &b)
{
    if (a.kind != b.kind || a.number != b.number)
        return false;
    switch (a.kind) {
    case Hello:
        return a.interfaceName == b.interfaceName && a.serviceName == b.serviceName;
    case Welcome:
        return a.status == b.status && a.interfaceName == b.interfaceName && a.serviceName == b.serviceName
            && a.session == b.session;
    case Call:
        return a.session == b.session && identical(a.tuple, b.tuple);
    case Reply:
        return a.status == b.status && identical(a.tuple, b.tuple);
    }
    return false;
}

/// The examples of the wire format's page, in their order.
QVector<Message> documented()
{
    constexpr qint64 session = 0x0123456789abcdef;
    Message hello;
    hello.kind = Hello;
    hello.number = 1;
    hello.interfaceName = "com.halvar.nap.NAPServer";
    hello.serviceName = "nap_server";
    Message welcome = hello;
    welcome.kind = Welcome;
    welcome.session = session;
    Message nobody;
    nobody.kind = Welcome;
    nobody.number = 1;
    nobody.status = ERR_NO_SUCH_SERVICE;

    Message start = callOf(Tuple("com.halvar.nap.NAPServer.startMeasure"), 2, session);
    start.tuple.set("customData", Value(Tuple("com::halvar::nap::MeasureCustomData")));
    start.tuple.set("autoStop", Value(true));
    Message started;
    started.kind = Reply;
    started.number = 2;
    Message date = started;
    date.number = 3;
    date.tuple.set("date", Value(TimeDate(2025, 12, 31)));

    Tuple detection("com::halvar::nap::DetectionResult");
    detection.set("value", Value(1.25));
    detection.set("sigma", Value(0.05));
    detection.set("decision", Value(0));
    Tuple notification("com::halvar::nap::NotificationMessage");
    notification.set("id", Value(AString("NAP_DETECTION")));
    notification.set("detection", Value(detection));
    Message onMessage = callOf(Tuple("com.halvar.nap.NotificationObserver.onMessage"), 300, 7);
    onMessage.tuple.set("message", Value(notification));

    Message dropped;
    dropped.kind = Reply;
    dropped.status = ERR_MALFORMED;
    return {hello, welcome, nobody, start, started, date, onMessage, dropped};
}

Tuple tuplesOf(int count, int fields)
{
    Tuple inner("T");
    for (int i = 0; i < fields; ++i)
        inner.set(QByteArray::number(i, 36), Value(true));
    Tuple outer("T");
    for (int i = 0; i < count; ++i)
        outer.set(QByteArray::number(i), Value(inner));
    return outer;
}

/// In ns; -1 when it is not read.
qint64 timeToDecode(const QByteArray &payload)
{
    Message message;
    QElapsedTimer timer;
    timer.start();
    return decode(payload, message) == OK ? timer.nsecsElapsed() : -1;
}

} // namespace

class TstTesselProtocol : public QObject
{
    Q_OBJECT

private slots:
    void decodingWhatWasEncoded_givesTheMessageBack()
    {
        const bool holds = rc::check([] {
            Message message;
            message.kind = static_cast<Kind>(*rc::gen::inRange(1, 5));
            message.number = *rc::gen::arbitrary<quint32>();
            message.status = *rc::gen::arbitrary<int>();
            message.session = *rc::gen::inRange<qint64>(0, std::numeric_limits<qint64>::max());
            message.interfaceName = *anyText();
            message.serviceName = *anyText();
            message.tuple = *anyTuple(3);
            QByteArray frame;
            RC_ASSERT(encode(message, frame) == OK);
            RC_ASSERT(payloadSize(frame) == quint32(frame.size() - HeaderSize));
            Message decoded;
            RC_ASSERT(decode(frame.mid(HeaderSize), decoded) == OK);
            RC_ASSERT(same(message, decoded));
            QByteArray again;
            RC_ASSERT(encode(decoded, again) == OK);
            RC_ASSERT(again == frame);
        });
        QVERIFY(holds);
    }

    void bytesOfNoMessage_areNeverTakenForOne()
    {
        const bool holds = rc::check([] {
            const auto bytes = *rc::gen::arbitrary<std::vector<char>>();
            Message message;
            // By chance alone no message comes about: the shortest one has eight bytes of a fixed pattern.
            RC_ASSERT(decode(QByteArray(bytes.data(), int(bytes.size())), message) == ERR_MALFORMED);
        });
        QVERIFY(holds);
    }

    void aFlippedByte_isRefusedOrReadAsAnotherWholeMessage()
    {
        const bool holds = rc::check([] {
            QByteArray payload = payloadOf(sample(*rc::gen::inRange(1, 5)));
            const int at = *rc::gen::inRange(0, payload.size());
            payload[at] = static_cast<char>(payload[at] ^ *rc::gen::inRange(1, 256));
            Message message;
            const Status status = decode(payload, message);
            if (status == OK) {
                QByteArray frame;
                RC_ASSERT(encode(message, frame) == OK);
                Message again;
                RC_ASSERT(decode(frame.mid(HeaderSize), again) == OK);
                RC_ASSERT(same(message, again));
            } else {
                RC_ASSERT(status == ERR_MALFORMED || status == ERR_TOO_LARGE);
            }
        });
        QVERIFY(holds);
    }

    void everyTruncation_isMalformed_data()
    {
        QTest::addColumn<int>("kind");
        for (int kind = Hello; kind <= Reply; ++kind)
            QTest::addRow("kind %d", kind) << kind;
    }
    void everyTruncation_isMalformed()
    {
        QFETCH(int, kind);
        const QByteArray payload = payloadOf(sample(kind));
        QVERIFY(payload.size() > 20);
        Message message;
        QCOMPARE(int(decode(payload, message)), int(OK));
        for (int size = 0; size < payload.size(); ++size)
            QVERIFY2(decode(payload.left(size), message) == ERR_MALFORMED, qPrintable(QString::number(size)));
    }

    void bytesAfterTheMessage_areMalformed_data() { everyTruncation_isMalformed_data(); }
    void bytesAfterTheMessage_areMalformed()
    {
        QFETCH(int, kind);
        const QByteArray payload = payloadOf(sample(kind));
        Message message;
        for (const char *more : {"00", "80", "f6", "ff"})
            QCOMPARE(int(decode(payload + hex(more), message)), int(ERR_MALFORMED));
        QCOMPARE(int(decode(payload + payload, message)), int(ERR_MALFORMED));
    }

    void whatIsNotOurs_isMalformed_data()
    {
        // A call: 84 03 07 09 [class, fields]; a field: 83 name type value.
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not an array") << hex("01");
        QTest::newRow("map") << hex("a10307");
        QTest::newRow("empty array") << hex("80");
        QTest::newRow("array without an end") << hex("9f03070982617880ff");
        QTest::newRow("tagged") << hex("c1840307098261788 0");
        QTest::newRow("unknown kind 0") << hex("8400070982617880");
        QTest::newRow("unknown kind 5") << hex("8405070982617880");
        QTest::newRow("negative number") << hex("8403200982617880");
        QTest::newRow("number beyond 32 bits") << hex("84031b00000001000000000982617880");
        QTest::newRow("session negative") << hex("8403072082617880");
        QTest::newRow("session of 64 bits") << hex("8403071b800000000000000082617880");
        QTest::newRow("one element too few") << hex("83030709");
        QTest::newRow("one element too many") << hex("8503070982617880 00");
        QTest::newRow("class name not a text") << hex("84030709820180");
        QTest::newRow("class name as bytes") << hex("840307098241 7880");
        QTest::newRow("class name in pieces") << hex("84030709827f6178ff80");
        QTest::newRow("class name of half a letter") << hex("840307098261c380");
        QTest::newRow("class name of 2 GB") << hex("84030709827a7fffffff80");
        QTest::newRow("class name of 2^63 bytes") << hex("84030709827b800000000000000080");
        QTest::newRow("fields not an array") << hex("8403070982617800");
        QTest::newRow("fields without an end") << hex("840307098261789fff");
        QTest::newRow("a billion fields announced") << hex("840307098261789a3b9aca00");
        QTest::newRow("field not an array") << hex("840307098261788101");
        QTest::newRow("field of two") << hex("8403070982617881 82616102");
        QTest::newRow("type 0") << hex("84030709826178818361 6100f6");
        QTest::newRow("type 8") << hex("84030709826178818361610801");
        QTest::newRow("negative type") << hex("84030709826178818361612001");
        QTest::newRow("int as bool") << hex("84030709826178818361610101");
        QTest::newRow("bool as int") << hex("840307098261788183616102f5");
        QTest::newRow("int of 33 bits") << hex("8403070982617881836161021b0000000080000000");
        QTest::newRow("negative int of 33 bits") << hex("8403070982617881836161023a80000000");
        QTest::newRow("int as double") << hex("84030709826178818361610301");
        QTest::newRow("float of 32 bits") << hex("840307098261788183616103fa3f800000");
        QTest::newRow("text as tuple") << hex("8403070982617881836161056161");
        QTest::newRow("double as date") << hex("840307098261788183616106fb0000000000000000");
        QTest::newRow("date beyond 64 bits") << hex("8403070982617881836161061b8000000000000000");
        QTest::newRow("date below 64 bits") << hex("8403070982617881836161063b8000000000000000");
        QTest::newRow("date of -2^64") << hex("8403070982617881836161063bffffffffffffffff");
        QTest::newRow("null") << hex("840307098261788183616102f6");
        QTest::newRow("a name twice") << hex("840307098261788283616102018361610202");
        QTest::newRow("status beyond 32 bits") << hex("8404071b0000000080000000 82617880");
    }
    void whatIsNotOurs_isMalformed()
    {
        QFETCH(QByteArray, payload);
        Message message;
        QCOMPARE(int(decode(payload, message)), int(ERR_MALFORMED));
    }

    void extremesOfTheTypes_areRead()
    {
        Message message;
        QCOMPARE(int(decode(hex("8403070982617880"), message)), int(OK));
        QCOMPARE(int(decode(hex("8403070982617881836161021a7fffffff"), message)), int(OK));
        QCOMPARE(message.tuple.get("a").toInt(), std::numeric_limits<int>::max());
        QCOMPARE(int(decode(hex("8403070982617881836161023a7fffffff"), message)), int(OK));
        QCOMPARE(message.tuple.get("a").toInt(), std::numeric_limits<int>::min());
        QCOMPARE(int(decode(hex("8403070982617881836161063b7fffffffffffffff"), message)), int(OK));
        QCOMPARE(message.tuple.get("a").toTimeDate().milliseconds(), std::numeric_limits<qint64>::min());
        // An integer need not be written in its shortest form.
        QCOMPARE(int(decode(hex("840307098261788183616102190001"), message)), int(OK));
        QCOMPARE(message.tuple.get("a").toInt(), 1);
    }

    void numberOfABadMessage_isKeptForTheAnswer()
    {
        Message message;
        QCOMPARE(int(decode(hex("8403182a09826178818361610801"), message)), int(ERR_MALFORMED));
        QCOMPARE(message.number, quint32(42));
    }

    void nestingOf32_goes_andOf33_isTooLarge()
    {
        const QByteArray payload = payloadOf(callOf(nested(MaxNesting)));
        QVERIFY(!payload.isEmpty());
        Message message;
        QCOMPARE(int(decode(payload, message)), int(OK));
        QVERIFY(message.tuple == nested(MaxNesting));
        QByteArray frame("left over");
        QCOMPARE(int(encode(callOf(nested(MaxNesting + 1)), frame)), int(ERR_TOO_LARGE));
        QVERIFY(frame.isEmpty());
        // The same from a peer with other limits: the innermost empty tuple is given a field that holds one
        // more.
        QVERIFY(payload.endsWith(hex("82615480")));
        const QByteArray deeper = payload.left(payload.size() - 1) + hex("818362696e0582615480");
        QCOMPARE(int(decode(deeper, message)), int(ERR_TOO_LARGE));
    }

    void nestingOfAnyOtherKind_isMalformedAtOnce()
    {
        Message message;
        QCOMPARE(int(decode(QByteArray(100000, '\x81'), message)), int(ERR_MALFORMED));
        QCOMPARE(int(decode(hex("8403070982617881836161") + QByteArray(100000, '\x83'), message)),
                 int(ERR_MALFORMED));
    }

    void payloadOverOneMebibyte_isTooLarge()
    {
        Tuple tuple("T");
        tuple.set("text", Value(AString(QByteArray(MaxPayload - 100, 'x'))));
        const QByteArray payload = payloadOf(callOf(tuple));
        QVERIFY(payload.size() > MaxPayload - 100);
        Message message;
        QCOMPARE(int(decode(payload, message)), int(OK));
        QVERIFY(message.tuple == tuple);
        tuple.set("text", Value(AString(QByteArray(MaxPayload, 'x'))));
        QByteArray frame;
        QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_TOO_LARGE));
        QCOMPARE(int(decode(QByteArray(MaxPayload + 1, '\0'), message)), int(ERR_TOO_LARGE));
    }

    void payloadOfOneMebibyte_goesAndOneByteMoreDoesNot()
    {
        const auto withText = [](int size) {
            Tuple tuple("T");
            tuple.set("text", Value(AString(QByteArray(size, 'x'))));
            return callOf(tuple);
        };
        constexpr int aroundIt = 100 * 1024;
        const int overhead = payloadOf(withText(aroundIt)).size() - aroundIt;
        QByteArray frame;
        QCOMPARE(int(encode(withText(MaxPayload - overhead), frame)), int(OK));
        QCOMPARE(frame.size(), HeaderSize + MaxPayload);
        QCOMPARE(int(encode(withText(MaxPayload - overhead + 1), frame)), int(ERR_TOO_LARGE));
        QVERIFY(frame.isEmpty());
    }

    void byteThatIsNotUtf8_isFoundWhereverItIs()
    {
        for (int size = 1; size < 25; ++size) {
            for (int i = 0; i < size; ++i) {
                QByteArray text(size, 'x');
                Tuple tuple(text.constData());
                QByteArray payload = payloadOf(callOf(tuple));
                QCOMPARE(payload.count(text), 1);
                payload.replace(payload.indexOf(text) + i, 1, "\xff");
                Message message;
                QCOMPARE(int(decode(payload, message)), int(ERR_MALFORMED));
                text[i] = char(0xff);
                tuple.set_class_name(text);
                QByteArray frame;
                QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_MALFORMED));
                text.replace(i, 1, "\xc3\xa9");
                tuple.set_class_name(text);
                QCOMPARE(int(encode(callOf(tuple), frame)), int(OK));
                QCOMPARE(int(decode(frame.mid(HeaderSize), message)), int(OK));
                QVERIFY(message.tuple == tuple);
            }
        }
    }

    void textsOverOneMebibyteTogether_areTooLarge()
    {
        const QByteArray half(600 * 1024, 'x'); // one, shared
        Message hello;
        hello.interfaceName = half;
        hello.serviceName = half;
        QByteArray frame("before");
        QCOMPARE(int(encode(hello, frame)), int(ERR_TOO_LARGE));
        QVERIFY(frame.isEmpty());
        Tuple tuple("T");
        for (int i = 0; i < MaxFields; ++i)
            tuple.set(QByteArray::number(i), Value(AString(half)));
        // 2.4 GB, of which no more than a frame is ever written.
        QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_TOO_LARGE));
        QVERIFY(frame.isEmpty());
    }

    void fieldsOver4096_areTooLarge()
    {
        Tuple tuple("T");
        for (int i = 0; i < MaxFields; ++i)
            tuple.set(QByteArray::number(i), Value(i));
        QByteArray payload = payloadOf(callOf(tuple));
        Message message;
        QCOMPARE(int(decode(payload, message)), int(OK));
        QVERIFY(message.tuple == tuple);
        tuple.set("one more", Value(1));
        QByteArray frame;
        QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_TOO_LARGE));
        QCOMPARE(payload.count(hex("991000")), 1);
        payload.replace(hex("991000"), hex("991001")).append(hex("8361780201"));
        QCOMPARE(int(decode(payload, message)), int(ERR_TOO_LARGE));
    }

    void aNameTwice_isFoundWhereverItIs_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {3, 15, 16, 17, 18, 40})
            QTest::addRow("%d fields", size) << size;
    }
    void aNameTwice_isFoundWhereverItIs()
    {
        QFETCH(int, size);
        Tuple tuple("T");
        for (int i = 0; i < size; ++i)
            tuple.set(QByteArray::number(100 + i), Value(true));
        const QByteArray payload = payloadOf(callOf(tuple));
        Message message;
        QCOMPARE(int(decode(payload, message)), int(OK));
        for (const int twice : {0, size / 2, size - 2}) {
            QByteArray bad = payload;
            QCOMPARE(bad.count(QByteArray::number(100 + size - 1)), 1);
            bad.replace(QByteArray::number(100 + size - 1), QByteArray::number(100 + twice));
            QCOMPARE(int(decode(bad, message)), int(ERR_MALFORMED));
        }
    }

    void aMessageFullOfFields_isReadInTheTimeOfItsBytes()
    {
        // Looking every name up among the others of its tuple would make the large tuples some sixteen times
        // as slow.
        constexpr int fewTuples = 36;
        constexpr int manyTuples = 1152;
        constexpr int fewFields = MaxFields * fewTuples / manyTuples;
        const QByteArray large = payloadOf(callOf(tuplesOf(fewTuples, MaxFields)));
        const QByteArray small = payloadOf(callOf(tuplesOf(manyTuples, fewFields)));
        QVERIFY(large.size() > MaxPayload * 8 / 10);
        QVERIFY(small.size() > MaxPayload * 6 / 10);
        qint64 timeOfLarge = std::numeric_limits<qint64>::max();
        qint64 timeOfSmall = timeOfLarge;
        for (int i = 0; i < 5; ++i) {
            timeOfLarge = std::min(timeOfLarge, timeToDecode(large));
            timeOfSmall = std::min(timeOfSmall, timeToDecode(small));
        }
        QVERIFY(timeOfLarge > 0 && timeOfSmall > 0);
        QVERIFY2(timeOfLarge < 5 * timeOfSmall,
                 qPrintable(QStringLiteral("%1 and %2 ns").arg(timeOfLarge).arg(timeOfSmall)));
    }

    void textThatIsNotUtf8_isNotSent()
    {
        Tuple tuple("T");
        tuple.set("text", Value(AString(QByteArray("\xff"))));
        QByteArray frame;
        QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_MALFORMED));
        QCOMPARE(int(encode(callOf(Tuple("\xc3")), frame)), int(ERR_MALFORMED));
        tuple.clear();
        tuple.set("\x80", Value(1));
        QCOMPARE(int(encode(callOf(tuple), frame)), int(ERR_MALFORMED));
    }

    void documentation_showsTheBytes()
    {
        QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/docs/wire-format.md"));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
        const QString page = QString::fromUtf8(file.readAll());
        // An example is a fenced block of lines "bytes in hexadecimal   # what they mean".
        const QRegularExpression fence(QStringLiteral("```hex\\n(.*?)```"),
                                       QRegularExpression::DotMatchesEverythingOption);
        QVector<QByteArray> examples;
        auto matches = fence.globalMatch(page);
        while (matches.hasNext()) {
            QByteArray bytes;
            const QStringList lines = matches.next().captured(1).split(QLatin1Char('\n'));
            for (const QString &line : lines)
                bytes += QByteArray::fromHex(line.section(QLatin1Char('#'), 0, 0).toLatin1());
            examples.append(bytes);
        }
        const QVector<Message> messages = documented();
        QCOMPARE(examples.size(), messages.size());
        for (int i = 0; i < messages.size(); ++i) {
            QByteArray frame;
            QCOMPARE(int(encode(messages.at(i), frame)), int(OK));
            QCOMPARE(examples.at(i).toHex(' '), frame.toHex(' '));
            Message decoded;
            QCOMPARE(int(decode(examples.at(i).mid(HeaderSize), decoded)), int(OK));
            QVERIFY(same(decoded, messages.at(i)));
        }
        // And its tables name the numbers of the code.
        for (const int status : {ERR_NO_SUCH_SERVICE, ERR_REFUSED, ERR_TIMED_OUT, ERR_PEER_GONE,
                                 ERR_MALFORMED, ERR_TOO_LARGE, ERR_NOT_IMPLEMENTED})
            QVERIFY(page.contains(QStringLiteral("| %1 | `ERR_").arg(status)));
        QVERIFY(page.contains(QStringLiteral("1 to 1,048,576 bytes")) && MaxPayload == 1048576);
    }

    void headerAnnouncesUpToFourGigabytes()
    {
        QCOMPARE(payloadSize(hex("7fffffff")), quint32(0x7fffffff));
        QCOMPARE(payloadSize(hex("ffffffff")), quint32(0xffffffff));
        QCOMPARE(payloadSize(hex("00000102")), quint32(258));
        QCOMPARE(payloadSize(hex("0001")), quint32(0));
    }
};

QTEST_GUILESS_MAIN(TstTesselProtocol)
#include "tst_tessel_protocol.moc"
