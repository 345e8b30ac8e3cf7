// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

#include <QsLog.h>

#include "failure.h"
#include "progress.h"
#include "scenario.h"
#include "session.h"

namespace {

const QStringList &levelNames()
{
    // In the order of QsLogging::Level.
    static const QStringList names{QStringLiteral("trace"), QStringLiteral("debug"), QStringLiteral("info"),
                                   QStringLiteral("warn"),  QStringLiteral("error"), QStringLiteral("fatal"),
                                   QStringLiteral("off")};
    return names;
}

[[noreturn]] void wrongUsage(const QString &text)
{
    throw Failure{text + QStringLiteral(" See halvar-diagnostic --help."), Failure::wrongUsage};
}

Options readOptions(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Records a building diagnostic on the simulated instrument, through the controller "
                       "library and as an\n"
                       "operator does; saves it, loads it again and compares. Needs a running "
                       "halvar-simulator, and runs in a\n"
                       "private instrument only (simulator/instrument); ./demo does both.\n\n"
                       "Exit status: 0 when the diagnostic that was loaded equals what was measured; 1 when "
                       "it does not, or\n"
                       "something failed on the way; 2 for wrong usage."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this text."));
    const QCommandLineOption scenario(QStringLiteral("scenario"),
                                      QStringLiteral("What the operator does: one of %1, or a file.")
                                          .arg(Scenario::names().join(QStringLiteral(", "))),
                                      QStringLiteral("NAME|FILE"), QStringLiteral("complete"));
    const QCommandLineOption speed(
        QStringLiteral("speed"),
        QStringLiteral(
            "Seconds of the simulated instrument in a real one, 0.01 to 500 (default: the scenario's)."),
        QStringLiteral("X"));
    const QCommandLineOption home(
        QStringLiteral("home"),
        QStringLiteral(
            "Where the instrument's home comes from; it is left as it is (default: the sample home)."),
        QStringLiteral("DIR"), QStringLiteral(HALVAR_SAMPLE_HOME));
    const QCommandLineOption out(
        QStringLiteral("out"),
        QStringLiteral("Where the diagnostic, the shock history, the information file and the summary go."),
        QStringLiteral("DIR"), QStringLiteral("out"));
    const QCommandLineOption level(QStringLiteral("log-level"),
                                   QStringLiteral("What the library logs to standard error: %1.")
                                       .arg(levelNames().join(QStringLiteral(", "))),
                                   QStringLiteral("LEVEL"), QStringLiteral("warn"));
    parser.addOptions({help, scenario, speed, home, out, level});

    if (!parser.parse(application.arguments()))
        wrongUsage(parser.errorText());
    if (parser.isSet(help)) {
        fputs(parser.helpText().toUtf8().constData(), stdout);
        exit(0);
    }
    if (!parser.positionalArguments().isEmpty())
        wrongUsage(QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().first()));

    Options options;
    options.scenario = parser.value(scenario);
    options.home = parser.value(home);
    options.out = parser.value(out);
    if (parser.isSet(speed)) {
        bool isNumber = false;
        options.speed = parser.value(speed).toDouble(&isNumber);
        if (!isNumber
            || !(options.speed >= Scenario::minimumSpeed && options.speed <= Scenario::maximumSpeed))
            wrongUsage(QStringLiteral("--speed takes a number from 0.01 to 500, not '%1'.")
                           .arg(parser.value(speed)));
    }
    const int levelIndex = int(levelNames().indexOf(parser.value(level)));
    if (levelIndex < 0)
        wrongUsage(QStringLiteral("There is no log level '%1'.").arg(parser.value(level)));
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::Level(levelIndex));
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("halvar-diagnostic"));
    QsLogging::Logger::instance().addDestination(QsLogging::DestinationFactory::MakeDebugOutputDestination());
    Progress progress(stdout);
    try {
        const Options options = readOptions(application);
        // The library's paths in /sys and /data and its shell commands are the machine's own outside.
        if (qEnvironmentVariable("HALVAR_INSTRUMENT") != QLatin1String("1"))
            wrongUsage(QStringLiteral("This is no private instrument."));
        Session session(options, &progress);
        session.run();
        progress.note(
            QStringLiteral("halvar-diagnostic: the diagnostic was recorded, saved, and loaded back equal."));
        return 0;
    } catch (const Failure &failure) {
        progress.clear();
        fprintf(stderr, "halvar-diagnostic: %s\n", failure.text.toUtf8().constData());
        return failure.status;
    }
}
