// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCborStreamWriter>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <rapidcheck.h>

#include <sys/resource.h>
#include <unistd.h>

#include <mspcodec.h>

namespace {

/// Keeps the process from taking much more memory than it has; asking for it then throws. The sanitizers' own
/// memory leaves no room for such a limit: under them there is none.
class MemoryLimit
{
public:
    MemoryLimit()
    {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        constexpr rlim_t more = 256 * 1024 * 1024;
        QFile status(
            QStringLiteral("/proc/self/statm")); // pages; the first number is what counts for the limit
        getrlimit(RLIMIT_AS, &m_before);
        if (!status.open(QIODevice::ReadOnly))
            qFatal("Cannot read %s", qPrintable(status.fileName()));
        const rlim_t pages = status.readAll().split(' ').first().toULong();
        set({pages * rlim_t(sysconf(_SC_PAGESIZE)) + more, m_before.rlim_max});
#endif
    }
    ~MemoryLimit()
    {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        set(m_before);
#endif
    }
    Q_DISABLE_COPY(MemoryLimit)

private:
    static void set(const rlimit &limit)
    {
        if (setrlimit(RLIMIT_AS, &limit) != 0)
            qFatal("Cannot limit the memory");
    }
    rlimit m_before{};
};

MSPInfo fullInfo()
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("2.1");
    info.MSPVersion = QStringLiteral("1.4");
    info.setShock(true);
    info.setShutter(true);
    info.setShockDetector(true);
    info.setDAC(true);
    info.setHighVoltage(true);
    info.setShutterPosition(true);
    info.setAbort(true);
    info.setProbe(true);
    info.setState(MSPInfo::READY_HARD);
    return info;
}

/// Each message of the documentation, in its order.
QVector<msp::Message> documented()
{
    MSPInfo shocked;
    shocked.fwVersion = QStringLiteral("2.1");
    shocked.MSPVersion = QStringLiteral("1.4");
    shocked.setShock(true);
    return {msp::InfoRequest{1}, msp::InfoReply{1, shocked}, msp::Command{2, MSPClient::RUN_HARD, QString()},
            msp::CommandReply{2, true}, msp::Event{MSPClient::SYS_ERR, 2}};
}

/// A whole message as one text, so that two of them compare field by field.
QString text(const msp::Message &message)
{
    QString result;
    QDebug stream(&result);
    if (const auto *command = std::get_if<msp::Command>(&message))
        stream << "command" << command->number << int(command->command) << command->params.isNull()
               << command->params;
    else if (const auto *request = std::get_if<msp::InfoRequest>(&message))
        stream << "info" << request->number;
    else if (const auto *reply = std::get_if<msp::CommandReply>(&message))
        stream << "success" << reply->number << reply->ok;
    else if (const auto *infoReply = std::get_if<msp::InfoReply>(&message))
        stream << "info-reply" << infoReply->number << infoReply->info;
    else if (const auto *event = std::get_if<msp::Event>(&message))
        stream << "event" << int(event->event) << event->code;
    return result;
}

QString decoded(const QByteArray &payload)
{
    const std::optional<msp::Message> message = msp::decode(payload);
    return message ? text(*message) : QStringLiteral("nothing");
}

/// A map of \p count fields, which \p fill appends.
template <typename Fill>
QByteArray map(quint64 count, Fill fill)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    writer.startMap(count);
    fill(writer);
    writer.endMap();
    return bytes;
}

void append(QCborStreamWriter &writer, const char *text)
{
    writer.append(QLatin1String(text));
}

void appendEvent(QCborStreamWriter &writer, qint64 event, qint64 code)
{
    append(writer, "type");
    append(writer, "event");
    append(writer, "event");
    writer.append(event);
    append(writer, "code");
    writer.append(code);
}

QString anyText()
{
    // Bytes that are no UTF-8 become replacement characters: any text that a QString can hold and send.
    return QString::fromUtf8(QByteArray::fromStdString(*rc::gen::arbitrary<std::string>()));
}

msp::Message anyMessage()
{
    const auto number = *rc::gen::arbitrary<quint32>();
    const auto value = *rc::gen::arbitrary<int>();
    const auto flag = [] { return *rc::gen::arbitrary<bool>(); };
    switch (*rc::gen::inRange(0, 5)) {
    case 0:
        return msp::Command{number, MSPClient::MSPCommand(value), flag() ? QString() : anyText()};
    case 1:
        return msp::InfoRequest{number};
    case 2:
        return msp::CommandReply{number, flag()};
    case 3: {
        MSPInfo info;
        info.fwVersion = anyText();
        info.MSPVersion = anyText();
        info.setShock(flag());
        info.setShutter(flag());
        info.setShockDetector(flag());
        info.setDAC(flag());
        info.setHighVoltage(flag());
        info.setShutterPosition(flag());
        info.setAbort(flag());
        info.setProbe(flag());
        info.setState(MSPInfo::MSPState(value));
        return msp::InfoReply{number, info};
    }
    default:
        return msp::Event{MSPClient::MSPEvent(value), *rc::gen::arbitrary<short>()};
    }
}

} // namespace

