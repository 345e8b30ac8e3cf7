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

struct Options
{
    QString home;
    QString out;
    QString language;
    bool glance = false;
    int first = 1;
};

int tour(const Options &options)
{
    const QString &home = options.home;
    const QString &out = options.out;
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
    Interface interface(controller, config, database, QLocale(options.language));
    controller.init();
    QQuickWindow *const window = interface.load();
    if (!window)
        throw Failure{QStringLiteral("the screens cannot be loaded")};

    int number = options.first - 1;
    int pictures = 0;
    Hand hand(window);
    Tour whole(window, controller, instrument, [&](const QString &name) {
        ++number;
        QTextStream(stdout) << QStringLiteral("%1 %2\n").arg(number, 2, 10, QLatin1Char('0')).arg(name);
        hand.inEveryAppearance([&](const QString &appearance) {
            const QString file =
                QStringLiteral("%1/%2-%3-%4.png")
                    .arg(out)
                    .arg(number, 2, 10, QLatin1Char('0'))
                    .arg(options.glance ? options.language + QLatin1Char('-') + name : name, appearance);
            const QImage image = window->screen()->grabWindow(window->winId()).toImage();
            if (image.isNull())
                throw Failure{QStringLiteral("the window shows nothing")};
            if (!image.save(file))
                throw Failure{QStringLiteral("%1 cannot be written").arg(file)};
            ++pictures;
        });
    });
    if (options.glance)
        whole.lookAround();
    else
        whole.run();
    QTextStream(stdout) << QStringLiteral("halvar-tour: %1; %2 pictures of %3 states are in %4.\n")
                               .arg(options.glance ? QStringLiteral("the screens were looked at")
                                                   : QStringLiteral(
                                                       "the diagnostic was recorded, saved and opened again"))
                               .arg(pictures)
                               .arg(number - options.first + 1)
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
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Language of the screens: fr, en."),
                                      QStringLiteral("code"), QStringLiteral("fr"));
    const QCommandLineOption glance(
        QStringLiteral("glance"),
        QStringLiteral("Look at the main screens only; the language is in the pictures' names."));
    const QCommandLineOption first(QStringLiteral("first"), QStringLiteral("Number of the first picture."),
                                   QStringLiteral("number"), QStringLiteral("1"));
    parser.addOptions({home, out, language, glance, first});
    parser.process(application);
    bool isNumber = false;
    const Options options{parser.value(home), parser.value(out), parser.value(language), parser.isSet(glance),
                          parser.value(first).toInt(&isNumber)};
    if (!isNumber || options.first < 1)
        return fail(QStringLiteral("--first wants a number from 1 on"), Failure::wrongUsage);

    // On the way the level of the log is changed; here only what is wrong is of interest.
    QsLogging::Logger::instance().addDestination(QsLogging::DestinationFactory::MakeFunctorDestination(
        [](const QString &line, QsLogging::Level level) {
            if (level >= QsLogging::WarnLevel)
                QTextStream(stderr) << line << '\n';
        }));
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    Interface::prepare();
    try {
        return tour(options);
    } catch (const Failure &failure) {
        return fail(failure.text, failure.status);
    }
}
