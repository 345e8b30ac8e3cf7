// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QQmlEngine>
#include <QTest>

#include <memory>

#include "configfile.h"
#include "logrecorder.h"

class TstConfig : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ConfigHome> m_home;

    QString home() const { return m_home->path(); }
    void write(const QByteArray &content) const { QVERIFY(m_home->write(content)); }

private slots:
    void init()
    {
        m_home = std::make_unique<ConfigHome>();
        QVERIFY(m_home->isReady());
    }

    void interface_isTheGettersAsSlotsInOrder()
    {
        const QStringList expected{
            QStringLiteral("slot QString VersionXMLFile()"),
            QStringLiteral("slot QString VersionLambrik()"),
            QStringLiteral("slot QString VersionAppSAV()"),
            QStringLiteral("slot QString VersionMarten()"),
            QStringLiteral("slot QString getSN_Analyzer()"),
            QStringLiteral("slot QString getWifiPassword()"),
            QStringLiteral("slot int Nbr_Energy_Adj_Test()"),
            QStringLiteral("slot QDate DateEndSource()"),
            QStringLiteral("slot int Password()"),
            QStringLiteral("slot QString getN_ASN()"),
            QStringLiteral("slot QString getN_VISA()"),
            QStringLiteral("slot int Beep_Time()"),
            QStringLiteral("slot int Led_Light_Off()"),
            QStringLiteral("slot QString Type_End_Measure()"),
            QStringLiteral("slot int Time_Before_Open_Shutter()"),
            QStringLiteral("slot int Time_Measure()"),
            QStringLiteral("slot int Nbr_Measure()"),
            QStringLiteral("slot int getWaiting_For_Go()"),
            QStringLiteral("slot float Nist_InformationValue()"),
            QStringLiteral("slot float Nist_InformationPrecision()"),
            QStringLiteral("slot int Maxtime_Error_Status()"),
            QStringLiteral("slot int Remaining_Time_Before_EndSource()"),
        };
        QCOMPARE(metaText(Config::staticMetaObject), expected);
    }

    void unread_isEmpty()
    {
        QObject parent;
        const auto *config = new Config(&parent);
        QCOMPARE(config->parent(), &parent);
        for (const QString &value : values(*config))
            QVERIFY2(value.isEmpty() || value == QLatin1String("0"), qPrintable(value));
        QVERIFY(config->DateEndSource().isNull());
    }

    void read_fillsEveryValue()
    {
        write(fullFile);
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(values(config), fullValues());
    }

    void read_tracesEveryValueWithItsKey()
    {
        write(fullFile);
        const LogRecorder log;
        Config config;
        QVERIFY(config.read(home()));
        const QStringList expected{
            QStringLiteral("TRACE \"VersionXMLFile\" :  \"1.2\""),
            QStringLiteral("TRACE \"VersionLambrik\" :  \"2.3.4\""),
            QStringLiteral("TRACE \"VersionAppSAV\" :  \"0.9\""),
            QStringLiteral("TRACE \"VersionMarten\" :  \"1.4.0\""),
            QStringLiteral("TRACE \"SN_Analyzer\" :  \"HA-0042\""),
            QString::fromUtf8("TRACE \"Wifi_Password\" :  \"été & hiver\""),
            QStringLiteral("TRACE \"Nbr_Energy_Adj_Test\" :  3"),
            QStringLiteral("TRACE \"DateEndSource\" :  QDate(\"2031-12-31\")"),
            QStringLiteral("TRACE \"Password\" :  12345"),
            QStringLiteral("TRACE \"N_ASN\" :  \"T750001\""),
            QStringLiteral("TRACE \"N_VISA\" :  \"V-7\""),
            QStringLiteral("TRACE \"Beep_Time\" :  1"),
            QStringLiteral("TRACE \"Led_Light_Off\" :  30"),
            QStringLiteral("TRACE \"Type_End_Measure\" :  \"defini\""),
            QStringLiteral("TRACE \"Time_Before_Open_Shutter\" :  500"),
            QStringLiteral("TRACE \"Time_Measure\" :  8"),
            QStringLiteral("TRACE \"Nbr_Measure\" :  4"),
            QStringLiteral("TRACE \"Waiting_For_Go\" :  10"),
            QStringLiteral("TRACE \"Nist_InformationValue\" :  1.04"),
            QStringLiteral("TRACE \"Nist_InformationPrecision\" :  0.06"),
            QStringLiteral("TRACE \"Maxtime_Error_Status\" :  15"),
            QStringLiteral("TRACE \"Remaining_Time_Before_EndSource\" :  6"),
        };
        QCOMPARE(log.lines(), expected);
    }

    void homeIsFollowedDirectlyByThePath()
    {
        write(fullFile);
        QVERIFY(QDir(m_home->directory()).rename(QStringLiteral("config"), QStringLiteral("unit-config")));
        Config config;
        QVERIFY(config.read(home() + QStringLiteral("unit-")));
        QCOMPARE(values(config), fullValues());
    }

    void otherRoot_readsNothingAndSucceeds_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("other name") << QByteArray(fullFile).replace("Data>", "Config>");
        QTest::newRow("names are case-sensitive") << QByteArray(fullFile).replace("Data>", "data>");
        QTest::newRow("what follows the root's start is not even looked at") << QByteArray("<Other><broken");
    }

    void otherRoot_readsNothingAndSucceeds()
    {
        QFETCH(QByteArray, content);
        write(content);
        const LogRecorder log;
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(values(config), values(Config()));
        QCOMPARE(log.lines(), QStringList());
    }

    void integer_isReadInBase10_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("letters") << QByteArray("abc") << 0;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("hexadecimal") << QByteArray("0x10") << 0;
        QTest::newRow("leading zeros are not octal") << QByteArray("010") << 10;
        QTest::newRow("decimal point") << QByteArray("1.5") << 0;
        QTest::newRow("unit behind it") << QByteArray("5 s") << 0;
        QTest::newRow("negative") << QByteArray("-5") << -5;
        QTest::newRow("blanks around it") << QByteArray(" \n 7 \n") << 7;
        QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
        QTest::newRow("too large") << QByteArray("2147483648") << 0;
        QTest::newRow("CDATA") << QByteArray("<![CDATA[12]]>") << 12;
        QTest::newRow("a comment within") << QByteArray("1<!-- one -->2") << 12;
    }

    void integer_isReadInBase10()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, value);
        write(fileWith("<Beep_Time>" + text + "</Beep_Time>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.Beep_Time(), value);
    }

    void decimal_isReadWithAPoint_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<float>("value");
        QTest::newRow("point") << QByteArray("1.25") << 1.25F;
        QTest::newRow("comma") << QByteArray("1,25") << 0.0F;
        QTest::newRow("letters") << QByteArray("abc") << 0.0F;
        QTest::newRow("empty") << QByteArray() << 0.0F;
        QTest::newRow("exponent") << QByteArray("1e-2") << 0.01F;
        QTest::newRow("more than a float holds") << QByteArray("1e99") << 0.0F;
        QTest::newRow("integer") << QByteArray("-3") << -3.0F;
    }

    void decimal_isReadWithAPoint()
    {
        QFETCH(QByteArray, text);
        QFETCH(float, value);
        write(fileWith("<Nist_InformationValue>" + text + "</Nist_InformationValue>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.Nist_InformationValue(), value);
    }

    void date_isDayMonthAndFourDigitYear_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QDate>("date");
        QTest::newRow("as the factory writes it") << QByteArray("31/12/2031") << QDate(2031, 12, 31);
        QTest::newRow("year first") << QByteArray("2031/12/31") << QDate();
        QTest::newRow("ISO") << QByteArray("2031-12-31") << QDate();
        QTest::newRow("one-digit day") << QByteArray("1/12/2031") << QDate();
        QTest::newRow("one-digit month") << QByteArray("01/2/2031") << QDate();
        QTest::newRow("two-digit year") << QByteArray("31/12/31") << QDate();
        QTest::newRow("five-digit year") << QByteArray("31/12/20310") << QDate();
        QTest::newRow("no such day") << QByteArray("30/02/2031") << QDate();
        QTest::newRow("leap day") << QByteArray("29/02/2028") << QDate(2028, 2, 29);
        QTest::newRow("month first") << QByteArray("12/31/2031") << QDate();
        QTest::newRow("dashes") << QByteArray("31-12-2031") << QDate();
        QTest::newRow("blanks around it") << QByteArray(" 31/12/2031 ") << QDate();
        QTest::newRow("a sign among the digits") << QByteArray("31/12/+031") << QDate();
        QTest::newRow("line end behind it") << QByteArray("31/12/2031\n") << QDate();
        QTest::newRow("empty") << QByteArray() << QDate();
        QTest::newRow("digits of another script") << QByteArray("٣١/١٢/٢٠٣١") << QDate();
    }

    void date_isDayMonthAndFourDigitYear()
    {
        QFETCH(QByteArray, text);
        QFETCH(QDate, date);
        write(
            fileWith("<DateEndSource>01/01/2030</DateEndSource><DateEndSource>" + text + "</DateEndSource>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.DateEndSource(), date);
        QCOMPARE(config.DateEndSource().isNull(), date.isNull());
    }

    void repeatedKey_theLastWins()
    {
        write(
            fileWith("<Time_Measure>3</Time_Measure><N_ASN>a</N_ASN><Time_Measure>5</Time_Measure><N_ASN/>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.Time_Measure(), 5);
        QVERIFY(config.getN_ASN().isEmpty());
    }

    void elementInsideAValue_isSkippedAndLosesNothing()
    {
        write(fileWith("<SN_Analyzer>HV<b>x</b>42</SN_Analyzer><Password>12345</Password>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.getSN_Analyzer(), QStringLiteral("HV42"));
        QCOMPARE(config.Password(), 12345);
    }

    void utf16_isReadWhateverItsBytes()
    {
        // U+0D0A holds the bytes of a line end.
        const QString text =
            QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<Data><V/><U><SN_Analyzer>")
            + QChar(0x0d0a) + QStringLiteral("</SN_Analyzer><Time_Measure>4</Time_Measure></U></Data>");
        QByteArray bytes("\xff\xfe");
        for (const QChar c : text)
            bytes.append(char(c.cell())).append(char(c.row()));
        write(bytes);
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.getSN_Analyzer(), QString(QChar(0x0d0a)));
        QCOMPARE(config.Time_Measure(), 4);
    }

    void unknownElements_areTracedAndSkippedWhole()
    {
        write("<Data><V><Password>1</Password><VersionMarten>m</VersionMarten></V>"
              "<U><Box><Nbr_Measure>9</Nbr_Measure></Box><VersionAppSAV>x</VersionAppSAV>"
              "<nbr_measure>8</nbr_measure><Nbr_Measure>2</Nbr_Measure></U>"
              "<T><Nbr_Measure>7</Nbr_Measure></T></Data>");
        const LogRecorder log;
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.Nbr_Measure(), 2);
        QCOMPARE(config.Password(), 0);
        QVERIFY(config.VersionAppSAV().isEmpty());
        const QStringList expected{
            QStringLiteral("TRACE \"Password\"  not taken into account."),
            QStringLiteral("TRACE \"VersionMarten\" :  \"m\""),
            QStringLiteral("TRACE \"Box\"  not taken into account."),
            QStringLiteral("TRACE \"VersionAppSAV\"  not taken into account."),
            QStringLiteral("TRACE \"nbr_measure\"  not taken into account."),
            QStringLiteral("TRACE \"Nbr_Measure\" :  2"),
        };
        QCOMPARE(log.lines(), expected);
    }

    void groups_areKnownByTheirPlaceNotTheirName()
    {
        write("<Data><b><VersionLambrik>l</VersionLambrik></b><a><Password>7</Password></a></Data>");
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.VersionLambrik(), QStringLiteral("l"));
        QCOMPARE(config.Password(), 7);
    }

    void missingGroups_areReadAsFarAsTheyAreThere_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isConfiguration");
        QTest::newRow("none") << QByteArray("<Data/>") << false;
        QTest::newRow("only text") << QByteArray("<Data>text</Data>") << false;
        QTest::newRow("only the first") << QByteArray("<Data><Versions/></Data>") << true;
        QTest::newRow("both empty") << QByteArray("<Data><Versions/><Unit/></Data>") << true;
    }

    void missingGroups_areReadAsFarAsTheyAreThere()
    {
        QFETCH(QByteArray, content);
        write(content);
        Config config;
        QTEST(config.read(home()), "isConfiguration");
        QCOMPARE(values(config), values(Config()));
    }

    void readAgain_replacesWhatTheFileHolds()
    {
        write(fullFile);
        Config config;
        QVERIFY(config.read(home()));
        write(fileWith("<Password>54321</Password>"));
        QVERIFY(config.read(home()));
        QCOMPARE(config.Password(), 54321);
        QCOMPARE(config.getN_VISA(), QStringLiteral("V-7"));
        write("<Data><broken");
        QVERIFY(!config.read(home()));
        write(fullFile);
        QVERIFY(config.read(home()));
        QCOMPARE(values(config), fullValues());
    }

    void getters_canBeCalledFromJavaScript()
    {
        write(fullFile);
        Config config;
        QVERIFY(config.read(home()));
        QJSEngine engine;
        QQmlEngine::setObjectOwnership(&config, QQmlEngine::CppOwnership);
        engine.globalObject().setProperty(QStringLiteral("config"), engine.newQObject(&config));
        QCOMPARE(
            engine.evaluate(QStringLiteral("config.getSN_Analyzer() + config.Time_Measure()")).toString(),
            QStringLiteral("HA-00428"));
        QVERIFY(engine.evaluate(QStringLiteral("config.read")).isUndefined());
    }
};

QTEST_GUILESS_MAIN(TstConfig)
#include "tst_config.moc"
