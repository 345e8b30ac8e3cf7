// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef GOALS_H
#define GOALS_H

#include <deque>
#include <string>
#include <vector>

#include "figures.h"

/// What the library's figure of a row has to reach. Made by the functions below, beside the benchmarks that
/// measure the row; rows are named as there, without the variant.
class Goal
{
public:
    enum class Kind {
        /// Library over limit, at each size.
        Ratio,
        /// Library less limit, at each size, in the row's unit.
        Difference,
        /// The library's figure at the largest size over the one at the smallest.
        Growth
    };
    enum class Verdict {
        Met,
        Missed,
        /// The run lacks a figure that the goal needs.
        NotMeasured
    };
    struct Outcome
    {
        Verdict verdict = Verdict::NotMeasured;
        /// The ratio, or the difference, at the size where it is worst.
        double worst = 0;
        long size = 0;
    };

    Goal(Kind kind, std::string what, std::string limit, double bound);

    /// Looks only at rows of this size and above.
    Goal &fromSize(long size);
    /// Looks only at rows of this size and below.
    Goal &toSize(long size);
    /// The bound itself misses the goal.
    Goal &strictly();

    Kind kind() const { return m_kind; }
    const std::string &what() const { return m_what; }
    /// The variant to compare with; empty for Growth.
    const std::string &limit() const { return m_limit; }
    double bound() const { return m_bound; }
    bool isStrict() const { return m_strict; }
    long from() const { return m_from; }
    /// -1 without an upper end.
    long to() const { return m_to; }
    /// What is compared, and where: "list, remove the first row, to QStandardItemModel, from 10000".
    std::string title() const;

    Outcome judge(const Figures &figures) const;

private:
    bool reached(double value) const { return m_strict ? value < m_bound : value <= m_bound; }
    Outcome judgeGrowth(const std::vector<Figures::Row> &rows) const;

    Kind m_kind;
    std::string m_what;
    std::string m_limit;
    double m_bound;
    bool m_strict = false;
    long m_from = 0;
    long m_to = -1;
};

/// All goals, in the order of registration.
std::deque<Goal> &goals();

/// \p what takes at most \p times as much as the variant \p limit, at each size.
Goal &goal(const std::string &what, const std::string &limit, double times);
/// \p what takes less than the variant \p limit, at each size.
Goal &goalFaster(const std::string &what, const std::string &limit);
/// \p what takes at most \p more than the variant \p limit, in the row's unit (ns or B), at each size.
Goal &goalDifference(const std::string &what, const std::string &limit, double more);
/// The library's figure for one item grows at most \p times from the smallest to the largest size: 1.1 where
/// ten times the items may take 11 times as long.
Goal &goalGrowth(const std::string &what, double times);

#endif // GOALS_H
