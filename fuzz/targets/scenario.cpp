// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The simulator's scenario files. One is refused with a line that says why, or the simulator takes all of its
// settings, and what was understood of it reads the same when it is written to a file again.
#include "scenario.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

#include "harness.h"
#include "memoryhome.h"
#include "simulator.h"

namespace {

std::unique_ptr<fuzz::MemoryHome> home;

constexpr char File[] = "scenario.json";

bool read(simulator::Scenario &scenario, const QByteArray &bytes, QString &error)
{
    home->write(File, bytes);
    return scenario.read(home->path() + QLatin1String(File), QString(), error);
}

QByteArray document(const simulator::Scenario &scenario)
{
    QJsonObject root{{QStringLiteral("description"), scenario.description}};
    for (QJsonObject setting : scenario.settings) {
        const QString name = setting.take(QStringLiteral("command")).toString();
        root.insert(name, setting);
    }
    QJsonArray steps;
    for (const simulator::Scenario::Step &step : scenario.steps) {
        QJsonObject object = step.command;
        object.insert(QStringLiteral("at"), step.at);
        object.insert(QStringLiteral("count"), step.count);
        if (!step.after.isEmpty())
            object.insert(QStringLiteral("after"), step.after);
        steps.append(object);
    }
    root.insert(QStringLiteral("steps"), steps);
    return QJsonDocument(root).toJson();
}

bool same(const simulator::Scenario::Step &a, const simulator::Scenario::Step &b)
{
    return a.at == b.at && a.after == b.after && a.count == b.count && a.command == b.command;
}

} // namespace

void fuzz::prepare()
{
    home = std::make_unique<MemoryHome>();
}

void fuzz::run(const QByteArray &input)
{
    simulator::Scenario scenario;
    QString error;
    if (!read(scenario, input, error)) {
        FUZZ_VERIFY2(error.startsWith(home->path()) && !error.contains(QLatin1Char('\n')), error);
        return;
    }
    FUZZ_VERIFY2(error.isEmpty(), error);

    simulator::Simulator::Places places;
    places.sysClass = home->path();
    simulator::Simulator instrument(places, nullptr);
    instrument.prepare(scenario);
    for (const QJsonObject &command : qAsConst(scenario.settings)) {
        const QJsonObject answer = instrument.execute(command);
        FUZZ_VERIFY2(answer.value(QLatin1String("ok")).toBool()
                         || command.value(QLatin1String("command")) == QLatin1String("battery"),
                     answer.value(QLatin1String("error")).toString());
    }

    simulator::Scenario again;
    FUZZ_VERIFY2(read(again, document(scenario), error), error);
    FUZZ_VERIFY(again.description == scenario.description && again.settings == scenario.settings);
    FUZZ_VERIFY(std::equal(again.steps.begin(), again.steps.end(), scenario.steps.begin(),
                           scenario.steps.end(), same));
}
