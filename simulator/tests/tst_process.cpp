// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <QJsonArray>
#include <QLocalServer>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include <nap/napserver.h>

#include "../../tests/support/simulatorprocess.h"

namespace nap = com::halvar::nap;

namespace {

const QString Program = QStringLiteral(SIMULATOR);
const QString SysClass = QStringLiteral("/sys/class");

/// How the program ends by itself: its status and what it said.
struct End
{
    int status = -1;
    QString output;
    QString error;
};

End run(const QStringList &arguments, const QString &instrument = QStringLiteral("1"))
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HALVAR_INSTRUMENT"), instrument);
    process.setProcessEnvironment(environment);
    process.start(Program, arguments);
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QJsonValue at(const QJsonObject &object, const char *first, const char *second)
{
    return object.value(QLatin1String(first)).toObject().value(QLatin1String(second));
}

/// Writes as the library does: the file is opened for writing, written once and closed.
bool writeOnce(const QString &path, const QByteArray &bytes)
{
    const int fd = open(qPrintable(path), O_WRONLY);
    if (fd < 0)
        return false;
    const bool written = write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size();
    return close(fd) == 0 && written;
}

} // namespace

class TstProcess : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup() { m_simulator.stop(); }

    void help_endsWithZero();
    void wrongUse_isOneLineAndStatusTwo_data();
    void wrongUse_isOneLineAndStatusTwo();
    void outsideAnInstrument_nothingStarts();
    void takenPort_isSaid();
    void takenSocket_isSaid_data();
    void takenSocket_isSaid();
    void ready_isWrittenWhenEverythingListens();
    void quitAndSignals_endInOrder();
    void home_tellsTheReference();
    void scenario_setsTheStartAndHappens();
    void battery_isWhatTheGaugeSays();
    void gpio_linesAppearAndBeepsAreCounted();
    void service_answersOverTcpAndDies();
    void vanishedObserver_isDropped();

private:
    SimulatorProcess m_simulator{Program};
};

void TstProcess::initTestCase()
{
    tessel::init();
}

void TstProcess::help_endsWithZero()
{
    const End end = run({QStringLiteral("--help")}, QString());
    QCOMPARE(end.status, 0);
    QVERIFY(end.output.contains(QStringLiteral("--scenario")));
    QVERIFY(end.error.isEmpty());
}

void TstProcess::wrongUse_isOneLineAndStatusTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const QString &arguments, const char *reason) {
        QTest::newRow(qPrintable(arguments))
            << arguments.split(QLatin1Char(' ')) << QString::fromUtf8(reason);
    };
    row(QStringLiteral("--colour"), "Unknown option 'colour'");
    row(QStringLiteral("calm"), "unexpected argument \"calm\"");
    row(QStringLiteral("--seed -1"), "--seed: expected an integer from 0 to 2147483647, found \"-1\"");
    row(QStringLiteral("--seed 2147483648"),
        "--seed: expected an integer from 0 to 2147483647, found \"2147483648\"");
    row(QStringLiteral("--speed 0"), "--speed: expected a number from 0.01 to 500, found \"0\"");
    row(QStringLiteral("--speed nan"), "--speed: expected a number from 0.01 to 500, found \"nan\"");
    row(QStringLiteral("--nap-port 0"), "--nap-port: expected a port from 1 to 65535, found \"0\"");
    row(QStringLiteral("--observer-port 65536"),
        "--observer-port: expected a port from 1 to 65535, found \"65536\"");
    row(QStringLiteral("--log-level loud"),
        "--log-level: expected trace, debug, info, warn, error, fatal or off, found \"loud\"");
    row(QStringLiteral("--position 10"), "--position: expected two whole numbers, X,Y, found \"10\"");
    row(QStringLiteral("--position 1,b"), "--position: expected two whole numbers, X,Y, found \"1,b\"");
    row(QStringLiteral("--language de"), "--language: expected fr or en, found \"de\"");
    row(QStringLiteral("--ready-fd x"), "--ready-fd: expected the number of an open descriptor, found \"x\"");
    row(QStringLiteral("--ready-fd 99"), "--ready-fd: descriptor 99 cannot be written");
    row(QStringLiteral("--scenario /nowhere.json"), "/nowhere.json: cannot be read");
    row(QStringLiteral("--home /nowhere"), "--home: /nowhere/config/config_unit cannot be read");
}

void TstProcess::wrongUse_isOneLineAndStatusTwo()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const End end = run(arguments);
    QCOMPARE(end.status, 2);
    QCOMPARE(end.error, QStringLiteral("halvar-simulator: %1; see --help.\n").arg(reason));
    QVERIFY(end.output.isEmpty());
}

void TstProcess::outsideAnInstrument_nothingStarts()
{
    const End end = run({}, QString());
    QCOMPARE(end.status, 2);
    QCOMPARE(end.error.count(QLatin1Char('\n')), 1);
    QVERIFY2(end.error.contains(QStringLiteral("private instrument")), qPrintable(end.error));
}

