// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QJsonDocument>
#include <QTest>

#include "commandtable.h"
#include "scenario.h"

using simulator::Scenario;

class TstScenario : public QObject
{
    Q_OBJECT
private slots:
    void shipped_areSound_data();
    void shipped_areSound();
    void settingsAndSteps_areTaken();
    void mistake_namesFileKeyAndExpectation_data();
    void mistake_namesFileKeyAndExpectation();
    void unknownName_listsTheKnownOnes();
    void hugeFile_isRefused();
    void command_isJudged_data();
    void command_isJudged();

private:
    QString write(const QByteArray &content)
    {
        const QString path = m_directory.filePath(QStringLiteral("mine.json"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Cannot write %s", qPrintable(path));
        return path;
    }
    const QString m_shipped = QStringLiteral(HALVAR_SOURCE_DIR "/simulator/scenarios");
    QTemporaryDir m_directory;
};

void TstScenario::shipped_areSound_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = QDir(m_shipped).entryList({QStringLiteral("*.json")});
    QCOMPARE(names.size(), 11);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name.chopped(5);
}

void TstScenario::shipped_areSound()
{
    QFETCH(QString, name);
    Scenario scenario;
    QString error;
    QVERIFY2(scenario.read(name, m_shipped, error), qPrintable(error));
    QCOMPARE(scenario.name, name);
    QVERIFY(!scenario.description.isEmpty());
    // Built into the program, so that it finds them wherever it is.
    QFile list(QStringLiteral(HALVAR_SOURCE_DIR "/simulator/scenarios.qrc"));
    QVERIFY(list.open(QIODevice::ReadOnly));
    QVERIFY(list.readAll().contains(QStringLiteral("scenarios/%1.json").arg(name).toUtf8()));
}

void TstScenario::settingsAndSteps_areTaken()
{
    Scenario scenario;
    QString error;
    const QString path = write(R"({"description": "d", "seed": 4, "sample": {"concentration": 2},
        "steps": [{"at": 1.5, "command": "press"},
                  {"after": {"notice": "mspEvent"}, "count": 3, "command": "battery", "value": "missing"}]})");
    QVERIFY2(scenario.read(path, m_shipped, error), qPrintable(error));
    QCOMPARE(scenario.name, QStringLiteral("mine"));
    QCOMPARE(scenario.settings.size(), 2);
    QCOMPARE(scenario.settings.at(1).value(QLatin1String("command")).toString(), QStringLiteral("seed"));
    QCOMPARE(scenario.settings.at(1).value(QLatin1String("value")).toInt(), 4);
    QCOMPARE(scenario.steps.size(), 2);
    QCOMPARE(scenario.steps.at(0).at, 1.5);
    QVERIFY(scenario.steps.at(0).after.isEmpty());
    QCOMPARE(scenario.steps.at(1).count, 3);
    QCOMPARE(scenario.steps.at(1).command,
             QJsonObject({{QStringLiteral("command"), QStringLiteral("battery")},
                          {QStringLiteral("value"), QStringLiteral("missing")}}));
}

void TstScenario::mistake_namesFileKeyAndExpectation_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *content, const char *complaint) {
        QTest::newRow(content) << QByteArray(content) << QString::fromUtf8(complaint);
    };
    row("", "line 1: illegal value");
    row("{\n\"seed\": 1,\n}", "line 3: object is missing after a comma");
    row("[]", "expected a JSON object");
    row("{\"seed\": 1,\n\"sample\": {},\n\"sample\": {}}",
        "line 3: the key \"sample\" stands twice in its object");
    row("{\"two\\nlines\": 1, \"two\\nlines\": 1}",
        "line 1: the key \"two\\u000alines\" stands twice in its object");
    row(R"({"colour": 1})",
        "colour: unknown key; expected description, steps or a command that sets something");
    row(R"({"two\nlines": 1})",
        "two\\u000alines: unknown key; expected description, steps or a command that sets something");
    row(R"({"sample": {"\u001b[2J": 1}})",
        "sample.\\u001b[2J: unknown: expected one of concentration, substrate, distance");
    row(R"({"press": {}})",
        "press: unknown key; expected description, steps or a command that sets something");
    row(R"({"description": 1})", "description: expected a text, found 1");
    row(R"({"seed": -1})", "seed.value: expected an integer from 0 to 2147483647, found -1");
    row(R"({"seed": 1.5})", "seed.value: expected an integer from 0 to 2147483647, found 1.5");
    row(R"({"sample": 3})", "sample: expected an object, found 3");
    row(R"({"sample": {"concentration": "x"}})",
        "sample.concentration: expected a number from 0 to 100, found \"x\"");
    row(R"({"sample": {"weight": 1}})",
        "sample.weight: unknown: expected one of concentration, substrate, distance");
    row(R"({"today": "31-12-2026"})", "today.date: expected a date \"yyyy-MM-dd\", found \"31-12-2026\"");
    row(R"({"mspRefuse": ["RUN"]})",
        "mspRefuse.commands: expected \"all\" or a list of LIGHT_ON, LIGHT_OFF, RESET_SHOCK, RUN_HARD, "
        "RUN_SOFT, "
        "SHUT_OPEN, SHUT_CLOSE, ABORT, SET_DAC, ACK_ERROR, MEAS_DONE, found [\"RUN\"]");
    row(R"({"accuracy": {}})",
        "accuracy.outcome: missing: expected one of measured, ok, error, uncalibrated");
    row(R"({"steps": {}})", "steps: expected a list, found {}");
    row(R"({"steps": [1]})", "steps[0]: expected an object, found 1");
    row(R"({"steps": [{"at": -1, "command": "press"}]})",
        "steps[0].at: expected seconds from 0 to 86400, found -1");
    row(R"({"steps": [{"at": 1}]})", "steps[0].command: missing: expected a text");
    row(R"({"steps": [{"command": "press"}, {"command": "dance"}]})", "steps[1].command: no such command");
    row(R"({"steps": [{"command": "press", "hard": true}]})",
        "steps[0].hard: unknown: the command takes no members");
    row(R"({"steps": [{"command": "press", "after": "SHUT_OPENED"}]})",
        "steps[0].after: expected an object with \"notice\", found \"SHUT_OPENED\"");
    row(R"({"steps": [{"command": "press", "count": 0}]})",
        "steps[0].count: expected an integer from 1 to 1000000, found 0");
}

