// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <QCommandLineParser>

#include <limits>

namespace simulator {

namespace {

void declare(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Plays the instrument: analysis service on port 3555, MSP, battery gauge and beeper.\n"
                       "Run it by simulator/instrument, together with the application that uses it."));
    parser.addOptions({
        {QStringLiteral("scenario"), QStringLiteral("What happens: one by its name, or a file."),
         QStringLiteral("NAME|FILE")},
        {QStringLiteral("seed"), QStringLiteral("Seed of every random draw."), QStringLiteral("N")},
        {QStringLiteral("speed"), QStringLiteral("Instrument seconds per real second, 0.01 to 500."),
         QStringLiteral("X")},
        {QStringLiteral("home"), QStringLiteral("Home whose config/config_unit tells the reference value."),
         QStringLiteral("DIR")},
        {QStringLiteral("control"), QStringLiteral("Name of the control socket."), QStringLiteral("NAME")},
        {QStringLiteral("nap-port"), QStringLiteral("Port of the analysis service (3555)."),
         QStringLiteral("N")},
        {QStringLiteral("observer-port"),
         QStringLiteral("Call observers back on this port instead of the one they register."),
         QStringLiteral("N")},
        {QStringLiteral("log-level"), QStringLiteral("trace, debug, info, warn, error, fatal or off."),
         QStringLiteral("LEVEL")},
        {QStringLiteral("ready-fd"),
         QStringLiteral("Write \"ready\" to descriptor N when everything listens."), QStringLiteral("N")},
        {QStringLiteral("panel"),
         QStringLiteral("Open a window with the instrument's trigger, samples, faults and traffic. The "
                        "instrument goes on when the window is closed.")},
        {QStringLiteral("position"), QStringLiteral("Where on the screen the panel's window begins."),
         QStringLiteral("X,Y")},
        {QStringLiteral("language"), QStringLiteral("Language of the panel: fr, en."),
         QStringLiteral("CODE")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("This text.")},
    });
}

bool parseLevel(const QString &text, QsLogging::Level &level)
{
    const QStringList levels = {QStringLiteral("trace"), QStringLiteral("debug"), QStringLiteral("info"),
                                QStringLiteral("warn"),  QStringLiteral("error"), QStringLiteral("fatal"),
                                QStringLiteral("off")};
    const int index = levels.indexOf(text);
    if (index >= 0)
        level = static_cast<QsLogging::Level>(index);
    return index >= 0;
}

} // namespace

bool Options::parse(const QStringList &arguments, QString &error)
{
    QCommandLineParser parser;
    declare(parser);
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        while (error.endsWith(QLatin1Char('.')))
            error.chop(1);
        return false;
    }
    const auto wrong = [&](const char *option, const char *expected) {
        const QString name = QString::fromLatin1(option);
        error = QStringLiteral("--%1: expected %2, found \"%3\"")
                    .arg(name, QString::fromLatin1(expected), parser.value(name));
        return false;
    };
    const auto given = [&parser](const char *option) { return parser.isSet(QString::fromLatin1(option)); };
    const auto value = [&parser](const char *option) { return parser.value(QString::fromLatin1(option)); };

    help = given("help");
    panel = given("panel");
    if (!parser.positionalArguments().isEmpty()) {
        error = QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first());
        return false;
    }
    bool ok = true;
    if (given("seed")) {
        seed = value("seed").toUInt(&ok);
        if (!ok || *seed > static_cast<quint32>(std::numeric_limits<int>::max()))
            return wrong("seed", "an integer from 0 to 2147483647");
    }
    if (given("speed")) {
        speed = value("speed").toDouble(&ok);
        if (!ok || !(*speed >= 0.01 && *speed <= 500))
            return wrong("speed", "a number from 0.01 to 500");
    }
    if (given("ready-fd")) {
        readyFd = value("ready-fd").toInt(&ok);
        if (!ok || readyFd < 0)
            return wrong("ready-fd", "the number of an open descriptor");
    }
    for (const auto &[option, port] :
         {std::pair("nap-port", &napPort), std::pair("observer-port", &observerPort)}) {
        if (!given(option))
            continue;
        *port = value(option).toUShort(&ok);
        if (!ok || *port == 0)
            return wrong(option, "a port from 1 to 65535");
    }
    if (given("log-level") && !parseLevel(value("log-level"), logLevel))
        return wrong("log-level", "trace, debug, info, warn, error, fatal or off");
    if (given("position")) {
        const QStringList numbers = value("position").split(QLatin1Char(','));
        bool okToo = false;
        position = QPoint(numbers.value(0).toInt(&ok), numbers.value(1).toInt(&okToo));
        if (numbers.size() != 2 || !ok || !okToo)
            return wrong("position", "two whole numbers, X,Y");
    }
    if (given("language")) {
        language = value("language");
        if (language != QLatin1String("fr") && language != QLatin1String("en"))
            return wrong("language", "fr or en");
    }
    if (given("scenario"))
        scenario = value("scenario");
    if (given("home"))
        home = value("home");
    if (given("control"))
        control = value("control");
    if (scenario.isEmpty())
        return wrong("scenario", "a name or a file");
    if (control.isEmpty())
        return wrong("control", "a name");
    return true;
}

QString Options::helpText()
{
    QCommandLineParser parser;
    declare(parser);
    return parser.helpText();
}

} // namespace simulator
