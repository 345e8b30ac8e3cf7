// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QTest>
#include <QTextCodec>

#include <memory>
#include <sys/resource.h>

#include "configfile.h"
#include "logrecorder.h"

class TstConfigDamage : public QObject
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

    void missingFile_isWarnedOfAndLeavesEverythingUnset_data()
    {
        QTest::addColumn<QString>("home");
        QTest::newRow("no such home") << QStringLiteral("/no/such/home/");
        QTest::newRow("home without its separator") << QStringLiteral("HOME");
        QTest::newRow("empty home") << QString();
    }

    void missingFile_isWarnedOfAndLeavesEverythingUnset()
    {
        QFETCH(QString, home);
        home.replace(QLatin1String("HOME"), m_home->directory());
        write(fullFile);
        const LogRecorder log;
        Config config;
        QVERIFY(!config.read(home));
        QCOMPARE(log.lines(),
                 QStringList(QStringLiteral("WARN [Halvar Controller]: Une erreur s'est produite lors de "
                                            "l'ouverture du fichier!")));
        QCOMPARE(values(config), values(Config()));
    }

    void directoryInPlaceOfTheFile_cannotBeOpened()
    {
        QVERIFY(QDir(home()).mkdir(QStringLiteral("config/config_unit")));
        const LogRecorder log(QsLogging::InfoLevel);
        Config config;
        QVERIFY(!config.read(home()));
        QCOMPARE(log.lines().size(), 1);
    }

    void malformed_failsAndKeepsWhatWasReadBefore_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("serialNumber");
        QTest::newRow("empty file") << QByteArray() << QString();
        QTest::newRow("no XML") << QByteArray("SN_Analyzer=1\n") << QString();
        QTest::newRow("wrong end tag")
            << QByteArray("<Data><V/><U><SN_Analyzer>1</SN_Analyzer><Password>2</N_ASN></U></Data>")
            << QStringLiteral("1");
        QTest::newRow("unknown entity")
            << QByteArray("<Data><V/><U><SN_Analyzer>1</SN_Analyzer><Password>&what;</Password></U></Data>")
            << QStringLiteral("1");
        QTest::newRow("bytes that are no UTF-8")
            << QByteArray("<Data><V/><U><SN_Analyzer>1</SN_Analyzer><N_ASN>\xff\xfe\x80</N_ASN></U></Data>")
            << QString(); // told before anything of it is read
    }

    void malformed_failsAndKeepsWhatWasReadBefore()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, serialNumber);
        write(content);
        Config config;
        QVERIFY(!config.read(home()));
        QCOMPARE(config.getSN_Analyzer(), serialNumber);
        QCOMPARE(config.Password(), 0);
        QVERIFY(config.getN_ASN().isEmpty());
    }

    void cutAnywhere_givesWholeValuesOnly()
    {
        const QStringList whole = fullValues();
        const QStringList unset = values(Config());
        const int end = fullFile.indexOf("</Unit>") + int(qstrlen("</Unit>")); // nothing is read behind it
        for (int size = 0; size < end; ++size) {
            write(fullFile.left(size));
            Config config;
            QVERIFY2(!config.read(home()), qPrintable(QString::number(size)));
            const QStringList found = values(config);
            for (int i = 0; i < whole.size(); ++i)
                QVERIFY2(found.at(i) == whole.at(i) || found.at(i) == unset.at(i),
                         qPrintable(QStringLiteral("cut at %1: %2").arg(size).arg(found.at(i))));
        }
        write(fullFile.left(end));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(values(config), whole);
    }

    void spoiltBytes_areSurvived()
    {
        quint32 state = 20260101;
        const auto random = [&state](int below) {
            state = state * 1664525U + 1013904223U;
            return int((state >> 8) % quint32(below));
        };
        int wellFormed = 0;
        for (int round = 0; round < 2000; ++round) {
            QByteArray content = fullFile;
            for (int spoilt = 1 + random(8); spoilt > 0; --spoilt)
                content[random(content.size())] = char(random(256));
            write(content);
            Config config;
            wellFormed += config.read(home()) ? 1 : 0;
        }
        QVERIFY(wellFormed > 0); // a digit for a digit harms nobody,
        QVERIFY(wellFormed < 2000); // and a bracket does
    }

    void otherEncodings_areRead_data()
    {
        QTest::addColumn<QByteArray>("content");
        QString text = QString::fromUtf8(fullFile);
        QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf" + fullFile);
        QTest::newRow("CRLF") << QByteArray(fullFile).replace("\n", "\r\n");
        QTest::newRow("no declaration") << fullFile.mid(fullFile.indexOf('\n') + 1);
        text.replace(QLatin1String("UTF-8"), QLatin1String("UTF-16"));
        QTest::newRow("UTF-16") << QTextCodec::codecForName("UTF-16")->fromUnicode(text);
        text.replace(QLatin1String("UTF-16"), QLatin1String("ISO-8859-1"));
        QTest::newRow("Latin 1") << text.toLatin1();
    }

    void otherEncodings_areRead()
    {
        QFETCH(QByteArray, content);
        write(content);
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(values(config), fullValues());
    }

    void tenMegabytesInOneElement_areReadInBoundedMemory()
    {
        const QByteArray text(10 * 1024 * 1024, 'x');
        write(fileWith("<N_ASN>" + text + "</N_ASN><Password>" + text
                       + "</Password><Nbr_Measure>3</Nbr_Measure>"));
        rusage before{};
        getrusage(RUSAGE_SELF, &before);
        {
            Config config;
            QVERIFY(config.read(home()));
            QCOMPARE(config.getN_ASN().size(), text.size());
            QCOMPARE(config.Password(), 0);
            QCOMPARE(config.Nbr_Measure(), 3);
        }
        rusage after{};
        getrusage(RUSAGE_SELF, &after);
        QVERIFY2(after.ru_maxrss - before.ru_maxrss < 300 * 1024, // KiB
                 qPrintable(QStringLiteral("%1 KiB").arg(after.ru_maxrss - before.ru_maxrss)));
    }

    void entityBomb_isRefused()
    {
        QByteArray content = "<!DOCTYPE Data [<!ENTITY a0 \"0123456789\">";
        for (int i = 1; i < 12; ++i) {
            const QByteArray inner = "&a" + QByteArray::number(i - 1) + ';';
            content += "<!ENTITY a" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
        }
        content += "]>" + fileWith("<SN_Analyzer>1</SN_Analyzer><N_ASN>&a11;</N_ASN>");
        write(content);
        QElapsedTimer timer;
        timer.start();
        Config config;
        QVERIFY(!config.read(home()));
        QCOMPARE(config.getSN_Analyzer(), QStringLiteral("1"));
        QVERIFY(config.getN_ASN().isEmpty());
        QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    }

    void deepNesting_isSkipped()
    {
        const int depth = 100000;
        write(fileWith(QByteArray("<x>").repeated(depth) + QByteArray("</x>").repeated(depth)
                       + "<Password>4</Password>"));
        Config config;
        QVERIFY(config.read(home()));
        QCOMPARE(config.Password(), 4);
    }
};

QTEST_GUILESS_MAIN(TstConfigDamage)
#include "tst_config_damage.moc"
