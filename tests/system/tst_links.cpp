// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The links to the service and to the MSP: up, refused, lost, back again, and taken down.
#include "bench.h"

#include <QTcpServer>

#include <tessel/tessel.h>

#include <QsLogDest.h>

#include "battery.h"
#include "halvar-error.h"
#include "measurelistmodel.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

namespace {

constexpr quint16 ObserverPort = 3556;
const QString ChildOption = QStringLiteral("--controller");

/// What the child process does: a controller that is switched on, as an application does it.
int runController(const QString &home, bool silent)
{
    QsLogging::Logger::instance().setLoggingLevel(silent ? QsLogging::OffLevel : QsLogging::ErrorLevel);
    QsLogging::Logger::instance().addDestination(QsLogging::DestinationFactory::MakeFunctorDestination(
        [](const QString &line, QsLogging::Level) { std::fprintf(stderr, "%s\n", qUtf8Printable(line)); }));
    Config config(nullptr);
    config.read(home);
    Database database(nullptr);
    database.read(home);
    HalvarController controller(home, &config, &database);
    controller.init();
    return 0;
}

} // namespace

class TstLinks : public QObject
{
    Q_OBJECT
private slots:
    void withoutService_theProcessEndsWithOne_data();
    void withoutService_theProcessEndsWithOne();
    void withoutObserverPort_theProcessEndsWithTwo();
    void withBoth_theProcessGoesOn();
    void observer_isRegisteredAndUnregistered();
    void serviceThatDiesWhileMeasuring_harmsNothing();
    void silentService_holdsUpNoLongerThanTheLimit();
    void slowService_isWaitedFor();
    void mspThatDies_isFoundAgain();
    void refusingMsp_isLogged();
    void hardMspAtTheStart_isSentToStandby();
    void unknownMspState_isSurvived();
    void light_isSwitchedByTheMsp();
    void battery_followsTheGauge();
    void beep_isHeardAtTheStart();

private:
    /// Exit status and error output of a controller's process; -1 when it did not end by itself.
    static QPair<int, QString> controllerProcess(const TestHome &home, bool silent = false)
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      {ChildOption, home.path(), silent ? QStringLiteral("silent") : QStringLiteral("loud")});
        if (!process.waitForFinished(20000)) {
            process.kill();
            process.waitForFinished();
            return {-1, QString()};
        }
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardError())};
    }
};

void TstLinks::withoutService_theProcessEndsWithOne_data()
{
    QTest::addColumn<bool>("silent");
    QTest::newRow("with a line") << false;
    QTest::newRow("silently, with the logger off") << true;
}

void TstLinks::withoutService_theProcessEndsWithOne()
{
    QFETCH(bool, silent);
    const TestHome home;
    const auto end = controllerProcess(home, silent);
    QCOMPARE(end.first, 1);
    if (silent)
        QCOMPARE(end.second, QString());
    else
        QVERIFY2(end.second.contains(QStringLiteral("[Halvar Controller]: * NAP_Server: \"KO\"")),
                 qPrintable(end.second));
}

void TstLinks::withoutObserverPort_theProcessEndsWithTwo()
{
    const TestHome home;
    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(simulator.start());
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost, ObserverPort));
    const auto end = controllerProcess(home);
    QCOMPARE(end.first, 2);
    QVERIFY2(end.second.contains(QStringLiteral("[Halvar Controller]: * Observer manager: \"KO\"")),
             qPrintable(end.second));
}

void TstLinks::withBoth_theProcessGoesOn()
{
    const TestHome home;
    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(simulator.start());
    const auto end = controllerProcess(home);
    QCOMPARE(end.first, 0);
    QCOMPARE(end.second, QString());
}

void TstLinks::observer_isRegisteredAndUnregistered()
{
    Bench bench;
    QVERIFY(bench.start());
    QCOMPARE(bench.nap("observers").toArray(), QJsonArray{QStringLiteral("nap_server@TCPIP:localhost:3556")});
    bench.fixture.reset();
    QVERIFY(bench.nap("observers").toArray().isEmpty());
    QCOMPARE(bench.calls("unregisterObserver"), 1);
    // What is told now finds nobody, in either process.
    QVERIFY(bench.set("napStatus", "status", QStringLiteral("IN_PROGRESS")));
    QCOMPARE(bench.simulator.stop(), 0);
}

void TstLinks::serviceThatDiesWhileMeasuring_harmsNothing()
{
    Bench bench(4);
    QVERIFY(bench.start());
    bench->setFileName(QStringLiteral("essai"));
    QVERIFY(bench.ready(MeasureMode::TRIGGER));
    QVERIFY(bench.simulator.control.press());
    QTRY_VERIFY(bench.results().size() >= 2);
    QTRY_VERIFY(!bench->directMeasures->isEmpty());
    QVERIFY(bench.simulator.control.run(QStringLiteral("napDie")));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(bench.simulator.control.release());
    QTRY_VERIFY(!bench.home.read(QStringLiteral("files/essai.xml")).isEmpty());
    bench->stopMeasure();
    bench->requestUpdate();
    QVERIFY2(timer.elapsed() < tessel::call_time_limit(), qPrintable(QString::number(timer.elapsed())));
    // Nobody tells of the measure's end any more; nothing is made up in its place.
    QCOMPARE(bench->acquisitionMode(), Mode::MEASURE);
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("12-01-2026"));

    bench.simulator.kill();
    bench->stopMeasureProperly();
    bench->switchLight(true);
    timer.restart();
    bench.fixture.reset();
    QVERIFY2(timer.elapsed() < tessel::call_time_limit(), qPrintable(QString::number(timer.elapsed())));
}

