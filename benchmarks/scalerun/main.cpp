// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Leads diagnostics of growing size through a day's work, each size in a process of its own, and judges how
// time and memory grow with it and how long the interface is kept waiting.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

#include <QsLog.h>

#include "report.h"
#include "scenario.h"

namespace {

constexpr const char *writing = "write";
constexpr const char *walking = "walk";

// Writes the diagnostic that another process then loads: this one's memory is full of what made it.
int writeDiagnostic(int units, const QString &file)
{
    BenchDiagnostic diagnostic(Scenario::roomCount);
    diagnostic.withUnits(units);
    QFile::remove(file);
    return QFile::copy(diagnostic.path(), file) ? 0 : 1;
}

// Goes through the scenario and prints the smallest figures of each step, and the memory of the first time:
// later ones find what the first one has left free.
int walk(int units, const QString &file, int repetitions)
{
    Scenario scenario(file, units);
    QVector<Scenario::Step> best = scenario.pass();
    for (int i = 1; i < repetitions; ++i) {
        const QVector<Scenario::Step> steps = scenario.pass();
        for (int s = 0; s < best.size(); ++s) {
            best[s].nanoseconds = qMin(best[s].nanoseconds, steps[s].nanoseconds);
            best[s].longest = qMin(best[s].longest, steps[s].longest);
            best[s].work = qMin(best[s].work, steps[s].work);
        }
    }
    QJsonArray steps;
    for (const Scenario::Step &step : qAsConst(best)) {
        steps.append(QJsonObject{{QStringLiteral("step"), step.name},
                                 {QStringLiteral("nanoseconds"), double(step.nanoseconds)},
                                 {QStringLiteral("longest"), double(step.longest)},
                                 {QStringLiteral("bytes"), double(step.bytes)},
                                 {QStringLiteral("work"), step.work}});
    }
    std::fputs(QJsonDocument(steps).toJson(QJsonDocument::Compact).constData(), stdout);
    return 0;
}

// What this program prints when it is started with the arguments; nothing when it fails.
QByteArray outputOf(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), arguments, QIODevice::ReadOnly);
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
        ? process.readAllStandardOutput() + ' '
        : QByteArray();
}

bool measure(int units, int repetitions, Report &report)
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("diagnostic.xml"));
    const QString size = QString::number(units);
    std::fprintf(stderr, "%d units...\n", units);
    if (outputOf({QLatin1String(writing), size, file}).isEmpty())
        return false;
    const QJsonArray steps =
        QJsonDocument::fromJson(outputOf({QLatin1String(walking), size, file, QString::number(repetitions)}))
            .array();
    for (const QJsonValue &value : steps) {
        const QJsonObject step = value.toObject();
        report.add(units,
                   {step[QLatin1String("step")].toString(),
                    qint64(step[QLatin1String("nanoseconds")].toDouble()),
                    qint64(step[QLatin1String("longest")].toDouble()),
                    qint64(step[QLatin1String("bytes")].toDouble()), step[QLatin1String("work")].toDouble()});
    }
    return !steps.isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    // Lines would be composed and then go nowhere.
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    if (qgetenv("HALVAR_INSTRUMENT") != "1") {
        std::fputs("The scale run needs a private instrument: start it with benchmarks/scale.\n", stderr);
        return 2;
    }
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && arguments[1] == QLatin1String(writing))
        return writeDiagnostic(arguments[2].toInt(), arguments[3]);
    if (arguments.size() == 5 && arguments[1] == QLatin1String(walking))
        return walk(arguments[2].toInt(), arguments[3], arguments[4].toInt());

    QCommandLineParser parser;
    const QCommandLineOption repetitions(QStringLiteral("repetitions"), QString(), QStringLiteral("N"),
                                         QStringLiteral("5"));
    const QCommandLineOption slower(QStringLiteral("slower"), QString(), QStringLiteral("TIMES"),
                                    QStringLiteral("1"));
    parser.addOptions({repetitions, slower});
    parser.process(application);
    Report report(parser.value(slower).toDouble());
    for (int units : {1250, 2500, 5000, 10000}) {
        if (!measure(units, qMax(1, parser.value(repetitions).toInt()), report))
            return 1;
    }
    report.print();
    return report.isMet() ? 0 : 1;
}
