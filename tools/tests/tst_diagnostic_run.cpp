// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <simulatorcontrol.h>

/// halvar-diagnostic and halvar-simulator as two programs in one private instrument.
class TstDiagnosticRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void completeDiagnostic_isRecordedAndComesBackEqual();
    void sameSeedAndScenario_giveTheSameMeasures();
    void unexpectedResult_endsTheRecording();
    void unexpectedError_endsTheRecording();
    void expectedError_isReadAndTakenBack();
    void simulatorThatGoes_endsTheRecording();
    void withoutSimulator_itSaysSo();
    void wrongUsage_isOneLineAndStatus2_data();
    void wrongUsage_isOneLineAndStatus2();
    void outsideAnInstrument_nothingIsDone();
    void demoSession_endsWithTheRecordingsStatus();

private:
    struct Result
    {
        int status = -1;
        QString output;
        QString errors;
    };
    Result run(const QString &program, const QStringList &arguments,
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment()) const;
    Result record(const QStringList &arguments) const;
    QString scenario(const QByteArray &steps) const;
    void startSimulator();
    void stopSimulator();
    static QString program(const char *name);
    QString path(const char *name) const { return m_directory->filePath(QLatin1String(name)); }
    static QByteArray content(const QString &path);
    QStringList concentrations(const QString &diagnostic) const;

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QProcess> m_simulator;
};

QString TstDiagnosticRun::program(const char *name)
{
    return QStringLiteral(HALVAR_BINARY_DIR "/bin/") + QLatin1String(name);
}

QByteArray TstDiagnosticRun::content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TstDiagnosticRun::initTestCase()
{
    QCOMPARE(qEnvironmentVariable("HALVAR_INSTRUMENT"), QStringLiteral("1"));
}

void TstDiagnosticRun::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    // The instrument's own home, as on the instrument's first day.
    QVERIFY(QDir(QStringLiteral("/data/lambrik")).removeRecursively());
    QVERIFY(QDir().mkpath(QStringLiteral("/data/lambrik")));

    // The sample home without its waits: the beeper would take most of the time.
    const QString sample = QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home");
    for (const char *name :
         {"config/config_unit", "database/database_unit.xml", "database/database_diagnostic.xml"}) {
        const QString source = sample + QLatin1Char('/') + QLatin1String(name);
        const QString target = path("home/") + QLatin1String(name);
        QVERIFY(QDir().mkpath(QFileInfo(target).path()));
        QVERIFY2(QFile::copy(source, target), qPrintable(source));
    }
    QByteArray config = content(path("home/config/config_unit"));
    const QVector<QPair<QByteArray, QByteArray>> values{
        {"Beep_Time", "0"}, {"Waiting_For_Go", "0"}, {"Time_Before_Open_Shutter", "50"}};
    for (const auto &[key, value] : values) {
        const int start = config.indexOf('<' + key + '>') + int(key.size()) + 2;
        QVERIFY(start > key.size() + 2);
        config.replace(start, config.indexOf('<', start) - start, value);
    }
    QFile file(path("home/config/config_unit"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(config), qint64(config.size()));
}

void TstDiagnosticRun::cleanup()
{
    stopSimulator();
    m_directory.reset();
}

void TstDiagnosticRun::stopSimulator()
{
    if (m_simulator && m_simulator->state() != QProcess::NotRunning) {
        m_simulator->terminate();
        QVERIFY(m_simulator->waitForFinished());
    }
    m_simulator.reset();
}

void TstDiagnosticRun::startSimulator()
{
    m_simulator = std::make_unique<QProcess>();
    m_simulator->setProcessChannelMode(QProcess::ForwardedChannels);
    m_simulator->start(program("halvar-simulator"),
                       {QStringLiteral("--seed"), QStringLiteral("7"), QStringLiteral("--log-level"),
                        QStringLiteral("error")});
    QVERIFY(m_simulator->waitForStarted());
    SimulatorControl control;
    QVERIFY2(control.connectTo(), qPrintable(control.errorString()));
}

