// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <limits>

#include "date.h"
#include "logrecorder.h"
#include "metatext.h"

namespace {

/// The day of the object's last refresh, which may be yesterday's when midnight has just passed.
QDate todayOf(const Date &date)
{
    return QDate::fromString(date.currentDate(), QStringLiteral("dd-MM-yyyy"));
}

QString shown(const QDate &date)
{
    return date.isNull() ? QStringLiteral("QDate(Invalid)")
                         : QStringLiteral("QDate(\"%1\")").arg(date.toString(Qt::ISODate));
}

const QString checkLine = QStringLiteral("INFO [Halvar Controller][Date]: Warning check!!");
const QString warningDateLine = QStringLiteral("INFO [Halvar Controller][Date]: m_warningDate  ");
const QString endDateLine = QStringLiteral("INFO [Halvar Controller][Date]: m_endDate  ");
const QString currentDateLine = QStringLiteral("INFO [Halvar Controller][Date]: m_currentDate  QDateTime(");
const QString periodLine = QStringLiteral("INFO [Halvar Controller][Date]: Alert !!  false");
const QString expiredLine = QStringLiteral("INFO [Halvar Controller][Date]: Warning !!  true");

} // namespace

class TstDate : public QObject
{
    Q_OBJECT

private slots:
    void interface_isAsTheInterfaceBindsIt()
    {
        QCOMPARE(metaText(Date::staticMetaObject), linesOf(R"(
            property QString current NOTIFY dateTimeChanged
            property QString time NOTIFY dateTimeChanged
            property QString zone NOTIFY dateTimeChanged
            property QString end CONSTANT
            property bool warning CONSTANT
            property bool alert CONSTANT
            property int daysAfterAuthorization CONSTANT
            signal dateTimeChanged()
            slot void update())"));
    }

    void fresh_knowsTheTimeAndNoEndOfTheSource()
    {
        QObject parent;
        const QDateTime before = QDateTime::currentDateTime();
        const auto *date = new Date(&parent);
        QCOMPARE(date->parent(), &parent);
        const QDateTime read = QDateTime::fromString(date->currentDate() + date->currentTime(),
                                                     QStringLiteral("dd-MM-yyyyHH:mm:ss"));
        QVERIFY(read.isValid());
        QVERIFY(before.addSecs(-1) <= read && read <= QDateTime::currentDateTime());
        QCOMPARE(date->currentZone(), before.timeZoneAbbreviation());
        QVERIFY(!date->currentZone().isEmpty());
        QCOMPARE(date->property("current").toString(), date->currentDate());
        QCOMPARE(date->property("time").toString(), date->currentTime());
        QCOMPARE(date->property("zone").toString(), date->currentZone());
        QVERIFY(date->endDate().isEmpty());
        QVERIFY(!date->warning());
        QVERIFY(!date->alert());
        QCOMPARE(date->daysAfterAuthorization(), 0);
    }

    void everySecond_theTimeIsReadAgain()
    {
        Date date;
        const QString first = date.currentTime();
        QSignalSpy changed(&date, &Date::dateTimeChanged);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(changed.wait(5000));
        QVERIFY(changed.wait(5000));
        QVERIFY2(timer.elapsed() >= 1900, qPrintable(QString::number(timer.elapsed()))); // two periods of 1 s
        QVERIFY(date.currentTime() != first);
    }

    void update_isAnnouncedEachTime()
    {
        Date date;
        QSignalSpy changed(&date, &Date::dateTimeChanged);
        date.update();
        date.update();
        QCOMPARE(changed.count(), 2);
    }

    void setEndDate_isShownAndAnnouncesNothing()
    {
        Date date;
        QSignalSpy changed(&date, &Date::dateTimeChanged);
        date.setEndDate(QDate(2031, 3, 9));
        QCOMPARE(date.endDate(), QStringLiteral("09-03-2031"));
        QCOMPARE(date.property("end").toString(), QStringLiteral("09-03-2031"));
        date.setEndDate(QDate());
        QVERIFY(date.endDate().isEmpty());
        QCOMPARE(changed.count(), 0);
    }

    void warningDate_isCalendarMonthsBefore_data()
    {
        QTest::addColumn<QDate>("end");
        QTest::addColumn<int>("months");
        QTest::addColumn<QDate>("warning");
        QTest::newRow("31 March, 1 month") << QDate(2031, 3, 31) << 1 << QDate(2031, 2, 28);
        QTest::newRow("31 March of a leap year, 1 month") << QDate(2028, 3, 31) << 1 << QDate(2028, 2, 29);
        QTest::newRow("same day where there is one") << QDate(2031, 12, 15) << 6 << QDate(2031, 6, 15);
        QTest::newRow("over the turn of the year") << QDate(2031, 1, 31) << 2 << QDate(2030, 11, 30);
        QTest::newRow("years") << QDate(2028, 2, 29) << 12 << QDate(2027, 2, 28);
        QTest::newRow("no end date") << QDate() << 6 << QDate();
    }

    void warningDate_isCalendarMonthsBefore()
    {
        QFETCH(QDate, end);
        QFETCH(int, months);
        QFETCH(QDate, warning);
        Date date;
        date.setEndDate(end);
        const LogRecorder log;
        date.setNbWarningMonths(months);
        QVERIFY2(log.contains(warningDateLine + shown(warning)),
                 qPrintable(log.lines().join(QLatin1Char('\n'))));
        QVERIFY(log.contains(endDateLine + shown(end)));
    }

    void flags_followTheDay_data()
    {
        QTest::addColumn<int>("daysToEnd");
        QTest::addColumn<bool>("warning");
        QTest::addColumn<bool>("alert");
        QTest::addColumn<int>("daysAfter");
        QTest::addColumn<QString>("line");
        QTest::newRow("long before") << 1000 << false << false << 0 << QString();
        QTest::newRow("a month and more before") << 32 << false << false << 0 << QString();
        QTest::newRow("in the last month") << 27 << true << false << 0 << periodLine;
        QTest::newRow("the day before the end") << 1 << true << false << 0 << periodLine;
        QTest::newRow("the day of the end") << 0 << true << true << 0 << expiredLine;
        QTest::newRow("the day after") << -1 << true << true << 1 << expiredLine;
        QTest::newRow("ten days after") << -10 << true << true << 10 << expiredLine;
        QTest::newRow("years after") << -4000 << true << true << 4000 << expiredLine;
    }

    void flags_followTheDay()
    {
        QFETCH(int, daysToEnd);
        QFETCH(QString, line);
        Date date;
        const QDate today = todayOf(date);
        date.setEndDate(today.addDays(daysToEnd));
        QSignalSpy changed(&date, &Date::dateTimeChanged);
        const LogRecorder log;
        date.setNbWarningMonths(1);
        QTEST(date.warning(), "warning");
        QTEST(date.alert(), "alert");
        QTEST(date.daysAfterAuthorization(), "daysAfter");
        QCOMPARE(date.property("warning").toBool(), date.warning());
        QCOMPARE(date.property("alert").toBool(), date.alert());
        QCOMPARE(changed.count(), 0);

        QStringList lines = log.lines();
        QCOMPARE(lines.size(), line.isEmpty() ? 4 : 5);
        QCOMPARE(lines.at(0), checkLine);
        QCOMPARE(lines.at(1), warningDateLine + shown(today.addDays(daysToEnd).addMonths(-1)));
        QCOMPARE(lines.at(2), endDateLine + shown(today.addDays(daysToEnd)));
        QVERIFY2(lines.at(3).startsWith(currentDateLine + today.toString(Qt::ISODate)),
                 qPrintable(lines.at(3)));
        QCOMPARE(lines.value(4), line);
    }

    void firstDayOfTheWarningPeriod_warns()
    {
        Date date;
        const QDate today = todayOf(date);
        // The end dates whose warning period begins today: one at least, unless the month is too short.
        int found = 0;
        for (int days = 27; days <= 32; ++days) {
            const QDate end = today.addDays(days);
            date.setEndDate(end);
            date.setNbWarningMonths(1);
            const bool begun = end.addMonths(-1) <= today;
            QCOMPARE(date.warning(), begun);
            QVERIFY(!date.alert());
            found += end.addMonths(-1) == today ? 1 : 0;
        }
        QVERIFY(found > 0 || today.day() > 28);
    }

    void monthsThatAreNotPositive_countAsOne_data()
    {
        QTest::addColumn<int>("months");
        QTest::newRow("0") << 0;
        QTest::newRow("-1") << -1;
        QTest::newRow("smallest") << std::numeric_limits<int>::min();
    }

    void monthsThatAreNotPositive_countAsOne()
    {
        QFETCH(int, months);
        Date date;
        date.setEndDate(QDate(2031, 3, 31));
        const LogRecorder log;
        date.setNbWarningMonths(months);
        const QStringList lines = log.lines();
        QVERIFY(lines.size() >= 3);
        QCOMPARE(lines.at(0), checkLine);
        QCOMPARE(lines.at(1),
                 QString::fromUtf8("WARN [Halvar Controller][Date]: Le nombre de jours doit être strictement "
                                   "positif."));
        QCOMPARE(lines.at(2), warningDateLine + shown(QDate(2031, 2, 28)));
    }

    void veryManyMonths_areSurvived()
    {
        Date date;
        date.setEndDate(todayOf(date).addDays(100));
        date.setNbWarningMonths(std::numeric_limits<int>::max());
        QVERIFY(date.warning());
        QVERIFY(!date.alert());
    }

    void noEndDate_countsAsExpired()
    {
        Date date;
        date.setNbWarningMonths(6);
        QVERIFY(date.warning());
        QVERIFY(date.alert());
        QCOMPARE(date.daysAfterAuthorization(), 0);
        QVERIFY(date.endDate().isEmpty());
    }

    void farAwayEndDates_saturateTheDays()
    {
        Date date;
        date.setEndDate(QDate::fromJulianDay(-3000000000LL)); // more days ago than an int counts
        date.setNbWarningMonths(1);
        QVERIFY(date.alert());
        QCOMPARE(date.daysAfterAuthorization(), std::numeric_limits<int>::max());
    }

    void dayCount_keepsItsValueUnlessTheSourceHasExpired()
    {
        Date date;
        const QDate today = todayOf(date);
        date.setEndDate(today.addDays(-3));
        date.setNbWarningMonths(1);
        QCOMPARE(date.daysAfterAuthorization(), 3);
        date.setEndDate(today.addYears(1));
        date.setNbWarningMonths(1);
        QVERIFY(!date.warning());
        QVERIFY(!date.alert());
        QCOMPARE(date.daysAfterAuthorization(), 3);
    }

    void today_isTheDayOfTheLastRefresh()
    {
        Date date;
        date.setEndDate(todayOf(date));
        const LogRecorder log;
        date.setNbWarningMonths(1);
        const qint64 start = QDateTime::currentMSecsSinceEpoch();
        while (QDateTime::currentMSecsSinceEpoch() < start + 2) { } // the clock goes on, the refresh does not
        date.setNbWarningMonths(1);
        date.update();
        date.setNbWarningMonths(1);
        const QStringList moments = log.lines().filter(currentDateLine);
        QCOMPARE(moments.size(), 3);
        QCOMPARE(moments.at(0), moments.at(1));
        QVERIFY(moments.at(1) != moments.at(2));
    }

    void flags_canBeSet()
    {
        Date date;
        date.setWarning(true);
        QVERIFY(date.warning());
        QVERIFY(!date.alert());
        date.setAlert(true);
        date.setWarning(false);
        QVERIFY(!date.warning());
        QVERIFY(date.alert());
    }
};

QTEST_GUILESS_MAIN(TstDate)
#include "tst_date.moc"
