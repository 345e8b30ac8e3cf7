// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef RATIOTABLE_H
#define RATIOTABLE_H

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

/// Collects a run and prints it as one table of ratios.
///
/// A benchmark is called "what:variant/size": the variant "library" is ours, every other one a limit to
/// compare it with. The figure of each is the fastest of its repetitions, for one of its items.
class RatioTable : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;
    /// False when a benchmark reported an error or a library figure has no limit beside it.
    bool isComplete() const { return m_complete; }

private:
    struct Row
    {
        std::string what;
        long size = 0;
        /// Variant and nanoseconds, in the order of registration.
        std::vector<std::pair<std::string, double>> figures;
    };
    Row &row(const std::string &what, long size);

    std::vector<Row> m_rows;
    bool m_complete = true;
};

#endif // RATIOTABLE_H
