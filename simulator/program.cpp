// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "program.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>
#include <QXmlStreamReader>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QsLogDest.h>

#include "options.h"
#include "simulator.h"

namespace simulator {

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
bool readReference(const QString &home, Reference &reference, QString &error)
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

/// Becomes the program with the windows, with the same command line: this one needs no display's libraries.
/// \return only when that failed.
int becomePanel(char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return refuse(QStringLiteral("--panel: there is no display"));
    const QString program =
        QCoreApplication::applicationDirPath() + QStringLiteral("/halvar-simulator-panel");
    execv(QFile::encodeName(program).constData(), argv);
    return refuse(
        QStringLiteral("--panel: %1: %2").arg(program, QString::fromLocal8Bit(std::strerror(errno))));
}

} // namespace

int run(int argc, char *argv[], const Face &face)
{
    const int endFd = endSignals();
    // An observer or client that goes while it is written to is an error of that write, no more.
    std::signal(SIGPIPE, SIG_IGN);
    const std::unique_ptr<QCoreApplication> application = face.makeApplication(argc, argv);
    QString error;
    Options options;
    if (!options.parse(QCoreApplication::arguments(), error))
        return refuse(error);
    if (options.help) {
        QTextStream(stdout) << Options::helpText();
        return 0;
    }
    if (options.panel && !face.open)
        return becomePanel(argv);
    QsLogging::Logger::instance().setLoggingLevel(options.logLevel);
    QsLogging::Logger::instance().addDestination(
        QsLogging::DestinationFactory::MakeFunctorDestination(&writeLog));

    Scenario scenario;
    if (!scenario.read(options.scenario, Scenarios, error))
        return refuse(error);
    Reference reference;
    if (!options.home.isEmpty() && !readReference(options.home, reference, error))
        return refuse(error);
    // The files below /sys/class of a real machine are nobody's toys.
    if (qgetenv("HALVAR_INSTRUMENT") != "1")
        return refuse(
            QStringLiteral("runs in a private instrument only: simulator/instrument halvar-simulator ..."));

    Simulator::Places places;
    places.control = options.control;
    places.port = options.napPort;
    places.observerPort = options.observerPort;
    places.commands = qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS");
    Simulator instrument(places, nullptr);
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
    QObject::connect(&end, &QSocketNotifier::activated, application.get(), &QCoreApplication::quit);
    QObject::connect(&instrument, &Simulator::quitRequested, application.get(), &QCoreApplication::quit);
    if (options.readyFd >= 0) {
        constexpr char ready[] = "ready\n";
        if (write(options.readyFd, ready, sizeof ready - 1) != sizeof ready - 1)
            return refuse(QStringLiteral("--ready-fd: descriptor %1 cannot be written").arg(options.readyFd));
        close(options.readyFd);
    }
    std::shared_ptr<void> window;
    if (face.open) {
        window = face.open(instrument, options);
        if (!window)
            return refuse(QStringLiteral("the panel's window cannot be opened"));
    }
    return QCoreApplication::exec();
}

} // namespace simulator