class TstMspCodec : public QObject
{
    Q_OBJECT
private slots:
    void anyMessage_comesBackUnchanged();
    void eachFlagOfTheInformation_hasItsOwnField_data();
    void eachFlagOfTheInformation_hasItsOwnField();
    void nullAndEmptyParams_areToldApart();
    void truncatedAtAnyByte_isNoMessage();
    void anyByteChanged_isSurvived();
    void bytesAfterTheMessage_areRefused();
    void randomBytes_areNoMessage();
    void wrongMessages_areRefused_data();
    void wrongMessages_areRefused();
    void unknownFields_areSkipped();
    void missingFlag_isNotSet();
    void deepNesting_isRefused();
    void hugeAnnouncedLengths_areRefused_data();
    void hugeAnnouncedLengths_areRefused();
    void frames_areCutAnywhere();
    void longestFrame_isReadAndLongerBreaksTheStream();
    void documentation_showsTheBytes();
    void serverName_isTheEnvironmentsOrTheConstant();
};

void TstMspCodec::anyMessage_comesBackUnchanged()
{
    QVERIFY(rc::check("decode(encode(x)) is x", [] {
        const msp::Message message = anyMessage();
        RC_ASSERT(decoded(msp::encode(message)).toStdString() == text(message).toStdString());
    }));
}

void TstMspCodec::eachFlagOfTheInformation_hasItsOwnField_data()
{
    QTest::addColumn<int>("flag");
    for (int flag = 0; flag < 8; ++flag)
        QTest::newRow(qPrintable(QString::number(flag))) << flag;
}

void TstMspCodec::eachFlagOfTheInformation_hasItsOwnField()
{
    QFETCH(const int, flag);
    const auto one = [flag](int number) { return flag == number; };
    MSPInfo info;
    info.setShock(one(0));
    info.setShutter(one(1));
    info.setShockDetector(one(2));
    info.setDAC(one(3));
    info.setHighVoltage(one(4));
    info.setShutterPosition(one(5));
    info.setAbort(one(6));
    info.setProbe(one(7));
    const std::optional<msp::Message> message = msp::decode(msp::encode(msp::InfoReply{1, info}));
    QVERIFY(message);
    const MSPInfo &back = std::get<msp::InfoReply>(*message).info;
    QCOMPARE(back.shock(), one(0));
    QCOMPARE(back.shutter(), one(1));
    QCOMPARE(back.shockDetector(), one(2));
    QCOMPARE(back.DAC(), one(3));
    QCOMPARE(back.highVoltage(), one(4));
    QCOMPARE(back.shutterPosition(), one(5));
    QCOMPARE(back.abort(), one(6));
    QCOMPARE(back.probe(), one(7));
}

void TstMspCodec::nullAndEmptyParams_areToldApart()
{
    const auto params = [](const QString &sent) {
        const auto message = msp::decode(msp::encode(msp::Command{1, MSPClient::SET_DAC, sent}));
        return std::get<msp::Command>(message.value()).params;
    };
    QVERIFY(params(QString()).isNull());
    QVERIFY(!params(QStringLiteral("")).isNull());
    QVERIFY(params(QStringLiteral("")).isEmpty());
    QCOMPARE(params(QStringLiteral("été")), QStringLiteral("été"));
}

void TstMspCodec::truncatedAtAnyByte_isNoMessage()
{
    for (const msp::Message &message : documented()) {
        const QByteArray whole = msp::encode(message);
        for (int length = 0; length < whole.size(); ++length)
            QCOMPARE(decoded(whole.left(length)), QStringLiteral("nothing"));
    }
}

void TstMspCodec::anyByteChanged_isSurvived()
{
    const QByteArray whole = msp::encode(msp::InfoReply{1, fullInfo()});
    int refused = 0;
    for (int at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray bytes = whole;
            bytes[at] = char(bytes.at(at) ^ (1 << bit));
            refused += msp::decode(bytes) ? 0 : 1;
        }
    }
    // A changed letter may rename a flag, and a changed number is another number; a good part must be
    // refused.
    QVERIFY2(refused > whole.size() * 8 / 4, qPrintable(QString::number(refused)));
}

void TstMspCodec::bytesAfterTheMessage_areRefused()
{
    QCOMPARE(decoded(msp::encode(msp::InfoRequest{1}) + '\0'), QStringLiteral("nothing"));
}