void TstProcess::takenPort_isSaid()
{
    QVERIFY(m_simulator.start());
    m_simulator.control.run(QStringLiteral("battery"), {{QStringLiteral("value"), 3210000}});
    const End end = run({});
    QCOMPARE(end.status, 2);
    QCOMPARE(end.error,
             QStringLiteral("halvar-simulator: port 3555 of this machine is taken; see --help.\n"));
    QCOMPARE(read(SysClass + QStringLiteral("/power_supply/bq27510-0/voltage_now")), QByteArray("3210000\n"));
}

void TstProcess::takenSocket_isSaid_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("MSP") << QStringLiteral("halvar-msp");
    QTest::newRow("control") << QStringLiteral("halvar-simulator");
}

void TstProcess::takenSocket_isSaid()
{
    QFETCH(QString, name);
    QLocalServer other;
    QVERIFY(other.listen(name));
    const End end = run({});
    QCOMPARE(end.status, 2);
    QCOMPARE(end.error.count(QLatin1Char('\n')), 1);
    QVERIFY2(end.error.contains(name + QStringLiteral(" is taken")), qPrintable(end.error));
}

void TstProcess::ready_isWrittenWhenEverythingListens()
{
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    QProcess process;
    process.start(Program, {QStringLiteral("--ready-fd"), QString::number(ends[1])});
    QVERIFY(process.waitForStarted());
    close(ends[1]);
    char text[16] = {};
    QCOMPARE(::read(ends[0], text, sizeof text), ssize_t(6));
    QCOMPARE(QByteArray(text), QByteArray("ready\n"));
    QCOMPARE(::read(ends[0], text, sizeof text), ssize_t(0));
    close(ends[0]);
    // No waiting any more: it answers at once.
    QVERIFY(m_simulator.control.connectTo(SimulatorControl::defaultName(), 0));
    QVERIFY(nap::PNAPServer().bind("nap_server@TCPIP:localhost:3555"));
    m_simulator.control.run(QStringLiteral("quit"));
    QVERIFY(process.waitForFinished());
    m_simulator.control.close();
}

void TstProcess::quitAndSignals_endInOrder()
{
    QVERIFY(m_simulator.start());
    QCOMPARE(m_simulator.stop(), 0);
    for (const int signal : {SIGTERM, SIGINT}) {
        QVERIFY(m_simulator.start());
        ::kill(pid_t(m_simulator.process().processId()), signal);
        QVERIFY(m_simulator.process().waitForFinished());
        QCOMPARE(m_simulator.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_simulator.process().exitCode(), 0);
        m_simulator.control.close();
    }
    // One that was killed leaves its sockets' files behind, in nobody's way.
    QVERIFY(m_simulator.start());
    m_simulator.kill();
    QVERIFY(m_simulator.start());
}

void TstProcess::home_tellsTheReference()
{
    const QTemporaryDir home;
    QDir(home.path()).mkdir(QStringLiteral("config"));
    QFile config(home.filePath(QStringLiteral("config/config_unit")));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write("<Data><V/><U><Nist_InformationValue>3.5</Nist_InformationValue>"
                 "<Nist_InformationPrecision>0.25</Nist_InformationPrecision></U></Data>");
    config.close();
    QVERIFY(m_simulator.start(
        {QStringLiteral("--home"), home.path(), QStringLiteral("--speed"), QStringLiteral("500")}));
    nap::PNAPServer server;
    QVERIFY(server.bind("nap_server@TCPIP:localhost:3555"));
    QCOMPARE(server.startAccuracyCheck(), 0);
    QVERIFY(!m_simulator.control.waitForNotice({{QStringLiteral("notice"), QStringLiteral("finished")}})
                 .isEmpty());
    const double value =
        at(m_simulator.control.status(), "nap", "last").toObject().value(QLatin1String("value")).toDouble();
    QVERIFY2(value > 2.5 && value < 4.5, qPrintable(QString::number(value)));
}

void TstProcess::scenario_setsTheStartAndHappens()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("mine.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"seed": 3, "speed": 100, "battery": 3600000, "mspInfo": {"state": "READY_HARD", "shock": true},
        "steps": [{"after": {"notice": "mspEvent", "event": "SHUT_OPENED"}, "count": 2, "at": 1,
                   "command": "battery", "value": "odd"}]})");
    file.close();
    QVERIFY(m_simulator.start(
        {QStringLiteral("--scenario"), path, QStringLiteral("--seed"), QStringLiteral("9")}));
    QJsonObject status = m_simulator.control.status();
    QCOMPARE(status.value(QLatin1String("scenario")).toString(), QStringLiteral("mine"));
    QCOMPARE(status.value(QLatin1String("seed")).toInt(), 9);
    QCOMPARE(status.value(QLatin1String("speed")).toDouble(), 100.0);
    QCOMPARE(status.value(QLatin1String("battery")).toInt(), 3600000);
    QCOMPARE(at(status, "msp", "state").toString(), QStringLiteral("READY_HARD"));

    QVERIFY(m_simulator.control.press());
    QVERIFY(m_simulator.control.release());
    QVERIFY(m_simulator.control.run(QStringLiteral("mspInfo"),
                                    {{QStringLiteral("state"), QStringLiteral("READY_HARD")}}));
    QCOMPARE(m_simulator.control.status().value(QLatin1String("battery")).toInt(), 3600000);
    QVERIFY(m_simulator.control.press());
    QTRY_COMPARE(m_simulator.control.status().value(QLatin1String("battery")).toString(),
                 QStringLiteral("odd"));
}