TstDiagnosticRun::Result TstDiagnosticRun::run(const QString &program, const QStringList &arguments,
                                               const QProcessEnvironment &environment) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_directory->path());
    process.start(program, arguments);
    if (!process.waitForFinished(110000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

TstDiagnosticRun::Result TstDiagnosticRun::record(const QStringList &arguments) const
{
    return run(program("halvar-diagnostic"),
               QStringList{QStringLiteral("--home"), path("home"), QStringLiteral("--out"), path("out")}
                   + arguments);
}

/// A scenario of \p steps with an open diagnostic, as a file.
QString TstDiagnosticRun::scenario(const QByteArray &steps) const
{
    QFile file(path("scenario.json"));
    const QByteArray json = R"({"title": "test", "speed": 100, "steps": [
        {"do": "wait-for-go"},
        {"do": "diagnostic", "name": "Essai", "localization": "Lyon"},
        {"do": "mode", "measureMode": "AUTO", "nbMeasures": 1},
        {"do": "unit", "room": "Cuisine", "element": "Mur"},)"
        + steps + "]}";
    return file.open(QIODevice::WriteOnly) && file.write(json) == json.size() ? file.fileName() : QString();
}

QStringList TstDiagnosticRun::concentrations(const QString &diagnostic) const
{
    QStringList texts;
    QXmlStreamReader reader(content(path("out/") + diagnostic + QStringLiteral(".xml")));
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement
            && reader.name() == QLatin1String("Concentration"))
            texts.append(reader.readElementText());
    }
    return texts;
}

void TstDiagnosticRun::completeDiagnostic_isRecordedAndComesBackEqual()
{
    startSimulator();
    const Result result = record({QStringLiteral("--speed"), QStringLiteral("50")});
    QVERIFY2(result.status == 0, qPrintable(result.output + result.errors));
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.endsWith(QStringLiteral(
                 "\nhalvar-diagnostic: the diagnostic was recorded, saved, and loaded back equal.\n")),
             qPrintable(result.output));

    // What is handed over is what the instrument holds, and the summary is what was printed.
    const QByteArray saved = content(QStringLiteral("/data/lambrik/files/Immeuble des Lilas.xml"));
    QVERIFY(saved.contains("<Nom>Immeuble des Lilas</Nom>"));
    QCOMPARE(content(path("out/Immeuble des Lilas.xml")), saved);
    QVERIFY(content(path("out/info.txt")).contains("SIM-0001"));
    QCOMPARE(content(path("out/shock.xml")).count("<shock>"), 1);
    QVERIFY(result.output.contains(QString::fromUtf8(content(path("out/summary.txt")))));
    QVERIFY(result.output.contains(QStringLiteral("Anomalie obturateur - Erreur S2")));
    // Three shots of the first unit and one of each of the three others.
    QCOMPARE(concentrations(QStringLiteral("Immeuble des Lilas")).size(), 6);
}

void TstDiagnosticRun::sameSeedAndScenario_giveTheSameMeasures()
{
    const QStringList arguments{
        QStringLiteral("--scenario"),
        scenario(R"({"do": "measure", "sample": {"concentration": 3}, "count": 3, "statut": "POSITIVE"})")};
    QVector<QStringList> runs;
    for (int i = 0; i < 2; ++i) {
        startSimulator();
        const Result result = record(arguments);
        QVERIFY2(result.status == 0, qPrintable(result.output + result.errors));
        runs.append(concentrations(QStringLiteral("Essai")));
        stopSimulator();
    }
    QCOMPARE(runs.at(0).size(), 3);
    QCOMPARE(runs.at(0), runs.at(1));
}

void TstDiagnosticRun::unexpectedResult_endsTheRecording()
{
    startSimulator();
    const Result result =
        record({QStringLiteral("--scenario"),
                scenario(R"({"do": "measure", "sample": {"concentration": 3}, "decision": "NEGATIVE"})")});
    QCOMPARE(result.status, 1);
    QCOMPARE(
        result.errors,
        QStringLiteral("halvar-diagnostic: step 5, measure: the decision is POSITIVE, expected NEGATIVE\n"));
}

