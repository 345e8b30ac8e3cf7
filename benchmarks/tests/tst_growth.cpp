// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <cmath>

#include "growth.h"

class TstGrowth : public QObject
{
    Q_OBJECT

private slots:
    void exponent_isThatOfThePower_data()
    {
        QTest::addColumn<double>("exponent");
        QTest::newRow("flat") << 0.0;
        QTest::newRow("linear") << 1.0;
        QTest::newRow("square") << 2.0;
        QTest::newRow("shrinking") << -0.5;
    }
    void exponent_isThatOfThePower()
    {
        QFETCH(double, exponent);
        std::vector<std::pair<double, double>> points;
        for (double work : {1250.0, 2500.0, 5000.0, 10000.0})
            points.emplace_back(work, 3e-6 * std::pow(work, exponent));
        QVERIFY(std::abs(growthExponent(points) - exponent) < 1e-9);
    }

    void exponent_ofScatteredCosts_isThatOfTheBestLine()
    {
        // In logarithms to base 2: (0, 0), (1, 2), (2, 1).
        QVERIFY(std::abs(growthExponent({{1, 1}, {2, 4}, {4, 2}}) - 0.5) < 1e-9);
    }

    void exponent_ofTooLittle_isNoNumber()
    {
        QVERIFY(std::isnan(growthExponent({})));
        QVERIFY(std::isnan(growthExponent({{10, 1}})));
        QVERIFY(std::isnan(growthExponent({{10, 1}, {10, 2}})));
        QVERIFY(std::isnan(growthExponent({{10, 0}, {20, 2}})));
        QVERIFY(std::isnan(growthExponent({{0, 1}, {20, 2}})));
    }
};

QTEST_APPLESS_MAIN(TstGrowth)
#include "tst_growth.moc"
