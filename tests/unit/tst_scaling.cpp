// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <limits>

#include "scaling.h"

namespace {
constexpr int IntMax = std::numeric_limits<int>::max();
constexpr int IntMin = std::numeric_limits<int>::min();
} // namespace

class TstScaling : public QObject
{
    Q_OBJECT

private slots:
    void interval_isScaledAndSaturates_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("factor");
        QTest::addColumn<int>("interval");
        QTest::newRow("seconds to ms") << 3 << 1000 << 3000;
        QTest::newRow("seconds to us") << 2147 << 1000000 << 2147000000;
        QTest::newRow("just above int saturates") << 2148 << 1000000 << IntMax;
        QTest::newRow("largest value") << IntMax << 1000000 << IntMax;
        QTest::newRow("zero") << 0 << 1000 << 0;
        QTest::newRow("negative counts as 0") << -1 << 1000 << 0;
        QTest::newRow("smallest value counts as 0") << IntMin << 1000000 << 0;
        QTest::newRow("negative unscaled") << -250 << 1 << 0;
    }
    void interval_isScaledAndSaturates()
    {
        QFETCH(int, value);
        QFETCH(int, factor);
        QTEST(halvar::scaledInterval(value, factor), "interval");
    }

    void truncation_isTowardsZeroAndSaturates_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("truncated");
        QTest::newRow("positive") << 24.99 << 24;
        QTest::newRow("negative, towards zero") << -0.99 << 0;
        QTest::newRow("negative") << -7.5 << -7;
        QTest::newRow("too large") << 1e300 << IntMax;
        QTest::newRow("too small") << -1e300 << IntMin;
        QTest::newRow("infinite") << qInf() << IntMax;
        QTest::newRow("not a number") << qQNaN() << 0;
    }
    void truncation_isTowardsZeroAndSaturates()
    {
        QFETCH(double, value);
        QTEST(halvar::truncatedToInt(value), "truncated");
    }
};

QTEST_APPLESS_MAIN(TstScaling)
#include "tst_scaling.moc"
