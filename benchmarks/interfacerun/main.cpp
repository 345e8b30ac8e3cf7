// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickWindow>
#include <QTextStream>
#include <QTimer>

#include <QsLog.h>

#include <cmath>
#include <memory>

#include <config.h>
#include <database.h>
#include <databaseitemlistmodel.h>
#include <halvarcontroller.h>
#include <interface.h>
#include <measurelistmodel.h>
#include <nap/records.h>
#include <ud.h>
#include <udlistmodel.h>

#include "frames.h"
#include "quantile.h"

namespace nap = com::halvar::nap;

namespace {

constexpr int Rooms = 200;
constexpr int Units = 10000;
constexpr int Repetitions = 7;
constexpr int ResultsPerSecond = 20;
constexpr int ShotSeconds = 10;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

[[noreturn]] void fail(const QString &what)
{
    QTextStream(stderr) << "halvar-interface-times: " << what << ".\n";
    std::exit(1);
}

double part(const QVector<double> &values, double fraction)
{
    std::vector<double> samples(values.begin(), values.end());
    return samples.empty() ? 0 : quantile(samples, fraction);
}

void row(const QString &name, std::initializer_list<double> figures)
{
    out() << name.leftJustified(26);
    for (const double figure : figures)
        out() << QStringLiteral("%1").arg(figure, 12, 'f', 1);
    out() << Qt::endl;
}

void head(const QString &name, const QStringList &columns)
{
    out() << '\n' << name.leftJustified(26);
    for (const QString &column : columns)
        out() << column.rightJustified(12);
    out() << Qt::endl;
}

void fill(HalvarController &controller, Database &database)
{
    for (int room = 0; room < Rooms; ++room)
        database.m_LocalItemsListModel->add(QStringLiteral("Pièce %1").arg(room), QString(),
                                            QStringLiteral("locaux"));
    for (int i = 0; i < Units; ++i) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Pièce %1").arg(i % Rooms));
        unit->setElement(QStringLiteral("Mur"));
        unit->setSubstrat(QStringLiteral("Plâtre"));
        controller.uds->append(unit);
    }
}

/// What Nav offers to QML.
class Way
{
public:
    Way(QQmlEngine &engine, QQuickWindow *window)
        : m_window(window)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\n"
                          "import HalvarComponents 1.0\n"
                          "QtObject {\n"
                          "  function open(name, properties) {\n"
                          "    Nav.settlingTime = 1;\n"
                          "    return Nav.open(name, properties) !== null;\n"
                          "  }\n"
                          "  function leave() { Nav.leave(); }\n"
                          "  function home() { Nav.replaceAll(\"HomeScreen\"); }\n"
                          "}\n",
                          QUrl());
        m_script.reset(component.create());
        if (!m_script)
            fail(component.errorString());
    }
    void home()
    {
        QMetaObject::invokeMethod(m_script.get(), "home");
        settle();
    }
    void open(const QString &screen, const QVariantMap &properties)
    {
        QVariant opened;
        QMetaObject::invokeMethod(m_script.get(), "open", Q_RETURN_ARG(QVariant, opened),
                                  Q_ARG(QVariant, screen), Q_ARG(QVariant, properties));
        if (!opened.toBool())
            fail(screen + QStringLiteral(" does not open"));
    }
    void leave()
    {
        settle();
        QMetaObject::invokeMethod(m_script.get(), "leave");
        settle();
    }
    void settle()
    {
        do
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        while (m_window->property("settling").toBool());
    }

private:
    std::unique_ptr<QObject> m_script;
    QQuickWindow *const m_window;
};

void openEachScreen(Way &way, Frames &frames, const QVariant &rooms)
{
    const QVector<QPair<QString, QVariantMap>> screens{
        {QStringLiteral("AccuracyScreen"), {}},
        {QStringLiteral("CalibrationScreen"), {}},
        {QStringLiteral("DirectScreen"), {}},
        {QStringLiteral("SettingsScreen"), {}},
        {QStringLiteral("DiagnosticsScreen"), {}},
        {QStringLiteral("NewDiagnosticScreen"), {}},
        {QStringLiteral("DiagnosticScreen"), {}},
        {QStringLiteral("RoomsScreen"), {}},
        {QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Pièce 7")}}},
        {QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 7}}},
        {QStringLiteral("PickScreen"), {{QStringLiteral("items"), rooms}}},
        {QStringLiteral("ShocksScreen"), {}},
        {QStringLiteral("ServiceScreen"), {}},
        {QStringLiteral("LogScreen"), {}}};
    head(QStringLiteral("screen (ms)"),
         {QStringLiteral("first time"), QStringLiteral("median"), QStringLiteral("longest")});
    for (const auto &[screen, properties] : screens) {
        QVector<double> times;
        for (int repetition = 0; repetition < Repetitions; ++repetition) {
            QElapsedTimer clock;
            clock.start();
            way.open(screen, properties);
            if (!frames.waitForNext())
                fail(screen + QStringLiteral(" is not shown"));
            times.append(double(clock.nsecsElapsed()) / 1e6);
            way.leave();
        }
        const double first = times.takeFirst();
        row(screen, {first, part(times, 0.5), part(times, 1)});
    }
}

