// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FIGURES_H
#define FIGURES_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What a run has measured: per row (a thing done, at one size) one figure of each variant.
///
/// The variant "library" is ours, every other one a limit to compare it with. Each figure is the smallest of
/// its repetitions.
class Figures
{
public:
    /// The variant that is ours.
    static constexpr const char *library = "library";

    struct Row
    {
        std::string what;
        long size = 0;
        /// "ns", "B", ... the same for all variants.
        std::string unit;
        /// Variant and figure, in the order in which they came.
        std::vector<std::pair<std::string, double>> variants;

        /// Nothing when this variant was not measured.
        std::optional<double> figure(const std::string &variant) const;
    };

    /// Takes a repetition's \p value for the row, unless the row already has a smaller one of this variant.
    void add(const std::string &what, long size, const std::string &variant, double value,
             const std::string &unit);
    /// By name, then by size.
    std::vector<Row> rows() const;
    /// The rows of one name, by size.
    std::vector<Row> rows(const std::string &what) const;

private:
    std::vector<Row> m_rows;
};

/// "12.3 ns", "4.56 µs", "7.89 kB", ...: three figures with the prefix that fits. A unit other than ns and B
/// is left as it is.
std::string formatted(double value, const std::string &unit);

#endif // FIGURES_H