void TstDiagnosticRun::unexpectedError_endsTheRecording()
{
    startSimulator();
    const Result result = record(
        {QStringLiteral("--scenario"),
         scenario(R"({"do": "instrument", "command": "mspEvent", "members": {"event": "SYS_ERR", "code": 5}},
                              {"do": "measure", "sample": {"concentration": 3}})")});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(QStringLiteral("halvar-diagnostic: step 6, measure: ")),
             qPrintable(result.errors));
    QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
}

void TstDiagnosticRun::expectedError_isReadAndTakenBack()
{
    startSimulator();
    const Result result = record(
        {QStringLiteral("--scenario"),
         scenario(R"({"do": "instrument", "command": "mspEvent", "members": {"event": "SYS_ERR", "code": 4}},
                              {"do": "error", "text": "Anomalie DAC - Erreur S4"})")});
    QVERIFY2(result.status == 0, qPrintable(result.output + result.errors));
    QVERIFY(result.output.contains(QStringLiteral("Events:           Anomalie DAC - Erreur S4\n")));
}

void TstDiagnosticRun::simulatorThatGoes_endsTheRecording()
{
    startSimulator();
    const Result result =
        record({QStringLiteral("--scenario"), scenario(R"({"do": "instrument", "command": "quit"},
                                              {"do": "measure", "sample": {"concentration": 3}})")});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(
                 QStringLiteral("halvar-diagnostic: step 6, measure: the simulated instrument")),
             qPrintable(result.errors));
    QVERIFY(m_simulator->waitForFinished());
}

void TstDiagnosticRun::withoutSimulator_itSaysSo()
{
    const Result result = record({});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.endsWith(QStringLiteral("(is halvar-simulator running?)\n")),
             qPrintable(result.errors));
    QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
}

void TstDiagnosticRun::wrongUsage_isOneLineAndStatus2_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QStringList &arguments, const QString &text) {
        QTest::newRow(name) << arguments << QStringLiteral("halvar-diagnostic: ") + text + QLatin1Char('\n');
    };
    const QString hint = QStringLiteral(" See halvar-diagnostic --help.");
    row("unknown option", {QStringLiteral("--loud")}, QStringLiteral("Unknown option 'loud'.") + hint);
    row("missing value", {QStringLiteral("--speed")},
        QStringLiteral("Missing value after '--speed'.") + hint);
    row("unexpected argument", {QStringLiteral("x")}, QStringLiteral("Unexpected argument 'x'.") + hint);
    row("speed out of range", {QStringLiteral("--speed"), QStringLiteral("0")},
        QStringLiteral("--speed takes a number from 0.01 to 500, not '0'.") + hint);
    row("speed that is no number", {QStringLiteral("--speed"), QStringLiteral("nan")},
        QStringLiteral("--speed takes a number from 0.01 to 500, not 'nan'.") + hint);
    row("unknown level", {QStringLiteral("--log-level"), QStringLiteral("loud")},
        QStringLiteral("There is no log level 'loud'.") + hint);
    row("unknown scenario", {QStringLiteral("--scenario"), QStringLiteral("none")},
        QStringLiteral("there is no scenario \"none\"; there are: complete, short"));
    row("missing scenario", {QStringLiteral("--scenario"), QStringLiteral("./none.json")},
        QStringLiteral("./none.json: No such file or directory"));
    row("no home", {QStringLiteral("--home"), QStringLiteral("/usr")},
        QStringLiteral("/usr is no home of an instrument: it has no config/config_unit"));
    row("place that cannot be written", {QStringLiteral("--out"), QStringLiteral("/proc/out")},
        QStringLiteral("the directory /proc/out cannot be written"));
}

void TstDiagnosticRun::wrongUsage_isOneLineAndStatus2()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, text);
    const Result result = record(arguments);
    QCOMPARE(result.errors, text);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.status, 2);
}

void TstDiagnosticRun::outsideAnInstrument_nothingIsDone()
{
    startSimulator();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("HALVAR_INSTRUMENT"));
    const Result result = run(program("halvar-diagnostic"), {}, environment);
    QCOMPARE(
        result.errors,
        QStringLiteral("halvar-diagnostic: This is no private instrument. See halvar-diagnostic --help.\n"));
    QCOMPARE(result.status, 2);
    QVERIFY(QDir(QStringLiteral("/data/lambrik")).isEmpty());
}

void TstDiagnosticRun::demoSession_endsWithTheRecordingsStatus()
{
    const QString session = QStringLiteral(HALVAR_SOURCE_DIR "/tools/demo-session");
    const QString programs = QStringLiteral(HALVAR_BINARY_DIR "/bin");
    const QStringList common{programs, QStringLiteral("--home"), path("home"), QStringLiteral("--out"),
                             path("out")};
    const Result good =
        run(session, common + QStringList{QStringLiteral("--scenario"), QStringLiteral("short")});
    QVERIFY2(good.status == 0, qPrintable(good.output + good.errors));
    QCOMPARE(good.errors, QString());
    // Its simulator has gone with it: the next one finds everything free.
    const Result bad =
        run(session, common + QStringList{QStringLiteral("--scenario"), QStringLiteral("none")});
    QCOMPARE(bad.status, 2);
    const Result help = run(session, {programs, QStringLiteral("--help")});
    QCOMPARE(help.status, 0);
    QVERIFY(help.output.contains(QStringLiteral("--scenario")));
}

QTEST_GUILESS_MAIN(TstDiagnosticRun)
#include "tst_diagnostic_run.moc"
