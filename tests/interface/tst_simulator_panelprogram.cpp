// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The simulated instrument with its panel as a program, and the session that shows it beside the interface.
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include "simulatorcontrol.h"
#include "simulatorprocess.h"

namespace {

constexpr int Patience = 60000; // ms

QProcessEnvironment without(const QStringList &names)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : names)
        environment.remove(name);
    return environment;
}

/// What a program is linked to, directly or not.
QString librariesOf(const QString &program)
{
    QProcess list;
    list.start(QStringLiteral("ldd"), {program});
    list.waitForFinished();
    return QString::fromLocal8Bit(list.readAllStandardOutput());
}

/// Starts it, and waits for as long as its window may take under the sanitizers.
bool startPanel(SimulatorProcess &simulator, const QStringList &options = {})
{
    simulator.process().setProcessChannelMode(QProcess::ForwardedErrorChannel);
    simulator.process().start(QStringLiteral(SIMULATOR), QStringList{QStringLiteral("--panel")} + options);
    return simulator.control.connectTo(SimulatorControl::defaultName(), Patience)
        && simulator.control.command(QStringLiteral("status"), {}, Patience)
               .value(QLatin1String("ok"))
               .toBool();
}

} // namespace

class TstSimulatorPanelProgram : public QObject
{
    Q_OBJECT

private slots:
    void panel_servesLikeAnySimulator();
    void panel_endsBySignal();
    void panel_withoutADisplayIsRefused();
    void simulatorWithoutPanel_needsNoDisplaysLibraries();
    void session_endsWithTheSimulator();
    void session_endsWithTheInterface();
    void session_endsBySignal();

private:
    /// The session, once both of its programs are at work.
    void start(QProcess &session);
};

void TstSimulatorPanelProgram::panel_servesLikeAnySimulator()
{
    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(startPanel(simulator,
                       {QStringLiteral("--speed"), QStringLiteral("7"), QStringLiteral("--position"),
                        QStringLiteral("30,40"), QStringLiteral("--language"), QStringLiteral("en")}));
    QCOMPARE(simulator.control.status().value(QLatin1String("speed")).toDouble(), 7.0);
    QVERIFY(simulator.control.press());
    QCOMPARE(simulator.stop(), 0);
}

void TstSimulatorPanelProgram::panel_endsBySignal()
{
    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(startPanel(simulator));
    simulator.process().terminate();
    QVERIFY(simulator.process().waitForFinished());
    QCOMPARE(simulator.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(simulator.process().exitCode(), 0);
}

void TstSimulatorPanelProgram::panel_withoutADisplayIsRefused()
{
    QProcess simulator;
    simulator.setProcessEnvironment(without(
        {QStringLiteral("DISPLAY"), QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("QT_QPA_PLATFORM")}));
    simulator.start(QStringLiteral(SIMULATOR), {QStringLiteral("--panel")});
    QVERIFY(simulator.waitForFinished());
    QCOMPARE(simulator.exitCode(), 2);
    QCOMPARE(simulator.readAllStandardError(),
             QByteArray("halvar-simulator: --panel: there is no display; see --help.\n"));
}

void TstSimulatorPanelProgram::simulatorWithoutPanel_needsNoDisplaysLibraries()
{
    const QString libraries = librariesOf(QStringLiteral(SIMULATOR));
    QVERIFY(libraries.contains(QLatin1String("libQt5Core")));
    for (const char *const library : {"libQt5Gui", "libQt5Qml", "libQt5Quick"})
        QVERIFY2(!libraries.contains(QLatin1String(library)), library);
    QVERIFY(librariesOf(QStringLiteral(SIMULATOR "-panel")).contains(QLatin1String("libQt5Quick")));
}

void TstSimulatorPanelProgram::start(QProcess &session)
{
    session.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    session.start(QStringLiteral(SESSION),
                  {QFileInfo(QStringLiteral(SIMULATOR)).path(), QStringLiteral("halvar-interface")});
    SimulatorControl control;
    QVERIFY2(control.connectTo(SimulatorControl::defaultName(), Patience), qPrintable(control.errorString()));
    // The interface has its controller by then.
    const auto observers = [&] {
        return control.status()
            .value(QLatin1String("nap"))
            .toObject()
            .value(QLatin1String("observers"))
            .toArray()
            .size();
    };
    QTRY_COMPARE_WITH_TIMEOUT(observers(), 1, Patience);
}

void TstSimulatorPanelProgram::session_endsWithTheSimulator()
{
    QProcess session;
    start(session);
    SimulatorControl control;
    QVERIFY(control.connectTo());
    QVERIFY(control.run(QStringLiteral("quit")));
    QVERIFY(session.waitForFinished(Patience));
    QVERIFY(!SimulatorControl().connectTo(SimulatorControl::defaultName(), 0));
}

void TstSimulatorPanelProgram::session_endsWithTheInterface()
{
    QProcess session;
    start(session);
    // The only other child of the session.
    QProcess find;
    find.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), QStringLiteral("cat /proc/%1/task/%1/children").arg(session.processId())});
    QVERIFY(find.waitForFinished());
    pid_t interface = 0;
    const QList<QByteArray> children = find.readAllStandardOutput().simplified().split(' ');
    for (const QByteArray &child : children) {
        QFile name(QStringLiteral("/proc/%1/comm").arg(QLatin1String(child)));
        QVERIFY(name.open(QIODevice::ReadOnly));
        if (name.readAll().startsWith("halvar-interfac"))
            interface = child.toInt();
    }
    QVERIFY(interface > 0);
    QCOMPARE(::kill(interface, SIGTERM), 0);
    QVERIFY(session.waitForFinished(Patience));
    QCOMPARE(session.exitCode(), 128 + SIGTERM);
    QVERIFY(!SimulatorControl().connectTo(SimulatorControl::defaultName(), 0));
}

void TstSimulatorPanelProgram::session_endsBySignal()
{
    QProcess session;
    start(session);
    session.terminate();
    QVERIFY(session.waitForFinished(Patience));
    QVERIFY(!SimulatorControl().connectTo(SimulatorControl::defaultName(), 0));
}

QTEST_GUILESS_MAIN(TstSimulatorPanelProgram)
#include "tst_simulator_panelprogram.moc"
