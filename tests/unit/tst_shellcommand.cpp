// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QProcess>
#include <QTest>

#include "shellcommand.h"

class TstShellCommand : public QObject
{
    Q_OBJECT

private slots:
    void plainArgument_standsAsItIs_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::newRow("serial number") << QStringLiteral("HV-0042");
        QTest::newRow("every kind of plain character") << QStringLiteral("azAZ09_@%+=:,./-");
    }
    void plainArgument_standsAsItIs()
    {
        QFETCH(QString, argument);
        QCOMPARE(halvar::shellWord(argument), argument);
    }

    void otherArgument_isQuoted()
    {
        QCOMPARE(halvar::shellWord(QString()), QStringLiteral("''"));
        QCOMPARE(halvar::shellWord(QStringLiteral("a b")), QStringLiteral("'a b'"));
        QCOMPARE(halvar::shellWord(QStringLiteral("a'b")), QStringLiteral("'a'\\''b'"));
        QCOMPARE(halvar::shellWord(QStringLiteral("é")), QStringLiteral("'é'"));
        QCOMPARE(halvar::shellWord(QStringLiteral("plain\n")), QStringLiteral("'plain\n'"));
    }

    void everyArgument_arrivesAsOneWordAndIsNotObeyed_data()
    {
        QTest::addColumn<QString>("argument");
        const char *const texts[] = {"plain",
                                     "two words",
                                     "; echo obeyed",
                                     "$(echo obeyed)",
                                     "`echo obeyed`",
                                     "a'b'c",
                                     "'",
                                     "\"",
                                     "\\",
                                     "\\'",
                                     "*",
                                     "~",
                                     "$HOME",
                                     "a\nb",
                                     "# comment",
                                     "&& false",
                                     "-n",
                                     "mot de passe été",
                                     "empty"};
        for (const char *text : texts)
            QTest::newRow(text) << QString::fromUtf8(text);
        QTest::newRow("nothing") << QString();
    }
    void everyArgument_arrivesAsOneWordAndIsNotObeyed()
    {
        QFETCH(QString, argument);
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
                    {QStringLiteral("-c"), QLatin1String("printf '[%s]' ") + halvar::shellWord(argument)});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()),
                 QLatin1Char('[') + argument + QLatin1Char(']'));
    }

    void zeroByte_isDropped()
    {
        QCOMPARE(halvar::shellWord(QString(QChar(0)) + QLatin1Char('x')), QStringLiteral("'x'"));
    }
};

QTEST_GUILESS_MAIN(TstShellCommand)
#include "tst_shellcommand.moc"
