// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <measure.h>
#include <pin.h>
#include <ud.h>

#include <failure.h>
#include <qmlaccess.h>

class TstDiagnosticQmlAccess : public QObject
{
    Q_OBJECT
private slots:
    void enumeration_isReadAndWrittenByItsKey();
    void texts_numbersAndObjects_areRead();
    void operations_areCalledWithConvertedArguments();
    void whatQmlCannotSee_isRefused_data();
    void whatQmlCannotSee_isRefused();
    void items_areThoseOfTheList();
};

void TstDiagnosticQmlAccess::enumeration_isReadAndWrittenByItsKey()
{
    Measure measure(nullptr);
    QCOMPARE(qml::readKey(&measure, "localisation"), QStringLiteral("NOT_DETERMINED"));
    qml::write(&measure, "localisation", QStringLiteral("CENTER"));
    QCOMPARE(qml::readKey(&measure, "localisation"), QStringLiteral("CENTER"));
    QCOMPARE(qml::readInt(&measure, "localisation"), int(LocalisationEnumClass::CENTER));
}

void TstDiagnosticQmlAccess::texts_numbersAndObjects_areRead()
{
    UD unit(nullptr);
    qml::write(&unit, "local", QStringLiteral("Entrée"));
    QCOMPARE(qml::readText(&unit, "local"), QStringLiteral("Entrée"));
    QCOMPARE(qml::readInt(&unit, "identifier"), 0);
    QVERIFY(qml::readObject(&unit, "measures"));
    PIN pin(nullptr);
    QCOMPARE(qml::readBool(&pin, "disabled"), false);
}

void TstDiagnosticQmlAccess::operations_areCalledWithConvertedArguments()
{
    PIN pin(nullptr);
    qml::call(&pin, "enterDigit", {QStringLiteral("7")});
    qml::call(&pin, "enterDigit", {8}); // a number converts to the text that the operation takes
    QCOMPARE(qml::readInt(&pin, "nbDigits"), 2);
    QCOMPARE(qml::call(&pin, "checkDigit", {1}).toBool(), true);
    QCOMPARE(qml::call(&pin, "checkDigit", {2}).toBool(), false);
    qml::call(&pin, "clearDigits");
    QCOMPARE(qml::readInt(&pin, "nbDigits"), 0);
}

void TstDiagnosticQmlAccess::whatQmlCannotSee_isRefused_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("text");
    QTest::newRow("unknown property")
        << QStringLiteral("read") << QStringLiteral("PIN.secret is no property of the library");
    QTest::newRow("read-only property")
        << QStringLiteral("write") << QStringLiteral("PIN.accepted does not take \"true\"");
    QTest::newRow("unknown key") << QStringLiteral("key")
                                 << QStringLiteral("Measure.localisation does not take \"MIDDLE\"");
    QTest::newRow("C++ only operation")
        << QStringLiteral("call")
        << QStringLiteral("PIN.setSecret with 1 arguments is no operation of the library");
    QTest::newRow("signal") << QStringLiteral(
        "signal") << QStringLiteral("PIN.nbDigitsChanged with 1 arguments is no operation of the library");
    QTest::newRow("too few arguments")
        << QStringLiteral("few")
        << QStringLiteral("PIN.enterDigit with 0 arguments is no operation of the library");
}

void TstDiagnosticQmlAccess::whatQmlCannotSee_isRefused()
{
    QFETCH(const QString, what);
    QFETCH(const QString, text);
    PIN pin(nullptr);
    Measure measure(nullptr);
    try {
        if (what == QLatin1String("read"))
            qml::read(&pin, "secret");
        else if (what == QLatin1String("write"))
            qml::write(&pin, "accepted", true);
        else if (what == QLatin1String("key"))
            qml::write(&measure, "localisation", QStringLiteral("MIDDLE"));
        else if (what == QLatin1String("call"))
            qml::call(&pin, "setSecret", {12345});
        else if (what == QLatin1String("signal"))
            qml::call(&pin, "nbDigitsChanged", {1});
        else
            qml::call(&pin, "enterDigit");
        QFAIL("It was accepted.");
    } catch (const Failure &failure) {
        QCOMPARE(failure.text, text);
        QCOMPARE(failure.status, 1);
    }
}

void TstDiagnosticQmlAccess::items_areThoseOfTheList()
{
    UD unit(nullptr);
    QObject *measures = qml::readObject(&unit, "measures");
    QCOMPARE(qml::count(measures), 0);
    QVERIFY(!qml::item(measures, 0));
    auto *measure = new Measure(nullptr);
    unit.measures()->append(measure);
    QCOMPARE(qml::count(measures), 1);
    QCOMPARE(qml::item(measures, 0), measure);
    QVERIFY(!qml::item(measures, -1));
}

QTEST_GUILESS_MAIN(TstDiagnosticQmlAccess)
#include "tst_diagnostic_qmlaccess.moc"
