// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the configuration can do to the instrument's shell, and what of its secrets reaches the log.
#include <QFile>
#include <QProcess>
#include <QTest>

#include "controllerfixture.h"
#include "logrecorder.h"
#include "pin.h"

namespace {

/// The words of a line of the record of commands, as a shell takes them.
QStringList wordsOf(const QString &line)
{
    QProcess shell;
    shell.start(QStringLiteral("bash"),
                {QStringLiteral("-c"), QStringLiteral("eval \"w=($1)\"; printf '%s\\0' \"${w[@]}\""),
                 QStringLiteral("words"), line});
    shell.waitForFinished();
    QStringList words;
    for (const QByteArray &word : shell.readAllStandardOutput().split('\0'))
        words.append(QString::fromUtf8(word));
    words.removeLast(); // behind the last zero byte
    return words;
}

QStringList recordedCommands()
{
    QFile record(qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS"));
    if (!record.open(QIODevice::ReadOnly))
        return {QStringLiteral("cannot be read")};
    QStringList lines = QString::fromUtf8(record.readAll()).split(QLatin1Char('\n'));
    lines.removeLast();
    return lines;
}

} // namespace

class TstSecrets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 "Run through simulator/instrument: this test runs shell commands.");
    }

    void hostileConfiguration_arrivesAsTwoWords_data()
    {
        QTest::addColumn<QString>("serialNumber");
        QTest::addColumn<QString>("password");
        QTest::newRow("commands") << QStringLiteral("HV; halt; napwifi stop")
                                  << QStringLiteral("x && halt || halt & halt");
        QTest::newRow("substitutions")
            << QStringLiteral("$(halt)${HOME}$((1+1))") << QStringLiteral("`halt`<(halt)");
        QTest::newRow("quotes") << QStringLiteral("'; halt; '") << QStringLiteral("\"; halt; \"'\"'\"");
        QTest::newRow("backslashes") << QStringLiteral("\\'; halt #\\") << QStringLiteral("\\\\$(halt)\\");
        QTest::newRow("lines") << QStringLiteral("HV\nhalt\n") << QStringLiteral("a\n\nhalt");
        QTest::newRow("files") << QStringLiteral("> /data/obeyed") << QStringLiteral("| tee /data/obeyed");
        QTest::newRow("patterns") << QStringLiteral("/data/*") << QStringLiteral("~ {a,b} [a-z]? !!");
        QTest::newRow("blanks") << QStringLiteral("  HV  42\t") << QStringLiteral(" ");
        QTest::newRow("variables") << QStringLiteral("PATH=/data") << QStringLiteral("$PATH $1 $@ $?");
        QTest::newRow("accents") << QStringLiteral("été \u2028 \u00a0") << QStringLiteral("“halt” ‘halt’");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("long") << QString(20000, QLatin1Char('\'')) << QString(1000, QLatin1Char('$'));
    }
    void hostileConfiguration_arrivesAsTwoWords()
    {
        QFETCH(QString, serialNumber);
        QFETCH(QString, password);
        TestHome home;
        home.setConfig(QStringLiteral("SN_Analyzer"), serialNumber);
        home.setConfig(QStringLiteral("Wifi_Password"), password);
        const int before = recordedCommands().size();
        {
            ControllerFixture controller(home);
            QCOMPARE(controller.config.getSN_Analyzer(), serialNumber);
            QCOMPARE(controller.config.getWifiPassword(), password);
        }
        const QStringList commands = recordedCommands().mid(before);
        QCOMPARE(commands.size(), 1);
        QCOMPARE(wordsOf(commands.first()), (QStringList{QStringLiteral("napssid"), serialNumber, password}));
        QVERIFY(!QFile::exists(QStringLiteral("/data/obeyed")));
    }

    void secrets_areInTheLinesThatShowTheConfiguration_only()
    {
        const QString password = QStringLiteral("Tr3s-secret");
        const QString code = QStringLiteral("80917");
        TestHome home;
        home.setConfig(QStringLiteral("Wifi_Password"), password);
        home.setConfig(QStringLiteral("Password"), code);
        LogRecorder log(QsLogging::TraceLevel);
        {
            ControllerFixture controller(home);
            for (const QString &entry :
                 {QStringLiteral("80916"), QStringLiteral("80917"), QStringLiteral("11111")}) {
                for (const QChar digit : entry)
                    controller->pin->enterDigit(QString(digit));
                QCOMPARE(controller->pin->checkSecret(), entry == code);
                controller->pin->clearDigits();
            }
            controller->switchWifi(true);
            controller->msp_info_reply(MSPInfo());
            controller->setFileName(QStringLiteral("Maison"));
            controller->saveFile();
        }
        QStringList telling;
        const QStringList lines = log.lines();
        for (const QString &line : lines) {
            if (line.contains(password) || line.contains(code) || line.contains(QStringLiteral("80916")))
                telling.append(line);
        }
        QCOMPARE(telling,
                 (QStringList{
                     QStringLiteral("TRACE \"Password\" :  80917"),
                     QStringLiteral("TRACE \"Wifi_Password\" :  \"Tr3s-secret\""),
                     QStringLiteral("INFO [Halvar Controller]: Launching  napssid HV-0042 Tr3s-secret")}));
    }
};

QTEST_GUILESS_MAIN(TstSecrets)
#include "tst_secrets.moc"