void TstMspCodec::randomBytes_areNoMessage()
{
    QVERIFY(rc::check("random bytes are no message", [] {
        const auto bytes = *rc::gen::arbitrary<std::vector<char>>();
        RC_ASSERT(!msp::decode(QByteArray(bytes.data(), int(bytes.size()))));
    }));
}

void TstMspCodec::wrongMessages_areRefused_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("no bytes") << QByteArray();
    QTest::newRow("no map") << QByteArray::fromHex("83010203");
    QTest::newRow("empty map") << QByteArray::fromHex("a0");
    QTest::newRow("no type") << map(1, [](auto &w) {
        append(w, "code");
        w.append(1);
    });
    QTest::newRow("unknown type") << map(1, [](auto &w) {
        append(w, "type");
        append(w, "reboot");
    });
    QTest::newRow("type is a number") << map(1, [](auto &w) {
        append(w, "type");
        w.append(1);
    });
    QTest::newRow("a name that is a number") << map(4, [](auto &w) {
        appendEvent(w, 1, 1);
        w.append(1);
        w.append(1);
    });
    QTest::newRow("event without a code") << map(2, [](auto &w) {
        append(w, "type");
        append(w, "event");
        append(w, "event");
        w.append(1);
    });
    QTest::newRow("code above a short") << map(3, [](auto &w) { appendEvent(w, 0, 32768); });
    QTest::newRow("code below a short") << map(3, [](auto &w) { appendEvent(w, 0, -32769); });
    QTest::newRow("event above an int") << map(3, [](auto &w) { appendEvent(w, 2147483648LL, 0); });
    // The last byte of an event is its code.
    const QByteArray event = map(3, [](auto &w) { appendEvent(w, 0, 0); });
    QTest::newRow("code of 2^64 - 1") << event.chopped(1) + QByteArray::fromHex("1bffffffffffffffff");
    QTest::newRow("code of -2^64") << event.chopped(1) + QByteArray::fromHex("3bffffffffffffffff");
    QTest::newRow("success without its outcome") << map(2, [](auto &w) {
        append(w, "type");
        append(w, "success");
        append(w, "number");
        w.append(1);
    });
    QTest::newRow("success with a negative number") << map(3, [](auto &w) {
        append(w, "type");
        append(w, "success");
        append(w, "number");
        w.append(-1);
        append(w, "ok");
        w.append(true);
    });
    QTest::newRow("information without a state") << map(4, [](auto &w) {
        append(w, "type");
        append(w, "info-reply");
        append(w, "number");
        w.append(1);
        append(w, "fwVersion");
        append(w, "1");
        append(w, "MSPVersion");
        append(w, "1");
    });
    QTest::newRow("broken UTF-8 in the parameters") << map(4, [](auto &w) {
                                                           append(w, "type");
                                                           append(w, "command");
                                                           append(w, "number");
                                                           w.append(1);
                                                           append(w, "command");
                                                           w.append(1);
                                                           append(w, "params");
                                                           append(w, "xyz");
                                                       }).replace("xyz", "\xff\xfe\xfd");
}

void TstMspCodec::wrongMessages_areRefused()
{
    QFETCH(const QByteArray, payload);
    QCOMPARE(decoded(payload), QStringLiteral("nothing"));
}

void TstMspCodec::unknownFields_areSkipped()
{
    const QByteArray payload = map(7, [](QCborStreamWriter &w) {
        append(w, "temperature");
        w.append(21.5);
        append(w, "history");
        w.startArray(2);
        w.append(1);
        append(w, "two");
        w.endArray();
        appendEvent(w, 4711, -7);
        append(w, "bytes");
        w.append(QByteArray(10, 'x'));
        append(w, "nothing");
        w.append(QCborSimpleType::Undefined);
    });
    QCOMPARE(decoded(payload), text(msp::Event{MSPClient::MSPEvent(4711), -7}));
}

void TstMspCodec::missingFlag_isNotSet()
{
    const QByteArray payload = map(6, [](QCborStreamWriter &w) {
        append(w, "type");
        append(w, "info-reply");
        append(w, "number");
        w.append(9);
        append(w, "fwVersion");
        append(w, "3");
        append(w, "MSPVersion");
        w.append(QCborSimpleType::Null);
        append(w, "state");
        w.append(99);
        append(w, "shock");
        w.append(true);
    });
    MSPInfo info;
    info.fwVersion = QStringLiteral("3");
    info.setShock(true);
    info.setState(MSPInfo::MSPState(99));
    QCOMPARE(decoded(payload), text(msp::InfoReply{9, info}));
}

