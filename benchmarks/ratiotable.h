// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef RATIOTABLE_H
#define RATIOTABLE_H

#include <QString>

#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "figures.h"
#include "goals.h"

/// Collects a run, prints it as one table of ratios and judges the goals by it.
///
/// A benchmark is called "what:variant/size". Its figure is the time of one of its items, unless it has a
/// counter called "[UNIT]", which then takes the time's place; a counter called "NAME [UNIT]" makes a row
/// "what, NAME" besides. Other counters stay in the benchmark's own output.
class RatioTable : public benchmark::BenchmarkReporter
{
public:
    /// \param everything whether all benchmarks run: a goal that was not measured then counts as missed,
    /// instead of being left out
    explicit RatioTable(bool everything)
        : m_everything(everything)
    { }

    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

    /// False when a benchmark reported an error or a figure of the library has no limit beside it.
    bool isComplete() const { return m_complete; }
    bool meetsGoals() const;
    /// Takes the rows that write() has left at \p path, as if they had been measured here. False when there
    /// are none.
    bool read(const QString &path);
    /// Writes rows, ratios and verdicts as JSON. False when \p path cannot be written.
    bool write(const QString &path) const;

private:
    void printRows();
    void printGoals() const;
    /// The goals this run has to do with, and how it meets them.
    std::vector<std::pair<const Goal *, Goal::Outcome>> judged() const;

    const bool m_everything;
    Figures m_figures;
    bool m_complete = true;
};

#endif // RATIOTABLE_H
