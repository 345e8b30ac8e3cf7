// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The simulator's control socket. Each line that comes in is answered by one line of JSON that says whether
// it was obeyed, and why not. The first byte says in which pieces the lines arrive. Runs in a private
// instrument: commands open the simulator's port and sockets.
#include "controlserver.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLocalSocket>

#include <algorithm>
#include <memory>

#include "harness.h"
#include "memoryhome.h"
#include "simulator.h"

namespace {

std::unique_ptr<fuzz::MemoryHome> home;

/// An answer, or a notice.
void judge(const QByteArray &line, int &answers)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    FUZZ_VERIFY2(error.error == QJsonParseError::NoError && document.isObject(), QString::fromUtf8(line));
    const QJsonObject object = document.object();
    if (object.contains(QLatin1String("notice")))
        return;
    ++answers;
    const QJsonValue ok = object.value(QLatin1String("ok"));
    FUZZ_VERIFY2(ok.isBool(), QString::fromUtf8(line));
    FUZZ_VERIFY2(ok.toBool() || !object.value(QLatin1String("error")).toString().isEmpty(),
                 QString::fromUtf8(line));
}

/// How many answers \p lines must have: one each, up to the line that is too long.
int expectedAnswers(const QByteArray &lines)
{
    int answers = 0;
    for (int at = 0; at < lines.size();) {
        int end = lines.indexOf('\n', at);
        const bool whole = end >= 0;
        end = whole ? end : lines.size();
        if (end - at > simulator::ControlServer::LongestLine)
            return answers + 1;
        answers += whole ? 1 : 0;
        at = end + 1;
    }
    return answers;
}

void processEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

void fuzz::prepare()
{
    FUZZ_VERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 QStringLiteral("run through simulator/instrument"));
    home = std::make_unique<MemoryHome>();
}

void fuzz::run(const QByteArray &input)
{
    if (input.isEmpty())
        return;
    const QByteArray lines = input.mid(1);
    const int piece = input.at(0) == 0 ? std::max(1, lines.size()) : 8 * quint8(input.at(0));

    simulator::Simulator::Places places;
    places.sysClass = home->path();
    simulator::Simulator instrument(places, nullptr);
    simulator::ControlServer server(
        [&instrument](const QJsonObject &command) { return instrument.execute(command); });
    FUZZ_VERIFY2(server.listen(home->path() + QStringLiteral("control")), server.errorString());

    QLocalSocket client;
    client.connectToServer(home->path() + QStringLiteral("control"));
    FUZZ_VERIFY(client.waitForConnected());
    int answers = 0;
    const auto collect = [&client, &answers] {
        processEvents();
        while (client.canReadLine())
            judge(client.readLine(), answers);
    };
    for (int at = 0; at < lines.size() && client.state() == QLocalSocket::ConnectedState; at += piece) {
        client.write(lines.mid(at, piece));
        client.flush();
        collect();
    }
    const int expected = expectedAnswers(lines);
    constexpr int patience = 1000; // turns of the event loop
    for (int i = 0; i < patience && answers < expected; ++i)
        collect();
    FUZZ_VERIFY2(answers == expected, QStringLiteral("%1 answers, expected %2").arg(answers).arg(expected));
    client.abort();
    processEvents();
}
