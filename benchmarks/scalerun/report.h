// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef REPORT_H
#define REPORT_H

#include <QMap>
#include <QString>
#include <QVector>

#include "scenario.h"

/// The steps of all sizes, and what is asked of them: that they grow no faster than their work, and that none
/// keeps the interface waiting longer than its share.
class Report
{
public:
    /// The largest exponent by which time and memory may grow with the work.
    static constexpr double growthBound = 1.1;

    /// \param slower how many times the shares a slower machine is given.
    explicit Report(double slower);

    void add(int units, const Scenario::Step &step);
    void print() const;
    /// False also when a figure that is asked for is missing.
    bool isMet() const;

private:
    struct Share;
    static const QVector<Share> &shares();

    const Scenario::Step *find(int units, const QString &name) const;
    double growthOf(const Share &share) const;
    double memoryGrowth() const;
    double allowed(const Share &share, int units) const;
    bool keepsItsShare(const Share &share) const;

    double m_slower;
    QMap<int, QVector<Scenario::Step>> m_steps; ///< by number of units
};

#endif // REPORT_H
