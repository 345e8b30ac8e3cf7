// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTemporaryDir>
#include <QTest>

#include <failure.h>
#include <operator.h>
#include <scenario.h>

class TstDiagnosticScenario : public QObject
{
    Q_OBJECT
private slots:
    void steps_keepTheirOrderAndMembers();
    void speed_isOneUnlessGiven();
    void wrongScenarios_areRefusedWithTheirPlace_data();
    void wrongScenarios_areRefusedWithTheirPlace();
    void unknownName_listsTheNames();
    void missingFile_isToldClearly();
    void directory_isToldClearly();
    void everyScenarioThatComesAlong_isRight_data();
    void everyScenarioThatComesAlong_isRight();
    void documentation_showsARightScenario();
};

void TstDiagnosticScenario::steps_keepTheirOrderAndMembers()
{
    const Scenario scenario = Scenario::parse(R"({"title": "Été", "speed": 2.5, "steps": [
        {"do": "pin", "code": "01234", "accepted": false},
        {"do": "wait-for-go"},
        {"do": "measure", "sample": {"concentration": 1.5}, "count": 3}]})",
                                              QStringLiteral("test"));
    QCOMPARE(scenario.title, QStringLiteral("Été"));
    QCOMPARE(scenario.speed, 2.5);
    QCOMPARE(scenario.steps.size(), 3);
    QCOMPARE(scenario.steps.at(0).kind, QStringLiteral("pin"));
    QCOMPARE(scenario.steps.at(0).text("code"), QStringLiteral("01234"));
    QVERIFY(!scenario.steps.at(0).flag("accepted", true));
    QCOMPARE(scenario.steps.at(1).kind, QStringLiteral("wait-for-go"));
    QVERIFY(scenario.steps.at(1).flag("accepted", true));
    QCOMPARE(scenario.steps.at(2).number("count"), 3);
    QCOMPARE(scenario.steps.at(2).number("results", 6), 6);
    QVERIFY(!scenario.steps.at(2).has("results"));
    QCOMPARE(scenario.steps.at(2).object("sample").value(QLatin1String("concentration")).toDouble(), 1.5);
}

void TstDiagnosticScenario::speed_isOneUnlessGiven()
{
    QCOMPARE(Scenario::parse(R"({"title": "x", "steps": []})", QStringLiteral("test")).speed, 1.0);
}

void TstDiagnosticScenario::wrongScenarios_areRefusedWithTheirPlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    QTest::newRow("no bytes") << QByteArray() << QStringLiteral("test, line 1: illegal value");
    QTest::newRow("broken in its third line")
        << QByteArray("{\n\"title\": \"x\",\n\"steps\": [}]\n}")
        << QStringLiteral("test, line 3: object is missing after a comma");
    QTest::newRow("a list") << QByteArray("[]") << QStringLiteral("test: expected an object with \"steps\"");
    QTest::newRow("no title") << QByteArray(R"({"steps": []})")
                              << QStringLiteral("test: \"title\" is missing");
    QTest::newRow("steps are a text") << QByteArray(R"({"title": "x", "steps": "none"})")
                                      << QStringLiteral("test: \"steps\": expected a list, found \"none\"");
    QTest::newRow("unknown member") << QByteArray(R"({"title": "x", "steps": [], "step": []})")
                                    << QStringLiteral("test: unknown member \"step\"");
    QTest::newRow("speed 0") << QByteArray(R"({"title": "x", "steps": [], "speed": 0})")
                             << QStringLiteral(
                                    "test: \"speed\": expected a number from 0.01 to 500, found 0");
    QTest::newRow("speed is a text")
        << QByteArray(R"({"title": "x", "steps": [], "speed": "fast"})")
        << QStringLiteral("test: \"speed\": expected a number from 0.01 to 500, found \"fast\"");
    QTest::newRow("a step that is a number") << QByteArray(R"({"title": "x", "steps": [{"do": "shock"}, 3]})")
                                             << QStringLiteral("test, step 2: expected an object, found 3");
    QTest::newRow("a step that does nothing") << QByteArray(R"({"title": "x", "steps": [{"code": "1"}]})")
                                              << QStringLiteral("test, step 1: \"do\" is missing");
    QTest::newRow("unknown step") << QByteArray(R"({"title": "x", "steps": [{"do": "dance"}]})")
                                  << QStringLiteral("test, step 1: unknown step \"dance\"");
    QTest::newRow("required member missing") << QByteArray(R"({"title": "x", "steps": [{"do": "pin"}]})")
                                             << QStringLiteral("test, step 1 (pin): \"code\" is missing");
    QTest::newRow("unknown member of a step")
        << QByteArray(R"({"title": "x", "steps": [{"do": "shock", "hard": true}]})")
        << QStringLiteral("test, step 1 (shock): unknown member \"hard\"");
    QTest::newRow("a text instead of a number")
        << QByteArray(R"({"title": "x", "steps": [{"do": "select", "unit": "first"}]})")
        << QStringLiteral(
               "test, step 1 (select): \"unit\": expected a whole number from 0 up, found \"first\"");
    QTest::newRow("a fraction") << QByteArray(R"({"title": "x", "steps": [{"do": "select", "unit": 1.5}]})")
                                << QStringLiteral(
                                       "test, step 1 (select): \"unit\": expected a whole number from 0 "
                                       "up, found 1.5");
    QTest::newRow("a negative number")
        << QByteArray(R"({"title": "x", "steps": [{"do": "select", "unit": -1}]})")
        << QStringLiteral("test, step 1 (select): \"unit\": expected a whole number from 0 up, found -1");
    QTest::newRow("a number instead of a flag")
        << QByteArray(R"({"title": "x", "steps": [{"do": "light", "on": 1}]})")
        << QStringLiteral("test, step 1 (light): \"on\": expected true or false, found 1");
    QTest::newRow("a null") << QByteArray(R"({"title": "x", "steps": [{"do": "light", "on": null}]})")
                            << QStringLiteral(
                                   "test, step 1 (light): \"on\": expected true or false, found null");
}

