// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include "battery.h"
#include "logrecorder.h"
#include "metatext.h"

using B = BatteryLevelsEnumClass;

namespace {

const QString gauge = QStringLiteral("/sys/class/power_supply/bq27510-0/voltage_now");
const QString away = gauge + QStringLiteral(".away");
const QString updateLine = QStringLiteral("TRACE [Halvar Controller][Battery]: update()");
const QString levelLine = QStringLiteral("DEBUG [Halvar Controller][Battery]: LEVEL updated");
const QString errorLine = QStringLiteral("ERROR [Halvar Controller][Battery]: Can't read Voltage.");

void sample(Battery &battery)
{
    QVERIFY(QMetaObject::invokeMethod(&battery, "update"));
}

} // namespace

class TstBattery : public QObject
{
    Q_OBJECT

private:
    static void write(const QByteArray &content)
    {
        QFile file(gauge);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "run it in simulator/instrument");
        B::declareQML();
    }

    void init()
    {
        if (QFile::exists(away))
            QVERIFY(QFile::rename(away, gauge));
        write("3800000\n");
    }

    void interface_isOneReadOnlyLevel()
    {
        QCOMPARE(metaText(Battery::staticMetaObject), linesOf(R"(
            property BatteryLevelsEnumClass::BatteryLevels level NOTIFY levelChanged
            signal levelChanged(BatteryLevelsEnumClass::BatteryLevels level)
            private slot void update())"));
    }

    void fresh_isUnknown()
    {
        QObject parent;
        const auto *battery = new Battery(&parent);
        QCOMPARE(battery->parent(), &parent);
        QCOMPARE(battery->level(), B::LEVEL_UNKNOW);
        QCOMPARE(battery->property("level").toInt(), 0);
    }

    void reading_givesTheLevel_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("level");
        QTest::newRow("empty battery") << QByteArray("0\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("upper edge of critical") << QByteArray("3300000\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("one microvolt above critical") << QByteArray("3300001\n") << int(B::LEVEL_VERY_LOW);
        QTest::newRow("upper edge of very low") << QByteArray("3500000\n") << int(B::LEVEL_VERY_LOW);
        QTest::newRow("one microvolt above very low") << QByteArray("3500001\n") << int(B::LEVEL_LOW);
        QTest::newRow("upper edge of low") << QByteArray("3700000\n") << int(B::LEVEL_LOW);
        QTest::newRow("one microvolt above low") << QByteArray("3700001\n") << int(B::LEVEL_GOOD);
        QTest::newRow("upper edge of good") << QByteArray("3900000\n") << int(B::LEVEL_GOOD);
        QTest::newRow("one microvolt above good") << QByteArray("3900001\n") << int(B::LEVEL_FULL);
        QTest::newRow("more than a battery gives") << QByteArray("99999999\n") << int(B::LEVEL_FULL);
        QTest::newRow("no line end") << QByteArray("3900001") << int(B::LEVEL_FULL);
        QTest::newRow("CRLF") << QByteArray("3900001\r\n") << int(B::LEVEL_FULL);
        QTest::newRow("only the first line counts") << QByteArray("3900001\nx\n") << int(B::LEVEL_FULL);
        QTest::newRow("leading zeros") << QByteArray("0003900001\n") << int(B::LEVEL_FULL);
        QTest::newRow("a page of leading zeros") << QByteArray(4000, '0') + "3900001\n" << int(B::LEVEL_FULL);
        // A gauge that answers nonsense must not look healthy.
        QTest::newRow("empty file") << QByteArray() << int(B::LEVEL_CRITICAL);
        QTest::newRow("empty line") << QByteArray("\n3900001\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("trailing blank") << QByteArray("3900001 \n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("leading blank") << QByteArray(" 3900001\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("minus sign") << QByteArray("-3900001\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("plus sign") << QByteArray("+3900001\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("decimal point") << QByteArray("3.9\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("hexadecimal") << QByteArray("0x3b8261\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("text") << QByteArray("unknown\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("digits of another script") << QByteArray("٣٩٠٠٠٠١\n") << int(B::LEVEL_CRITICAL);
        QTest::newRow("more than a number holds") << QByteArray(30, '9') + '\n' << int(B::LEVEL_CRITICAL);
        QTest::newRow("a line without end") << QByteArray(10 * 1024 * 1024, '9') << int(B::LEVEL_CRITICAL);
    }

    void reading_givesTheLevel()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, level);
        write(content);
        Battery battery;
        QSignalSpy changed(&battery, &Battery::levelChanged);
        const LogRecorder log;
        sample(battery);
        QCOMPARE(int(battery.level()), level);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toInt(), level);
        QCOMPARE(log.lines(), (QStringList{updateLine, levelLine}));
    }

    void nonsenseAfterAGoodReading_isCritical()
    {
        Battery battery;
        sample(battery);
        QCOMPARE(battery.level(), B::LEVEL_GOOD);
        write("-\n");
        sample(battery);
        QCOMPARE(battery.level(), B::LEVEL_CRITICAL);
    }

    void equalLevels_areAnnouncedOnce()
    {
        Battery battery;
        QSignalSpy changed(&battery, &Battery::levelChanged);
        sample(battery);
        write("3800001\n");
        const LogRecorder log;
        sample(battery);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(log.lines(), (QStringList{updateLine}));
    }

    void voltageAroundAThreshold_changesTheLevelAtEveryCrossing()
    {
        Battery battery;
        QSignalSpy changed(&battery, &Battery::levelChanged);
        for (int i = 0; i < 5; ++i) {
            write("3700000\n");
            sample(battery);
            write("3700001\n");
            sample(battery);
        }
        QCOMPARE(changed.count(), 10);
    }

    void missingFile_isUnknownAndReportedAtEveryTick()
    {
        Battery battery;
        sample(battery);
        QSignalSpy changed(&battery, &Battery::levelChanged);
        QVERIFY(QFile::rename(gauge, away));
        const LogRecorder log;
        sample(battery);
        sample(battery);
        QCOMPARE(battery.level(), B::LEVEL_UNKNOW);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(log.lines(), (QStringList{updateLine, errorLine, levelLine, updateLine, errorLine}));
        QVERIFY(QFile::rename(away, gauge));
        sample(battery);
        QCOMPARE(battery.level(), B::LEVEL_GOOD);
    }

    void missingFileFromTheStart_announcesNothing()
    {
        QVERIFY(QFile::rename(gauge, away));
        Battery battery;
        QSignalSpy changed(&battery, &Battery::levelChanged);
        sample(battery);
        QCOMPARE(changed.count(), 0);
    }

    void levelIsStoredBeforeItIsAnnounced()
    {
        Battery battery;
        B::BatteryLevels seen = B::LEVEL_UNKNOW;
        connect(&battery, &Battery::levelChanged, &battery, [&] { seen = battery.level(); });
        sample(battery);
        QCOMPARE(seen, B::LEVEL_GOOD);
    }

    void init_samplesPeriodicallyAndNotAtOnce()
    {
        Battery battery;
        QSignalSpy changed(&battery, &Battery::levelChanged);
        QElapsedTimer timer;
        timer.start();
        battery.init(200);
        QCOMPARE(battery.level(), B::LEVEL_UNKNOW);
        QVERIFY(changed.wait(10000));
        // A coarse timer is up to 5 % early, and elapsed() rounds down.
        QVERIFY2(timer.elapsed() >= 189, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(battery.level(), B::LEVEL_GOOD);
        write("4000000\n");
        QVERIFY(changed.wait(10000));
        QCOMPARE(battery.level(), B::LEVEL_FULL);
    }

    void init_again_changesThePeriodAndSamplesOnceATick()
    {
        Battery battery;
        battery.init(100000);
        battery.init(-1); // as often as the loop comes round
        QSignalSpy changed(&battery, &Battery::levelChanged);
        QVERIFY(changed.wait(10000));
        const LogRecorder log;
        QTRY_VERIFY(log.count(updateLine) >= 2);
        battery.init(100000);
        const int before = log.count(updateLine);
        battery.init(0);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCOMPARE(log.count(updateLine), before + 1);
    }
};

QTEST_GUILESS_MAIN(TstBattery)
#include "tst_battery.moc"
