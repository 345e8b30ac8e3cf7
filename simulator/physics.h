// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_PHYSICS_H
#define SIMULATOR_PHYSICS_H

#include <QDate>
#include <QString>

#include <random>

#include <nap/records.h>

/// What the instrument measures and how well: no object here knows of time passing, services or files.
namespace simulator {

/// Length of a period, at whose end a shot gives an intermediate result, in instrument seconds.
constexpr double Period = 0.5;

/// What lies before the instrument.
struct Sample
{
    double concentration = 0.2; ///< mg/cm²
    QString substrate = QStringLiteral("plâtre");
    double distance = 0; ///< mm
};

struct Source
{
    double activity = 370; ///< MBq, on \c date
    QDate date = QDate(2025, 9, 1);
    double halfLife = 462; ///< days

    double activityOn(const QDate &day) const;
};

struct Detector
{
    double sigma = 0.3; ///< mg/cm²: after 1 s on plaster, with a source of NominalActivity
    double threshold = 1; ///< mg/cm²
    double k = 2; ///< a decision keeps this many sigma from the threshold
    double timeLimit = 20; ///< s, of a shot that ends itself
    double accuracyTime = 4; ///< s
    double calibrationTime = 5; ///< s
};

constexpr double NominalActivity = 370;
/// Farther away, what is scattered back no longer tells anything.
constexpr double FarthestDistance = 30;

/// The block whose concentration is known, and how near a check must come to it.
struct Reference
{
    double value = 1.04;
    double precision = 0.15;
};

struct Conditions
{
    double temperature = 22; ///< °C
    double voltage = 1200; ///< V
    double temperatureDrift = 0; ///< °C per minute
    double voltageDrift = 0; ///< V per minute

    void drift(double seconds);
    bool temperatureOk() const { return temperature >= -10 && temperature <= 50; }
    bool voltageOk() const { return voltage >= 1150 && voltage <= 1250; }
    bool ready() const { return temperatureOk() && voltageOk(); }
    /// Factor on what is measured: 1 at 22 °C and 1200 V.
    double gain() const;
    com::halvar::nap::AcqConditions record() const;
};

/// Sigma of one second of live time.
double sigmaOfOneSecond(const Detector &detector, const Sample &sample, double activity);

/// The counts of one acquisition: every period adds an independent estimate, of which the mean is told.
class Counting
{
public:
    /// \param stream tells the acquisitions of one seed apart: the values depend on neither timing nor speed.
    Counting(quint32 seed, quint32 stream, double truth, double sigmaOfOneSecond);

    void addPeriod();
    double liveTime() const { return m_periods * Period; }
    double value() const { return m_periods > 0 ? m_sum / m_periods : 0; }
    double sigma() const;

private:
    std::mt19937 m_random;
    std::normal_distribution<double> m_estimate;
    double m_sigmaOfOneSecond;
    double m_sum = 0;
    int m_periods = 0;
};

/// POSITIVE or NEGATIVE when the value is k sigma above or below the threshold, else UNDETERMINED.
com::halvar::nap::DetectionDecision decide(const Detector &detector, const Counting &counting);

} // namespace simulator

#endif // SIMULATOR_PHYSICS_H
