// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <cmath>

#include "physics.h"

namespace nap = com::halvar::nap;
using namespace simulator;

class TstPhysics : public QObject
{
    Q_OBJECT
private slots:
    void activity_halvesWithEachHalfLife();
    void sigma_fallsWithTheRootOfTimeAndActivity();
    void draws_lieAroundTheTruthWithTheirSigma();
    void draws_repeatWithSeedAndStream();
    void decision_keepsKSigmaFromTheThreshold();
    void substrateAndDistance_widenSigma();
    void drift_makesUnreadyOutsideTheLimits();
};

void TstPhysics::activity_halvesWithEachHalfLife()
{
    Source source;
    source.activity = 370;
    source.date = QDate(2020, 1, 1);
    source.halfLife = 100;
    QCOMPARE(source.activityOn(QDate(2020, 1, 1)), 370.0);
    QCOMPARE(source.activityOn(QDate(2020, 1, 1).addDays(100)), 185.0);
    QCOMPARE(source.activityOn(QDate(2020, 1, 1).addDays(300)), 46.25);
}

void TstPhysics::sigma_fallsWithTheRootOfTimeAndActivity()
{
    const Detector detector;
    const Sample sample;
    const double full = sigmaOfOneSecond(detector, sample, NominalActivity);
    QCOMPARE(full, detector.sigma);
    QCOMPARE(sigmaOfOneSecond(detector, sample, NominalActivity / 4), 2 * full);

    Counting counting(1, 1, 2.0, full);
    QCOMPARE(counting.sigma(), 0.0);
    for (int i = 0; i < 8; ++i)
        counting.addPeriod();
    QCOMPARE(counting.liveTime(), 4.0);
    QCOMPARE(counting.sigma(), full / 2);
}

void TstPhysics::draws_lieAroundTheTruthWithTheirSigma()
{
    constexpr int shots = 4000;
    constexpr double truth = 1.5;
    double sum = 0;
    double squares = 0;
    for (quint32 stream = 1; stream <= shots; ++stream) {
        Counting counting(42, stream, truth, 0.3);
        for (int i = 0; i < 4; ++i)
            counting.addPeriod();
        const double off = (counting.value() - truth) / counting.sigma();
        sum += off;
        squares += off * off;
    }
    const double mean = sum / shots;
    const double variance = squares / shots - mean * mean;
    // The mean of 4000 normal draws scatters by 0.016, their variance by 0.022.
    QVERIFY2(std::abs(mean) < 0.08, qPrintable(QString::number(mean)));
    QVERIFY2(std::abs(variance - 1) < 0.11, qPrintable(QString::number(variance)));
}

void TstPhysics::draws_repeatWithSeedAndStream()
{
    const auto values = [](quint32 seed, quint32 stream) {
        Counting counting(seed, stream, 1.0, 0.3);
        QVector<double> told;
        for (int i = 0; i < 10; ++i) {
            counting.addPeriod();
            told.append(counting.value());
        }
        return told;
    };
    QCOMPARE(values(7, 3), values(7, 3));
    QVERIFY(values(7, 3) != values(8, 3));
    QVERIFY(values(7, 3) != values(7, 4));
}

void TstPhysics::decision_keepsKSigmaFromTheThreshold()
{
    Detector detector;
    detector.threshold = 1;
    detector.k = 2;
    const auto decided = [&detector](double truth, double sigma) {
        // So many periods that the mean is the truth; the sigma told is the one that counts.
        Counting counting(1, 1, truth, 1e-9);
        counting.addPeriod();
        Detector scaled = detector;
        scaled.k = detector.k * sigma / counting.sigma();
        return decide(scaled, counting);
    };
    QCOMPARE(decided(1.21, 0.1), nap::POSITIVE);
    QCOMPARE(decided(1.19, 0.1), nap::UNDETERMINED);
    QCOMPARE(decided(0.81, 0.1), nap::UNDETERMINED);
    QCOMPARE(decided(0.79, 0.1), nap::NEGATIVE);
}

void TstPhysics::substrateAndDistance_widenSigma()
{
    const Detector detector;
    Sample metal;
    metal.substrate = QStringLiteral("Métal");
    Sample far;
    far.distance = 10;
    Sample unknown;
    unknown.substrate = QStringLiteral("liège");
    const double plain = sigmaOfOneSecond(detector, Sample(), NominalActivity);
    QCOMPARE(sigmaOfOneSecond(detector, metal, NominalActivity), 1.6 * plain);
    QCOMPARE(sigmaOfOneSecond(detector, far, NominalActivity), plain * std::sqrt(std::exp(1.0)));
    QCOMPARE(sigmaOfOneSecond(detector, unknown, NominalActivity), plain);
}

void TstPhysics::drift_makesUnreadyOutsideTheLimits()
{
    Conditions conditions;
    QVERIFY(conditions.ready());
    QCOMPARE(conditions.gain(), 1.0);
    conditions.temperatureDrift = 6;
    conditions.drift(60);
    QCOMPARE(conditions.temperature, 28.0);
    QCOMPARE(conditions.gain(), 1 + 6 * 0.004);
    conditions.drift(240);
    QVERIFY(!conditions.temperatureOk());
    QVERIFY(conditions.voltageOk());
    const nap::AcqConditions record = conditions.record();
    QCOMPARE(record.get_temperature(), 52.0);
    QVERIFY(!record.get_readyForAcquisition());
    QVERIFY(!record.get_acceptableTemperature());
    QVERIFY(record.get_acceptableAcceleratingVoltage());
}

QTEST_GUILESS_MAIN(TstPhysics)
#include "tst_physics.moc"
