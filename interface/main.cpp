// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTextStream>

#include <QsLog.h>

#include <config.h>
#include <database.h>
#include <halvarcontroller.h>

#include "interface.h"

namespace {

constexpr int WrongUse = 2;

int refuse(const QString &reason)
{
    QTextStream(stderr) << "halvar-interface: " << reason << "; see --help.\n";
    return WrongUse;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("halvar-interface"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The instrument's interface."));
    parser.addHelpOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The instrument's home directory."),
                                  QStringLiteral("dir"), QStringLiteral("/data/lambrik"));
    const QCommandLineOption night(QStringLiteral("night"), QStringLiteral("Begin with the night theme."));
    const QCommandLineOption landscape(QStringLiteral("landscape"), QStringLiteral("A window of 800 x 480."));
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Language of the screens: fr, en."),
                                      QStringLiteral("code"), QStringLiteral("fr"));
    parser.addOptions({home, night, landscape, language});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("unexpected argument ") + parser.positionalArguments().first());
    QString directory = parser.value(home);
    if (!directory.endsWith(QLatin1Char('/')))
        directory += QLatin1Char('/');

    const QsLogging::DestinationPtr standardError =
        QsLogging::DestinationFactory::MakeDebugOutputDestination();
    QsLogging::Logger::instance().addDestination(standardError);
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    Interface::prepare();

    Config config(nullptr);
    if (!config.read(directory))
        return refuse(directory + QStringLiteral("config/config_unit cannot be read"));
    Database database(nullptr);
    if (!database.read(directory))
        return refuse(directory + QStringLiteral("database/ cannot be read"));
    HalvarController controller(directory, &config, &database);
    Interface interface(controller, config, database, QLocale(parser.value(language)));
    controller.init();
    if (!interface.load({{QStringLiteral("night"), parser.isSet(night)},
                         {QStringLiteral("landscape"), parser.isSet(landscape)}}))
        return 1;
    return QGuiApplication::exec();
}