void streamResults(Way &way, Frames &frames, HalvarController &controller)
{
    way.open(QStringLiteral("DirectScreen"), {});
    frames.waitForNext();
    controller.msp_event(MSPClient::SHUT_OPENED);
    if (!QMetaObject::invokeMethod(&controller, "startMeasure"))
        fail(QStringLiteral("no measure starts"));
    int told = 0;
    QVector<double> turns; // ms that the interface's thread needs for a result
    QTimer stream;
    stream.setTimerType(Qt::PreciseTimer);
    stream.setInterval(1000 / ResultsPerSecond);
    QObject::connect(&stream, &QTimer::timeout, &stream, [&] {
        nap::DetectionResult result;
        result.set_value(1.5 + std::sin(told));
        result.set_sigma(0.5 / std::sqrt(1 + told));
        result.set_decision(told % 2 ? nap::POSITIVE : nap::UNDETERMINED);
        QElapsedTimer clock;
        clock.start();
        controller.nap_DetectionResult(result);
        turns.append(double(clock.nsecsElapsed()) / 1e6);
        ++told;
    });
    frames.take();
    stream.start();
    QElapsedTimer shot;
    shot.start();
    while (shot.elapsed() < ShotSeconds * 1000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    stream.stop();
    const QVector<double> times = frames.take();
    if (controller.directMeasures->count() != 1 || told < ShotSeconds * ResultsPerSecond / 2)
        fail(QStringLiteral("the results did not come: %1").arg(told));
    controller.nap_AcqStatus(nap::NOT_STARTED);
    way.leave();
    head(QStringLiteral("%1 results in %2 s (ms)").arg(told).arg(ShotSeconds),
         {QStringLiteral("count"), QStringLiteral("median"), QStringLiteral("95 %"),
          QStringLiteral("longest")});
    row(QStringLiteral("frame, drawn"),
        {double(times.size()), part(times, 0.5), part(times, 0.95), part(times, 1)});
    row(QStringLiteral("result, taken"),
        {double(turns.size()), part(turns, 0.5), part(turns, 0.95), part(turns, 1)});
}

} // namespace

int main(int argc, char *argv[])
{
    QElapsedTimer start;
    start.start();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    const QString home = QStringLiteral("/data/lambrik/");
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::WarnLevel);
    Interface::prepare();
    const double prepared = double(start.nsecsElapsed()) / 1e6;

    Config config(nullptr);
    Database database(nullptr);
    if (!config.read(home) || !database.read(home))
        fail(home + QStringLiteral(" cannot be read"));
    HalvarController controller(home, &config, &database);
    const double assembled = double(start.nsecsElapsed()) / 1e6;
    Interface interface(controller, config, database, QLocale(QStringLiteral("fr_FR")));
    QQuickWindow *const window = interface.load();
    if (!window)
        fail(QStringLiteral("the screens cannot be loaded"));
    const double loaded = double(start.nsecsElapsed()) / 1e6;
    Frames frames(window);
    if (!frames.waitForNext())
        fail(QStringLiteral("no frame is shown"));
    const double shown = double(start.nsecsElapsed()) / 1e6;

    head(QStringLiteral("start-up (ms)"), {QStringLiteral("since start"), QStringLiteral("step")});
    row(QStringLiteral("application"), {prepared, prepared});
    row(QStringLiteral("controller and lists"), {assembled, assembled - prepared});
    row(QStringLiteral("screens loaded"), {loaded, loaded - assembled});
    row(QStringLiteral("first frame"), {shown, shown - loaded});

    fill(controller, database);
    Way way(interface.engine(), window);
    way.home();
    frames.waitForNext();
    openEachScreen(way, frames, QVariant::fromValue<QObject *>(database.m_LocalItemsListModel));
    streamResults(way, frames, controller);
    return 0;
}
