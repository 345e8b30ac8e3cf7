// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>
#include <QXmlStreamReader>

#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QsLogDest.h>

#include "options.h"
#include "simulator.h"

namespace {

constexpr int WrongUse = 2;
constexpr int CallLimitMs = 2000; // of calls to observers, so that a vanished one does not hold up the end
const QString Scenarios = QStringLiteral(":/scenarios");

int refuse(const QString &reason)
{
    QTextStream(stderr) << "halvar-simulator: " << reason << "; see --help.\n";
    return WrongUse;
}

/// A descriptor that becomes readable when the process is asked to end. Before any thread is started, so that
/// all of them keep these signals blocked.
int endSignals()
{
    sigset_t signalSet;
    sigemptyset(&signalSet);
    sigaddset(&signalSet, SIGTERM);
    sigaddset(&signalSet, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signalSet, nullptr);
    return signalfd(-1, &signalSet, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// The unit's own reference block, as its configuration describes it.
bool readReference(const QString &home, simulator::Reference &reference, QString &error)
{
    const QString path = home + QStringLiteral("/config/config_unit");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("--home: %1 cannot be read").arg(path);
        return false;
    }
    QXmlStreamReader reader(&file);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const bool isValue = reader.name() == QLatin1String("Nist_InformationValue");
        if (!isValue && reader.name() != QLatin1String("Nist_InformationPrecision"))
            continue;
        bool isNumber = false;
        const double number = reader.readElementText(QXmlStreamReader::SkipChildElements).toDouble(&isNumber);
        if (isNumber && number >= 0)
            (isValue ? reference.value : reference.precision) = number;
    }
    if (reader.hasError()) {
        error = QStringLiteral("--home: %1: line %2: %3")
                    .arg(path)
                    .arg(reader.lineNumber())
                    .arg(reader.errorString());
        return false;
    }
    return true;
}

void writeLog(const QString &line, QsLogging::Level)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(line));
}

} // namespace

int main(int argc, char *argv[])
{
    const int endFd = endSignals();
    // An observer or client that goes while it is written to is an error of that write, no more.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    QString error;
    simulator::Options options;
    if (!options.parse(QCoreApplication::arguments(), error))
        return refuse(error);
    if (options.help) {
        QTextStream(stdout) << simulator::Options::helpText();
        return 0;
    }
    QsLogging::Logger::instance().setLoggingLevel(options.logLevel);
    QsLogging::Logger::instance().addDestination(
        QsLogging::DestinationFactory::MakeFunctorDestination(&writeLog));

    simulator::Scenario scenario;
    if (!scenario.read(options.scenario, Scenarios, error))
        return refuse(error);
    simulator::Reference reference;
    if (!options.home.isEmpty() && !readReference(options.home, reference, error))
        return refuse(error);
    // The files below /sys/class of a real machine are nobody's toys.
    if (qgetenv("HALVAR_INSTRUMENT") != "1")
        return refuse(
            QStringLiteral("runs in a private instrument only: simulator/instrument halvar-simulator ..."));

    simulator::Simulator::Places places;
    places.control = options.control;
    places.port = options.napPort;
    places.observerPort = options.observerPort;
    simulator::Simulator instrument(places, nullptr);
    instrument.settings().reference = reference;
    instrument.prepare(scenario);
    if (options.seed)
        instrument.settings().seed = *options.seed;
    if (options.speed)
        instrument.settings().speed = *options.speed;
    tessel::set_call_time_limit(CallLimitMs);
    if (!instrument.start(error))
        return refuse(error);

    QSocketNotifier end(endFd, QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    QObject::connect(&instrument, &simulator::Simulator::quitRequested, &application,
                     &QCoreApplication::quit);
    if (options.readyFd >= 0) {
        constexpr char ready[] = "ready\n";
        if (write(options.readyFd, ready, sizeof ready - 1) != sizeof ready - 1)
            return refuse(QStringLiteral("--ready-fd: descriptor %1 cannot be written").arg(options.readyFd));
        close(options.readyFd);
    }
    return QCoreApplication::exec();
}
