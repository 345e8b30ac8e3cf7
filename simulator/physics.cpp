// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "physics.h"

#include <QHash>

#include <cmath>

namespace nap = com::halvar::nap;

namespace simulator {

namespace {

constexpr double ReferenceTemperature = 22;
constexpr double ReferenceVoltage = 1200;
constexpr double GainPerDegree = 0.004;
constexpr double GainPerVolt = 0.002;
constexpr double AttenuationLength = 10; // mm, over which 1/e of the counts is left

/// How much a substrate scatters into the window, compared with plaster.
double background(const QString &substrate)
{
    static const QHash<QString, double> factors = {
        {QStringLiteral("bois"), 0.8},   {QStringLiteral("plâtre"), 1.0}, {QStringLiteral("brique"), 1.1},
        {QStringLiteral("béton"), 1.25}, {QStringLiteral("pierre"), 1.3}, {QStringLiteral("métal"), 1.6}};
    return factors.value(substrate.toLower(), 1.0);
}

std::mt19937 generator(quint32 seed, quint32 stream)
{
    std::seed_seq sequence{seed, stream};
    return std::mt19937(sequence);
}

} // namespace

double Source::activityOn(const QDate &day) const
{
    return activity * std::exp2(-static_cast<double>(date.daysTo(day)) / halfLife);
}

void Conditions::drift(double seconds)
{
    temperature += temperatureDrift * seconds / 60;
    voltage += voltageDrift * seconds / 60;
}

double Conditions::gain() const
{
    return 1 + GainPerDegree * (temperature - ReferenceTemperature)
        + GainPerVolt * (voltage - ReferenceVoltage);
}

nap::AcqConditions Conditions::record() const
{
    nap::AcqConditions record;
    record.set_temperature(temperature);
    record.set_acceleratingVoltage(voltage);
    record.set_readyForAcquisition(ready());
    record.set_acceptableTemperature(temperatureOk());
    record.set_acceptableAcceleratingVoltage(voltageOk());
    return record;
}

double sigmaOfOneSecond(const Detector &detector, const Sample &sample, double activity)
{
    const double counted = activity / NominalActivity * std::exp(-sample.distance / AttenuationLength);
    return detector.sigma * background(sample.substrate) / std::sqrt(counted);
}

Counting::Counting(quint32 seed, quint32 stream, double truth, double sigmaOfOneSecond)
    : m_random(generator(seed, stream))
    , m_estimate(truth, sigmaOfOneSecond / std::sqrt(Period))
    , m_sigmaOfOneSecond(sigmaOfOneSecond)
{ }

void Counting::addPeriod()
{
    m_sum += m_estimate(m_random);
    ++m_periods;
}

double Counting::sigma() const
{
    return m_periods > 0 ? m_sigmaOfOneSecond / std::sqrt(liveTime()) : 0;
}

nap::DetectionDecision decide(const Detector &detector, const Counting &counting)
{
    const double margin = detector.k * counting.sigma();
    if (counting.value() - margin > detector.threshold)
        return nap::POSITIVE;
    if (counting.value() + margin < detector.threshold)
        return nap::NEGATIVE;
    return nap::UNDETERMINED;
}

} // namespace simulator