void TstLinks::silentService_holdsUpNoLongerThanTheLimit()
{
    const int limit = tessel::call_time_limit();
    Bench bench;
    QVERIFY(bench.start());
    tessel::set_call_time_limit(400);
    QVERIFY(bench.set("napSilent", "on", true));
    QElapsedTimer timer;
    timer.start();
    bench->startCalibration();
    const qint64 taken = timer.elapsed();
    tessel::set_call_time_limit(limit);
    QVERIFY2(taken >= 400 && taken < 2000, qPrintable(QString::number(taken)));
    QCOMPARE(bench->acquisitionMode(), Mode::CALIBRATION);
    // Heard again, it carries out what it was asked.
    QVERIFY(bench.set("napSilent", "on", false));
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
}

void TstLinks::slowService_isWaitedFor()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.set("napDelay", "ms", 300));
    QElapsedTimer timer;
    timer.start();
    bench->startCalibration();
    QVERIFY2(timer.elapsed() >= 300, qPrintable(QString::number(timer.elapsed())));
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.modes, QList<int>({Mode::CALIBRATION}));
}

void TstLinks::mspThatDies_isFoundAgain()
{
    Bench bench;
    QVERIFY(bench.start());
    const QString refused = QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"KO\"");
    const QString obeyed = QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"OK\"");
    {
        LogRecorder log;
        QVERIFY(bench.simulator.control.run(QStringLiteral("mspDie")));
        bench->switchLight(true);
        QTRY_COMPARE(log.count(refused), 1);
        QCOMPARE(log.count(obeyed), 0);
    }
    QVERIFY(bench.simulator.control.run(QStringLiteral("mspReturn")));
    QTRY_COMPARE(bench.msp("clients").toInt(), 1);
    LogRecorder log;
    bench->switchLight(true);
    QTRY_COMPARE(log.count(obeyed), 1);
    QVERIFY(bench.msp("light").toBool());
}

void TstLinks::refusingMsp_isLogged()
{
    Bench bench;
    QVERIFY(bench.start({QStringLiteral("--scenario"), QStringLiteral("refusing-msp")}));
    LogRecorder log;
    bench->setEnableMeasure(true);
    QTRY_COMPARE(log.count(QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"KO\"")), 1);
    QCOMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
    // Nothing is tried again behind the operator's back.
    QCOMPARE(bench.msp("refused").toObject().value(QLatin1String("RUN_HARD")).toInt(), 1);
    QVERIFY(bench.simulator.control.press());
    QCOMPARE(bench->acquisitionMode(), Mode::NONE);
}

void TstLinks::hardMspAtTheStart_isSentToStandby()
{
    Bench bench;
    bench.home.write(QStringLiteral("hard.json"),
                     R"({"mspInfo": {"state": "READY_HARD", "shutter": true, "shock": true}})");
    QVERIFY(bench.start({QStringLiteral("--scenario"), bench.home.file(QStringLiteral("hard.json"))}));
    QTRY_COMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
    QCOMPARE(bench.commands("ABORT"), 1);
    QCOMPARE(bench->error->property("errorMessage").toString(),
             QStringLiteral("Anomalie obturateur - Erreur S2"));
    QVERIFY(bench->error->property("shock").toBool());
}

void TstLinks::unknownMspState_isSurvived()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.set("mspInfo", "state", 99));
    LogRecorder log;
    emit bench->msp_info_request();
    QTRY_VERIFY(log.contains(QStringLiteral("FATAL [Halvar Controller]: * MSP:  \"KO\"")));
    QVERIFY(bench.set("mspEvent", "event", 77));
    QTRY_VERIFY(log.contains(QStringLiteral("DEBUG [Halvar Controller]: msp_event()")));
    QCOMPARE(bench->acquisitionMode(), Mode::NONE);
}

void TstLinks::light_isSwitchedByTheMsp()
{
    Bench bench;
    QVERIFY(bench.start());
    bench->setLight(true);
    QTRY_VERIFY(bench.msp("light").toBool());
    bench->setLight(false);
    QTRY_VERIFY(!bench.msp("light").toBool());
}

void TstLinks::battery_followsTheGauge()
{
    Bench bench;
    QVERIFY(bench.start());
    QTRY_COMPARE(bench->battery->level(), BatteryLevelsEnumClass::LEVEL_FULL);
    QVERIFY(bench.set("battery", "value", 3500000));
    QTRY_COMPARE(bench->battery->level(), BatteryLevelsEnumClass::LEVEL_VERY_LOW);
    QVERIFY(bench.set("battery", "value", QStringLiteral("missing")));
    QTRY_COMPARE(bench->battery->level(), BatteryLevelsEnumClass::LEVEL_UNKNOW);
    QVERIFY(bench.set("battery", "value", QStringLiteral("4V05")));
    QTRY_COMPARE(bench->battery->level(), BatteryLevelsEnumClass::LEVEL_CRITICAL);
}

void TstLinks::beep_isHeardAtTheStart()
{
    QFile line(QStringLiteral("/sys/class/gpio/gpio79/value"));
    QVERIFY(line.open(QIODevice::WriteOnly));
    line.write("0\n"); // whatever the tests before left on
    line.close();
    Bench bench;
    QVERIFY(bench.start());
    const auto beeper = [&bench](const char *member) {
        return bench.simulator.control.status()
            .value(QLatin1String("beeper"))
            .toObject()
            .value(QLatin1String(member))
            .toInt();
    };
    // With a beep time of 0 the beeper stays on.
    QTRY_COMPARE(beeper("beeps"), 1);
    QCOMPARE(beeper("level"), 1);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == ChildOption)
        return runController(arguments.at(2), arguments.at(3) == QLatin1String("silent"));
    TstLinks test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_links.moc"