void TstProcess::battery_isWhatTheGaugeSays()
{
    QVERIFY(m_simulator.start());
    const QString path = SysClass + QStringLiteral("/power_supply/bq27510-0/voltage_now");
    QCOMPARE(read(path), QByteArray("4050000\n"));
    const auto set = [this](const QJsonValue &value) {
        return m_simulator.control.run(QStringLiteral("battery"), {{QStringLiteral("value"), value}});
    };
    QVERIFY(set(3300000));
    QCOMPARE(read(path), QByteArray("3300000\n"));
    QVERIFY(set(5));
    QCOMPARE(read(path), QByteArray("5\n"));
    QVERIFY(set(QStringLiteral("garbage ")));
    QCOMPARE(read(path), QByteArray("garbage \n"));
    QVERIFY(set(QStringLiteral("missing")));
    QVERIFY(!QFile::exists(path));
    QVERIFY(set(4000000));
    QCOMPARE(read(path), QByteArray("4000000\n"));
}

void TstProcess::gpio_linesAppearAndBeepsAreCounted()
{
    QDir(SysClass + QStringLiteral("/gpio/gpio79")).removeRecursively();
    QVERIFY(m_simulator.start());
    QVERIFY(writeOnce(SysClass + QStringLiteral("/gpio/export"), "79"));
    const QString value = SysClass + QStringLiteral("/gpio/gpio79/value");
    QTRY_COMPARE(read(value), QByteArray("0\n"));
    QTRY_COMPARE(read(SysClass + QStringLiteral("/gpio/gpio79/direction")), QByteArray("in\n"));
    const auto beeper = [this](const char *member) {
        return at(m_simulator.control.status(), "beeper", member).toInt();
    };
    QVERIFY(writeOnce(value, QByteArray("1\0", 2)));
    QTRY_COMPARE(beeper("level"), 1);
    QVERIFY(writeOnce(value, QByteArray("0\0", 2)));
    QTRY_COMPARE(beeper("level"), 0);
    QCOMPARE(beeper("beeps"), 1);
    QVERIFY(writeOnce(value, QByteArray("1\0", 2)));
    QTRY_COMPARE(beeper("beeps"), 2);
    QVERIFY(writeOnce(SysClass + QStringLiteral("/gpio/export"), "12"));
    QTRY_VERIFY(QFile::exists(SysClass + QStringLiteral("/gpio/gpio12/value")));
}

void TstProcess::service_answersOverTcpAndDies()
{
    QVERIFY(m_simulator.start());
    nap::PNAPServer server;
    QVERIFY(server.bind("nap_server@TCPIP:localhost:3555"));
    QCOMPARE(server.startCalibration(), 0);
    QVERIFY(server.startCalibration() < 0);
    QVERIFY(m_simulator.control.run(QStringLiteral("napDie")));
    QCOMPARE(server.abort(), int(tessel::ERR_PEER_GONE));
    QVERIFY(!nap::PNAPServer().bind("nap_server@TCPIP:localhost:3555"));
    QVERIFY(m_simulator.control.run(QStringLiteral("napReturn")));
    // What was agreed with the dead one does not hold with its successor.
    QCOMPARE(server.abort(), int(tessel::ERR_PEER_GONE));
    QVERIFY(server.bind("nap_server@TCPIP:localhost:3555"));
    QVERIFY(server.abort() < 0);
    QCOMPARE(server.startCalibration(), 0);
}

void TstProcess::vanishedObserver_isDropped()
{
    QVERIFY(m_simulator.start());
    nap::PNAPServer server;
    QVERIFY(server.bind("nap_server@TCPIP:localhost:3555"));
    QCOMPARE(server.registerObserver("nap_server@TCPIP:localhost:3556"), 0);
    const QJsonObject dropped =
        m_simulator.control.waitForNotice({{QStringLiteral("notice"), QStringLiteral("observer")},
                                           {QStringLiteral("event"), QStringLiteral("dropped")}});
    QCOMPARE(dropped.value(QLatin1String("description")).toString(),
             QStringLiteral("nap_server@TCPIP:localhost:3556"));
    QVERIFY(at(m_simulator.control.status(), "nap", "observers").toArray().isEmpty());
    QCOMPARE(server.startMeasure(nap::MeasureCustomData(), false), 0);
}

QTEST_GUILESS_MAIN(TstProcess)
#include "tst_process.moc"