void TstDiagnosticScenario::wrongScenarios_areRefusedWithTheirPlace()
{
    QFETCH(const QByteArray, json);
    QFETCH(const QString, text);
    try {
        Scenario::parse(json, QStringLiteral("test"));
        QFAIL("It was accepted.");
    } catch (const Failure &failure) {
        QCOMPARE(failure.text, text);
        QCOMPARE(failure.status, 2);
    }
}

void TstDiagnosticScenario::unknownName_listsTheNames()
{
    try {
        Scenario::load(QStringLiteral("none"));
        QFAIL("It was found.");
    } catch (const Failure &failure) {
        QCOMPARE(failure.text,
                 QStringLiteral("there is no scenario \"none\"; there are: %1")
                     .arg(Scenario::names().join(QStringLiteral(", "))));
        QCOMPARE(failure.status, 2);
    }
    QVERIFY(Scenario::names().contains(QStringLiteral("complete")));
}

void TstDiagnosticScenario::missingFile_isToldClearly()
{
    try {
        Scenario::load(QStringLiteral("/nowhere/x.json"));
        QFAIL("It was found.");
    } catch (const Failure &failure) {
        QCOMPARE(failure.text, QStringLiteral("/nowhere/x.json: No such file or directory"));
        QCOMPARE(failure.status, 2);
    }
}

void TstDiagnosticScenario::directory_isToldClearly()
{
    const QTemporaryDir directory;
    QVERIFY_EXCEPTION_THROWN(Scenario::load(directory.path()), Failure);
}

void TstDiagnosticScenario::everyScenarioThatComesAlong_isRight_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = Scenario::names();
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void TstDiagnosticScenario::everyScenarioThatComesAlong_isRight()
{
    QFETCH(const QString, name);
    try {
        const Scenario scenario = Scenario::load(name);
        QVERIFY(!scenario.title.isEmpty());
        QVERIFY(!scenario.steps.isEmpty());
        for (const Step &step : scenario.steps)
            QVERIFY(!Operator::describe(step).isEmpty());
    } catch (const Failure &failure) {
        QFAIL(qPrintable(failure.text));
    }
}

void TstDiagnosticScenario::documentation_showsARightScenario()
{
    QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/docs/diagnostic-scenarios.md"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QByteArray page = file.readAll();
    const QByteArray fence("```json\n");
    const int start = int(page.indexOf(fence)) + int(fence.size());
    QVERIFY(start > fence.size());
    try {
        const Scenario scenario =
            Scenario::parse(page.mid(start, page.indexOf("```", start) - start), QStringLiteral("the page"));
        QCOMPARE(scenario.steps.size(), 6);
        // Every step of the complete scenario has its line in the page's table.
        const Scenario complete = Scenario::load(QStringLiteral("complete"));
        for (const Step &step : complete.steps)
            QVERIFY2(page.contains('`' + step.kind.toUtf8() + '`'), qPrintable(step.kind));
    } catch (const Failure &failure) {
        QFAIL(qPrintable(failure.text));
    }
}

QTEST_GUILESS_MAIN(TstDiagnosticScenario)
#include "tst_diagnostic_scenario.moc"