void TstMspCodec::deepNesting_isRefused()
{
    const QByteArray nested = QByteArray(10000, '\x81') + '\0';
    QCOMPARE(decoded(QByteArray::fromHex("a16178") + nested), QStringLiteral("nothing"));
    QCOMPARE(decoded(nested), QStringLiteral("nothing"));
}

void TstMspCodec::hugeAnnouncedLengths_areRefused_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("a text of 2^62 bytes") << QByteArray::fromHex("a164747970657b4000000000000000");
    QTest::newRow("a text of 2^31 - 17 bytes") << QByteArray::fromHex("a164747970657a7fffffef");
    QTest::newRow("a name of 1 GiB") << QByteArray::fromHex("a17a40000000");
    QTest::newRow("a piece of 1 GiB of a text") << QByteArray::fromHex("a164747970657f7a40000000");
    QTest::newRow("bytes of 1 GiB in an unknown field") << QByteArray::fromHex("a161785a40000000");
    QTest::newRow("a text of 1 GiB in a list") << QByteArray::fromHex("a16178817a40000000");
    QTest::newRow("a map of 2^62 fields") << QByteArray::fromHex("bb4000000000000000");
}

void TstMspCodec::hugeAnnouncedLengths_areRefused()
{
    QFETCH(const QByteArray, payload);
    // Nothing must even try to hold it: on the instrument there is no such room, and the attempt is the end.
    const MemoryLimit limit;
    QCOMPARE(decoded(payload), QStringLiteral("nothing"));
}

void TstMspCodec::frames_areCutAnywhere()
{
    QVERIFY(rc::check("a stream in pieces gives the same payloads", [] {
        const auto payloads = *rc::gen::arbitrary<std::vector<std::string>>();
        QByteArray stream;
        for (const std::string &payload : payloads)
            stream += msp::frame(QByteArray::fromStdString(payload));
        msp::FrameReader reader;
        std::vector<std::string> read;
        while (!stream.isEmpty()) {
            const int piece = *rc::gen::inRange(1, stream.size() + 1);
            reader.append(stream.left(piece));
            stream.remove(0, piece);
            while (const auto payload = reader.next())
                read.push_back(payload->toStdString());
        }
        RC_ASSERT(read == payloads);
        RC_ASSERT(!reader.isBroken());
    }));
}

void TstMspCodec::longestFrame_isReadAndLongerBreaksTheStream()
{
    const QByteArray longest(int(msp::maximumPayload), 'x');
    msp::FrameReader reader;
    reader.append(msp::frame(longest));
    QCOMPARE(reader.next().value_or(QByteArray()), longest);
    QVERIFY(!reader.isBroken());

    reader.append(msp::frame(longest + 'x'));
    reader.append(msp::frame(QByteArrayLiteral("next")));
    QVERIFY(!reader.next());
    QVERIFY(reader.isBroken());
    QVERIFY(!reader.next());

    reader.clear();
    reader.append(msp::frame(QByteArrayLiteral("next")));
    QCOMPARE(reader.next().value_or(QByteArray()), QByteArrayLiteral("next"));
}

void TstMspCodec::documentation_showsTheBytes()
{
    QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/docs/msp-messages.md"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QString page = QString::fromUtf8(file.readAll());
    // An example is a fenced block of lines "bytes in hexadecimal   # what they mean".
    const QRegularExpression fence(QStringLiteral("```hex\\n(.*?)```"),
                                   QRegularExpression::DotMatchesEverythingOption);
    QVector<QByteArray> examples;
    auto matches = fence.globalMatch(page);
    while (matches.hasNext()) {
        QByteArray hex;
        const QStringList lines = matches.next().captured(1).split(QLatin1Char('\n'));
        for (const QString &line : lines)
            hex += line.section(QLatin1Char('#'), 0, 0).toLatin1();
        examples.append(QByteArray::fromHex(hex));
    }
    const QVector<msp::Message> messages = documented();
    QCOMPARE(examples.size(), messages.size());
    for (int i = 0; i < messages.size(); ++i)
        QCOMPARE(examples.at(i).toHex(' '), msp::frame(msp::encode(messages.at(i))).toHex(' '));
}

void TstMspCodec::serverName_isTheEnvironmentsOrTheConstant()
{
    qunsetenv(msp::serverNameVariable);
    QCOMPARE(msp::serverName(), QStringLiteral("halvar-msp"));
    qputenv(msp::serverNameVariable, "/run/user/other msp");
    QCOMPARE(msp::serverName(), QStringLiteral("/run/user/other msp"));
    qunsetenv(msp::serverNameVariable);
}

QTEST_GUILESS_MAIN(TstMspCodec)
#include "tst_mspcodec.moc"
