// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What benchmarks/budget says of counts that somebody else has planted.
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TstBudget : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(m_home->isValid());
        QVERIFY(QDir(m_home->path()).mkpath(QStringLiteral("counts")));
        plantPlatform("qt 5.15.8\ncompiler 12.2.0\n");
        plantBudget(R"("list-read": 1000, "wire-decode": 2000)");
        plantCount("list-read", "1000");
        plantCount("wire-decode", "2000");
    }

    void count_isJudgedWithThreePercent_data()
    {
        QTest::addColumn<QByteArray>("count");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("last");
        const auto kept = QStringLiteral("budget: 2 paths keep theirs.");
        const auto couldHaveLess = QStringLiteral("budget: 2 paths keep theirs, 1 could have less.");
        const auto failed = QStringLiteral("budget: FAILED, 1 too much. ");
        QTest::newRow("as before") << QByteArray("1000") << 0 << QStringLiteral("1,000 +0.00 % kept") << kept;
        QTest::newRow("just allowed")
            << QByteArray("1030") << 0 << QStringLiteral("1,030 +3.00 % kept") << kept;
        QTest::newRow("one more") << QByteArray("1031") << 1 << QStringLiteral("1,031 +3.10 % TOO MUCH")
                                  << failed;
        QTest::newRow("twice") << QByteArray("2000") << 1 << QStringLiteral("2,000 +100.00 % TOO MUCH")
                               << failed;
        QTest::newRow("a little less")
            << QByteArray("970") << 0 << QStringLiteral("970 -3.00 % kept") << kept;
        QTest::newRow("less") << QByteArray("969") << 0 << QStringLiteral("969 -3.10 % needs less: --update")
                              << couldHaveLess;
    }
    void count_isJudgedWithThreePercent()
    {
        QFETCH(QByteArray, count);
        QFETCH(int, status);
        QFETCH(QString, row);
        QFETCH(QString, last);
        plantCount("list-read", count);
        QCOMPARE(judge(), status);
        QCOMPARE(m_output.value(1), QStringLiteral("list-read 1,000 ") + row);
        QCOMPARE(m_output.value(2), QStringLiteral("wire-decode 2,000 2,000 +0.00 % kept"));
        QVERIFY2(m_output.last().startsWith(last), qPrintable(m_output.last()));
    }

    void pathWithoutBudget_fails()
    {
        plantCount("msp-decode", "10");
        QCOMPARE(judge(), 1);
        QVERIFY(m_output.contains(QStringLiteral("msp-decode - 10 - NO BUDGET")));
    }

    void budgetWithoutPath_fails()
    {
        QVERIFY(QFile::remove(profile("list-read")));
        QCOMPARE(judge(), 1);
        QVERIFY(m_output.contains(QStringLiteral("list-read 1,000 - - NOT COUNTED")));
    }

    void otherPlatform_isNotJudged()
    {
        plantPlatform("qt 5.15.10\ncompiler 12.2.0\n");
        plantCount("list-read", "5000");
        QCOMPARE(judge(), 3);
        QVERIFY(m_output.contains(QStringLiteral("list-read 1,000 5,000 +400.00 % not judged")));
        QVERIFY2(m_output.last().startsWith(QStringLiteral(
                     "budget: NOT JUDGED, the budget holds for another platform: here is qt 5.15.10 "
                     "instead of 5.15.8. ")),
                 qPrintable(m_output.last()));
        plantPlatform("qt 5.15.8\ncompiler 12.2.0\nlibc 2.36\n");
        QCOMPARE(judge(), 3);
    }

    void update_writesWhatWasCounted()
    {
        plantCount("list-read", "5000");
        QVERIFY(QFile::remove(profile("wire-decode")));
        plantPlatform("qt 5.15.10\n");
        QCOMPARE(judge({QStringLiteral("--update")}), 0);
        QFile file(m_home->filePath(QStringLiteral("budget.json")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject budget = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(budget[QStringLiteral("instructions")].toObject(),
                 (QJsonObject{{QStringLiteral("list-read"), 5000}}));
        QCOMPARE(budget[QStringLiteral("platform")].toObject(),
                 (QJsonObject{{QStringLiteral("qt"), QStringLiteral("5.15.10")}}));
        QCOMPARE(judge(), 0);
    }

    void unreadableFiles_judgeNothing_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("budget of no JSON") << QByteArray("budget.json") << QByteArray("list-read 1000");
        QTest::newRow("budget without paths")
            << QByteArray("budget.json") << QByteArray(R"({"platform": {}})");
        QTest::newRow("budget that is no number")
            << QByteArray("budget.json")
            << QByteArray(R"({"platform": {}, "instructions": {"list-read": "1000", "wire-decode": 2000}})");
        QTest::newRow("profile without a count")
            << QByteArray("counts/list-read.callgrind") << QByteArray("events: Ir\n");
        QTest::newRow("profile in which nothing ran")
            << QByteArray("counts/list-read.callgrind") << QByteArray("totals: 0\n");
        QTest::newRow("no platform") << QByteArray("counts/platform") << QByteArray();
    }
    void unreadableFiles_judgeNothing()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, content);
        plant(QString::fromLatin1(file), content);
        QCOMPARE(judge(), 2);
    }

private:
    void plant(const QString &name, const QByteArray &content)
    {
        QFile file(m_home->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    void plantPlatform(const QByteArray &lines) { plant(QStringLiteral("counts/platform"), lines); }
    void plantBudget(const QByteArray &instructions)
    {
        plant(QStringLiteral("budget.json"),
              R"({"platform": {"qt": "5.15.8", "compiler": "12.2.0"}, "instructions": {)" + instructions
                  + "}}");
    }
    QString profile(const char *path) const
    {
        return m_home->filePath(QStringLiteral("counts/%1.callgrind").arg(QLatin1String(path)));
    }
    void plantCount(const char *path, const QByteArray &instructions)
    {
        plant(QStringLiteral("counts/%1.callgrind").arg(QLatin1String(path)),
              "version: 1\nevents: Ir\n\nfn=(1) main\n5 12\n\ntotals: " + instructions + '\n');
    }

    /// \return the exit status; the lines go to m_output, with single spaces.
    int judge(QStringList arguments = {})
    {
        arguments << m_home->filePath(QStringLiteral("budget.json"))
                  << m_home->filePath(QStringLiteral("counts"));
        QProcess process;
        process.start(QStringLiteral(HALVAR_SOURCE_DIR "/benchmarks/judge-budget"), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return -1;
        m_output.clear();
        const QList<QByteArray> lines = process.readAllStandardOutput().trimmed().split('\n');
        for (const QByteArray &line : lines)
            m_output << QString::fromUtf8(line.simplified());
        return process.exitCode();
    }

    std::unique_ptr<QTemporaryDir> m_home;
    QStringList m_output;
};

QTEST_APPLESS_MAIN(TstBudget)
#include "tst_budget.moc"
