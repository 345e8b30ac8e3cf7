// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "figures.h"
#include "goals.h"

namespace {

Figures measured(const std::vector<std::pair<long, double>> &own, double limit)
{
    Figures figures;
    for (const auto &[size, figure] : own) {
        figures.add("append", size, "library", figure, "ns");
        figures.add("append", size, "bare", limit, "ns");
    }
    return figures;
}

Goal ratio(double bound)
{
    return Goal(Goal::Kind::Ratio, "append", "bare", bound);
}

Goal growth(double bound)
{
    return Goal(Goal::Kind::Growth, "append", std::string(), bound);
}

} // namespace

class TstGoals : public QObject
{
    Q_OBJECT

private slots:
    void figureIsSmallestRepetition()
    {
        Figures figures;
        for (double value : {3.0, 2.0, 4.0})
            figures.add("append", 10, "library", value, "ns");
        QCOMPARE(figures.rows().size(), std::size_t(1));
        QCOMPARE(figures.rows().front().figure("library").value_or(0), 2.0);
    }
    void rowsStandBySize()
    {
        const Figures figures = measured({{1000, 1}, {10, 1}, {100, 1}}, 1);
        std::vector<long> sizes;
        for (const Figures::Row &row : figures.rows("append"))
            sizes.push_back(row.size);
        QCOMPARE(sizes, (std::vector<long>{10, 100, 1000}));
    }
    void figureOfAnotherVariant_isAbsent()
    {
        QVERIFY(!measured({{1, 1}}, 1).rows().front().figure("hand-written"));
    }

    void ratioIsJudgedAtItsWorstSize()
    {
        const Figures figures = measured({{10, 20}, {100, 60}, {1000, 40}}, 10);
        const Goal::Outcome outcome = ratio(5.0).judge(figures);
        QCOMPARE(outcome.verdict, Goal::Verdict::Missed);
        QCOMPARE(outcome.worst, 6.0);
        QCOMPARE(outcome.size, 100L);
    }
    void ratioAtBound_meetsGoal()
    {
        QCOMPARE(ratio(4.0).judge(measured({{10, 40}}, 10)).verdict, Goal::Verdict::Met);
    }
    void ratioAtStrictBound_missesGoal()
    {
        QCOMPARE(ratio(4.0).strictly().judge(measured({{10, 40}}, 10)).verdict, Goal::Verdict::Missed);
    }
    void sizesOutsideTheGoal_doNotCount()
    {
        const Figures figures = measured({{10, 90}, {100, 20}, {1000, 90}}, 10);
        const Goal::Outcome outcome = ratio(2.0).fromSize(100).toSize(100).judge(figures);
        QCOMPARE(outcome.verdict, Goal::Verdict::Met);
        QCOMPARE(outcome.worst, 2.0);
    }

    void missingLimit_isNotMeasured()
    {
        Figures figures = measured({{10, 1}}, 1);
        figures.add("append", 100, "library", 1, "ns");
        QCOMPARE(ratio(2.0).judge(figures).verdict, Goal::Verdict::NotMeasured);
    }
    void missingLibrary_isNotMeasured()
    {
        Figures figures;
        figures.add("append", 100, "bare", 1, "ns");
        QCOMPARE(ratio(2.0).judge(figures).verdict, Goal::Verdict::NotMeasured);
    }
    void missingRow_isNotMeasured() { QCOMPARE(ratio(2.0).judge({}).verdict, Goal::Verdict::NotMeasured); }
    void limitOfNothing_isNotMeasured()
    {
        QCOMPARE(ratio(2.0).judge(measured({{10, 1}}, 0)).verdict, Goal::Verdict::NotMeasured);
    }

    void growthComparesLargestWithSmallest()
    {
        const Figures figures = measured({{10, 10}, {100, 99}, {1000, 13}}, 1);
        const Goal::Outcome outcome = growth(1.3).judge(figures);
        QCOMPARE(outcome.verdict, Goal::Verdict::Met);
        QCOMPARE(outcome.worst, 1.3);
        QCOMPARE(growth(1.2).judge(figures).verdict, Goal::Verdict::Missed);
    }
    void growthBetweenGivenSizes()
    {
        const Figures figures = measured({{10, 10}, {100, 20}, {1000, 22}, {10000, 90}}, 1);
        QCOMPARE(growth(1.1).fromSize(100).toSize(1000).judge(figures).worst, 1.1);
    }
    void growthOfOneSize_isNotMeasured()
    {
        QCOMPARE(growth(1.3).judge(measured({{10, 10}}, 1)).verdict, Goal::Verdict::NotMeasured);
    }

    void differenceIsInTheRowsUnit()
    {
        Figures figures;
        figures.add("memory", 0, "library", 21e6, "B");
        figures.add("memory", 0, "bare", 18.5e6, "B");
        const auto difference = [](double bound) {
            return Goal(Goal::Kind::Difference, "memory", "bare", bound);
        };
        QCOMPARE(difference(2.5e6).judge(figures).verdict, Goal::Verdict::Met);
        QCOMPARE(difference(2e6).judge(figures).verdict, Goal::Verdict::Missed);
        QCOMPARE(difference(2e6).judge(figures).worst, 2.5e6);
    }

    void registeredGoals_keepTheirShapeAndOrder()
    {
        goal("append", "bare", 2.0).fromSize(100);
        goalFaster("remove", "bare");
        goalDifference("memory", "bare", 2e6);
        goalGrowth("append", 1.3).toSize(1000);
        QStringList titles;
        for (const Goal &registered : goals())
            titles.append(QString::fromStdString(registered.title()));
        QCOMPARE(titles,
                 (QStringList{QStringLiteral("append, to bare, from 100"), QStringLiteral("remove, to bare"),
                              QStringLiteral("memory, more than bare"),
                              QStringLiteral("append, growth, up to 1000")}));
        QVERIFY(!goals().at(0).isStrict());
        QVERIFY(goals().at(1).isStrict());
    }

    void figuresArePrintedWithThePrefixThatFits_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("text");
        const auto row = [](double value, const char *unit, const char *text) {
            QTest::newRow(text) << value << QString::fromUtf8(unit) << QString::fromUtf8(text);
        };
        row(0, "ns", "0.00 ns");
        row(9.994, "ns", "9.99 ns");
        row(9.996, "ns", "10.0 ns");
        row(999.4, "ns", "999 ns");
        row(999.6, "ns", "1.00 µs");
        row(2.5e6, "ns", "2.50 ms");
        row(7.2e12, "ns", "7200 s");
        row(-2e6, "B", "-2.00 MB");
        row(123456, "events/s", "123456 events/s");
    }
    void figuresArePrintedWithThePrefixThatFits()
    {
        QFETCH(double, value);
        QFETCH(QString, unit);
        QTEST(QString::fromStdString(formatted(value, unit.toStdString())), "text");
    }
};

QTEST_APPLESS_MAIN(TstGoals)
#include "tst_goals.moc"
