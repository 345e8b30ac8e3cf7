// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// fuzz-seeds DIRECTORY: writes the first inputs of the targets whose input is no text: wire/, endpoint/ and
// msp/.
#include <QDir>
#include <QFile>

#include <cstdio>

#include <nap/records.h>

#include "mspcodec.h"
#include "protocol.h"

namespace nap = com::halvar::nap;
using namespace tessel;

namespace {

void write(const QString &directory, const QByteArray &bytes)
{
    static int number = 0;
    QFile file(QStringLiteral("%1/seed-%2").arg(directory).arg(++number));
    if (!QDir().mkpath(directory) || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
}

QByteArray frame(protocol::Kind kind, const Tuple &tuple = Tuple())
{
    protocol::Message message;
    message.kind = kind;
    message.number = 7;
    // In an input of the endpoint the same eight bytes stand for the service's session.
    message.session = 0x53455353494f4e21;
    message.status = kind == protocol::Reply ? ERR_NOT_IMPLEMENTED : 1;
    message.interfaceName = kind == protocol::Welcome ? "com.halvar.nap.NAPServer" : "";
    message.serviceName = "echo";
    message.tuple = tuple;
    QByteArray bytes;
    if (protocol::encode(message, bytes) != OK)
        qFatal("Cannot encode a seed");
    return bytes;
}

/// One field of each type, and a tuple in a tuple.
Tuple everything()
{
    Tuple tuple("com.halvar.nap.NAPServer.startMeasure");
    tuple.set("bool", Value(true));
    tuple.set("int", Value(-70000));
    tuple.set("double", Value(1.25));
    tuple.set("text", Value(AString("\xc3\xa9t\xc3\xa9")));
    tuple.set("date", Value(TimeDate(1767225600000)));
    tuple.set("period", Value(TimePeriod(-5)));
    Tuple inner("inner");
    inner.set("again", Value(Tuple("innermost")));
    tuple.set("tuple", Value(inner));
    return tuple;
}

Tuple notification()
{
    nap::DetectionResult result;
    result.set_value(1.04);
    result.set_sigma(0.1);
    result.set_decision(nap::POSITIVE);
    nap::NotificationMessage message;
    message.set_id("NAP_DETECTION");
    message.set_detection(result);
    return message;
}

Tuple nested(int depth)
{
    Tuple tuple("t");
    for (int i = 1; i < depth; ++i) {
        Tuple outer("t");
        outer.set("t", Value(tuple));
        tuple = outer;
    }
    return tuple;
}

void writeWire(const QString &directory)
{
    QByteArray conversation;
    for (const QByteArray &bytes :
         {frame(protocol::Hello), frame(protocol::Welcome), frame(protocol::Call, everything()),
          frame(protocol::Reply, notification()), frame(protocol::Call, nested(protocol::MaxNesting))}) {
        write(directory + QStringLiteral("/wire"), bytes.mid(protocol::HeaderSize));
        for (const char pieces : {'\0', '\1'})
            write(directory + QStringLiteral("/endpoint"), pieces + bytes);
        conversation += bytes;
    }
    write(directory + QStringLiteral("/endpoint"),
          '\0' + frame(protocol::Hello) + frame(protocol::Call, everything()));
    write(directory + QStringLiteral("/endpoint"), '\2' + conversation);
    write(directory + QStringLiteral("/endpoint"), QByteArray("\0\x7f\xff\xff\xff", 5));
}

void writeMsp(const QString &directory)
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("1.2");
    info.setShock(true);
    info.setState(MSPInfo::READY_HARD);
    QByteArray conversation;
    for (const msp::Message &message :
         {msp::Message(msp::Command{1, MSPClient::RUN_HARD, QStringLiteral("x")}),
          msp::Message(msp::InfoRequest{2}), msp::Message(msp::CommandReply{1, true}),
          msp::Message(msp::InfoReply{2, info}), msp::Message(msp::Event{MSPClient::SYS_ERR, -1})}) {
        const QByteArray bytes = msp::frame(msp::encode(message));
        write(directory + QStringLiteral("/msp"), '\x10' + bytes);
        conversation += bytes;
    }
    write(directory + QStringLiteral("/msp"), '\0' + conversation);
}

/// Each command, obeyed and refused.
void writeControl(const QString &directory)
{
    static const QByteArrayList lines = {
        R"({"command": "press"})",
        R"({"command": "release", "tag": [1]})",
        R"({"command": "sample", "concentration": 2.4, "substrate": "bois", "distance": 1})",
        R"({"command": "sample", "concentration": "a lot"})",
        R"({"command": "source", "activity": 370, "date": "2026-01-12", "halfLife": 462})",
        R"({"command": "detector", "sigma": 0.5, "threshold": 1, "k": 2, "timeLimit": 10, "accuracyTime": 5})",
        R"({"command": "reference", "value": 1.04, "precision": 0.06})",
        R"({"command": "today", "date": "2026-06-15"})",
        R"({"command": "seed", "value": 7})",
        R"({"command": "speed", "value": 500})",
        R"({"command": "battery", "value": 3450000})",
        R"({"command": "battery", "value": "missing"})",
        R"({"command": "conditions", "temperature": 22, "voltage": 1200, "temperatureDrift": 1})",
        R"({"command": "calibration", "outcome": "error", "date": "never"})",
        R"({"command": "accuracy", "outcome": "measured"})",
        R"({"command": "mspEvent", "event": "SYS_ERR", "code": 2})",
        R"({"command": "mspInfo", "state": "READY_HARD", "fwVersion": "1.2", "shock": true})",
        R"({"command": "mspRefuse", "commands": ["RUN_HARD", "SHUT_OPEN"]})",
        R"({"command": "mspShutter", "failures": 2})",
        R"({"command": "mspReturn"})",
        R"({"command": "mspDie"})",
        R"({"command": "napError", "error": "DPP_ERROR"})",
        R"({"command": "napStatus", "status": 7})",
        R"({"command": "napSilent", "on": true})",
        R"({"command": "napDelay", "ms": 10})",
        R"({"command": "napReturn"})",
        R"({"command": "napDie"})",
        R"({"command": "status"})",
        R"({"command": "subscribe"})",
        R"({"command": "quit"})",
        R"(["command"])",
        R"({"command")",
    };
    for (const QByteArray &line : lines)
        write(directory + QStringLiteral("/control"), '\0' + line + '\n');
    write(directory + QStringLiteral("/control"), '\1' + lines.join('\n') + '\n');
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: fuzz-seeds DIRECTORY\n", stderr);
        return 2;
    }
    const QString directory = QString::fromLocal8Bit(argv[1]);
    writeWire(directory);
    writeMsp(directory);
    writeControl(directory);
    return 0;
}