void TstScenario::mistake_namesFileKeyAndExpectation()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, complaint);
    const QString path = write(content);
    Scenario scenario;
    QString error;
    QVERIFY(!scenario.read(path, m_shipped, error));
    QCOMPARE(error, QStringLiteral("%1: %2").arg(path, complaint));
}

void TstScenario::unknownName_listsTheKnownOnes()
{
    Scenario scenario;
    QString error;
    QVERIFY(!scenario.read(QStringLiteral("storm"), m_shipped, error));
    QVERIFY2(error.startsWith(QLatin1String("no scenario \"storm\": expected one of accuracy-failing, ")),
             qPrintable(error));
    QVERIFY(!scenario.read(QStringLiteral("/nowhere/storm.json"), m_shipped, error));
    QCOMPARE(error, QStringLiteral("/nowhere/storm.json: cannot be read"));
    QVERIFY(!scenario.read(m_directory.path(), m_shipped, error));
    QCOMPARE(error, QStringLiteral("%1: cannot be read").arg(m_directory.path()));
}

void TstScenario::hugeFile_isRefused()
{
    const QString path = write("{\"description\": \"" + QByteArray(2 * 1024 * 1024, 'x') + "\"}");
    Scenario scenario;
    QString error;
    QVERIFY(!scenario.read(path, m_shipped, error));
    QCOMPARE(error, QStringLiteral("%1: longer than 1048576 bytes").arg(path));
}

void TstScenario::command_isJudged_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("member");
    const auto row = [](const char *command, const char *member) {
        QTest::newRow(command) << QByteArray(command) << QString::fromLatin1(member);
    };
    row(R"({"command": "press", "tag": [1]})", "sound");
    row(R"({"command": "battery", "value": "missing"})", "sound");
    row(R"({"command": "battery", "value": 3300000})", "sound");
    row(R"({"command": "battery", "value": 3300000.5})", "value");
    row(R"({"command": "battery"})", "value");
    row(R"({"command": "mspEvent", "event": 77, "code": -3})", "sound");
    row(R"({"command": "mspEvent", "event": "SYS_ERR", "code": 40000})", "code");
    row(R"({"command": "mspEvent", "event": "BANG"})", "event");
    row(R"({"command": "mspInfo", "DAC": 1})", "DAC");
    row(R"({"command": "mspRefuse", "commands": "all"})", "sound");
    row(R"({"command": "mspRefuse", "commands": "none"})", "commands");
    row(R"({"command": "calibration", "date": "never"})", "sound");
    row(R"({"command": "napStatus", "status": 3})", "sound");
    row(R"({"command": "napSilent", "on": 1})", "on");
    row(R"({"command": "speed", "value": 0})", "value");
    row(R"({"command": "dance"})", "");
}

void TstScenario::command_isJudged()
{
    QFETCH(QByteArray, command);
    QFETCH(QString, member);
    const QJsonObject object = QJsonDocument::fromJson(command).object();
    QVERIFY(!object.isEmpty());
    const auto complaint =
        simulator::commandtable::check(object.value(QLatin1String("command")).toString(), object);
    if (member == QLatin1String("sound")) {
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint.text));
    } else {
        QVERIFY(!complaint.isEmpty());
        QCOMPARE(complaint.member, member);
    }
}

QTEST_GUILESS_MAIN(TstScenario)
#include "tst_scenario.moc"
