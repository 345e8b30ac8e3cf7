// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

#include <QsLog.h>
#include <failure.h>

#include "soak.h"

namespace {

int readNumber(const QCommandLineParser &parser, const QString &name, int lowest)
{
    bool isNumber = false;
    const int number = parser.value(name).toInt(&isNumber);
    if (!isNumber || number < lowest)
        throw Failure{QStringLiteral("--%1 takes a number from %2 on, not '%3'. See halvar-soak --help.")
                          .arg(name)
                          .arg(lowest)
                          .arg(parser.value(name)),
                      Failure::wrongUsage};
    return number;
}

SoakOptions readOptions(const QCoreApplication &application)
{
    const SoakOptions defaults;
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Works on the simulated instrument for as long as many operators do: shots over units and\n"
        "diagnostics, with faults in between. Then loads every file and looks for every shot, and fits\n"
        "lines through memory, descriptors, threads and time per shot. Needs a running halvar-simulator\n"
        "in the same private instrument; tools/soak-session starts both.\n\n"
        "Exit status: 0 when nothing was lost and all curves are flat; 1 otherwise; 2 for wrong usage."));
    parser.addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text.")},
        {QStringLiteral("shots"), QStringLiteral("Shots in all."), QStringLiteral("N"),
         QString::number(defaults.shots)},
        {QStringLiteral("units"), QStringLiteral("Units that they are dealt out to."), QStringLiteral("N"),
         QString::number(defaults.units)},
        {QStringLiteral("units-a-diagnostic"), QStringLiteral("Units in one file."), QStringLiteral("N"),
         QString::number(defaults.unitsADiagnostic)},
        {QStringLiteral("fault-every"), QStringLiteral("Shots between two faults; 0: none."),
         QStringLiteral("N"), QString::number(defaults.faultEvery)},
        {QStringLiteral("out"), QStringLiteral("Where the picture of the curves goes, soak.svg."),
         QStringLiteral("DIR"), QStringLiteral(".")},
    });
    if (!parser.parse(application.arguments()))
        throw Failure{parser.errorText() + QStringLiteral(" See halvar-soak --help."), Failure::wrongUsage};
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        std::exit(0);
    }
    SoakOptions options;
    options.shots = readNumber(parser, QStringLiteral("shots"), 1);
    options.units = readNumber(parser, QStringLiteral("units"), 1);
    options.unitsADiagnostic = readNumber(parser, QStringLiteral("units-a-diagnostic"), 1);
    options.faultEvery = readNumber(parser, QStringLiteral("fault-every"), 0);
    options.out = parser.value(QStringLiteral("out"));
    if (!QFileInfo(options.out).isDir() || !QFileInfo(options.out).isWritable())
        throw Failure{QStringLiteral("--out: the directory %1 cannot be written").arg(options.out),
                      Failure::wrongUsage};
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::ErrorLevel);
    try {
        const SoakOptions options = readOptions(application);
        // The library's paths in /sys and /data and its shell commands are the machine's own outside.
        if (qEnvironmentVariable("HALVAR_INSTRUMENT") != QLatin1String("1"))
            throw Failure{QStringLiteral("This is no private instrument."), Failure::wrongUsage};
        return Soak(options).run() ? 0 : 1;
    } catch (const Failure &failure) {
        std::fprintf(stderr, "halvar-soak: %s\n", qUtf8Printable(failure.text));
        return failure.status;
    }
}
