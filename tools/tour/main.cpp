// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <QScreen>
#include <QTextStream>

#include <QsLog.h>

#include <config.h>
#include <database.h>
#include <failure.h>
#include <halvarcontroller.h>
#include <interface.h>
#include <simulatorcontrol.h>

#include "tour.h"

namespace {

int fail(const QString &reason, int status)
{
    QTextStream(stderr) << "halvar-tour: " << reason << ".\n";
    return status;
}

int tour(const QString &home, const QString &out)
{
    SimulatorControl instrument;
    if (!instrument.connectTo())
        throw Failure{instrument.errorString() + QStringLiteral(" (is halvar-simulator running?)")};
    if (!QDir().mkpath(out))
        throw Failure{QStringLiteral("the directory %1 cannot be written").arg(out), Failure::wrongUsage};

    Config config(nullptr);
    if (!config.read(home))
        throw Failure{home + QStringLiteral("config/config_unit cannot be read"), Failure::wrongUsage};
    Database database(nullptr);
    if (!database.read(home))
        throw Failure{home + QStringLiteral("database/ cannot be read"), Failure::wrongUsage};
    HalvarController controller(home, &config, &database);
    Interface interface(controller, config, database, QLocale(QStringLiteral("fr_FR")));
    controller.init();
    QQuickWindow *const window = interface.load();
    if (!window)
        throw Failure{QStringLiteral("the screens cannot be loaded")};

    int number = 0;
    int pictures = 0;
    Hand hand(window);
    Tour(window, controller, instrument, [&](const QString &name) {
        ++number;
        QTextStream(stdout) << QStringLiteral("%1 %2\n").arg(number, 2, 10, QLatin1Char('0')).arg(name);
        hand.inEveryAppearance([&](const QString &appearance) {
            const QString file = QStringLiteral("%1/%2-%3-%4.png")
                                     .arg(out)
                                     .arg(number, 2, 10, QLatin1Char('0'))
                                     .arg(name, appearance);
            const QImage image = window->screen()->grabWindow(window->winId()).toImage();
            if (image.isNull())
                throw Failure{QStringLiteral("the window shows nothing")};
            if (!image.save(file))
                throw Failure{QStringLiteral("%1 cannot be written").arg(file)};
            ++pictures;
        });
    }).run();
    QTextStream(stdout)
        << QStringLiteral(
               "halvar-tour: the diagnostic was recorded, saved and opened again; %1 pictures of %2 "
               "states are in %3.\n")
               .arg(pictures)
               .arg(number)
               .arg(out);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // No display is needed, and the pictures are the same on every machine.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Records a diagnostic on the simulated instrument by the interface's own screens, with real\n"
        "mouse and key events, and leaves a picture of every screen and state."));
    parser.addHelpOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The instrument's home directory."),
                                  QStringLiteral("dir"), QStringLiteral("/data/lambrik/"));
    const QCommandLineOption out(QStringLiteral("screenshots"), QStringLiteral("Where the pictures go."),
                                 QStringLiteral("dir"), QStringLiteral("screenshots"));
    parser.addOptions({home, out});
    parser.process(application);

    // On the way the level of the log is changed; here only what is wrong is of interest.
    QsLogging::Logger::instance().addDestination(QsLogging::DestinationFactory::MakeFunctorDestination(
        [](const QString &line, QsLogging::Level level) {
            if (level >= QsLogging::WarnLevel)
                QTextStream(stderr) << line << '\n';
        }));
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    Interface::prepare();
    try {
        return tour(parser.value(home), parser.value(out));
    } catch (const Failure &failure) {
        return fail(failure.text, failure.status);
    }
}
