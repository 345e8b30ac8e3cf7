// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <tuple>

std::optional<double> Figures::Row::figure(const std::string &variant) const
{
    const auto found =
        std::find_if(variants.begin(), variants.end(), [&](const auto &v) { return v.first == variant; });
    return found == variants.end() ? std::nullopt : std::optional(found->second);
}

void Figures::add(const std::string &what, long size, const std::string &variant, double value,
                  const std::string &unit)
{
    auto row = std::find_if(m_rows.begin(), m_rows.end(),
                            [&](const Row &r) { return r.what == what && r.size == size; });
    if (row == m_rows.end())
        row = m_rows.insert(m_rows.end(), {what, size, unit, {}});
    auto &variants = row->variants;
    const auto figure =
        std::find_if(variants.begin(), variants.end(), [&](const auto &v) { return v.first == variant; });
    if (figure == variants.end())
        variants.emplace_back(variant, value);
    else
        figure->second = std::min(figure->second, value);
}

std::vector<Figures::Row> Figures::rows() const
{
    std::vector<Row> sorted = m_rows;
    std::sort(sorted.begin(), sorted.end(),
              [](const Row &a, const Row &b) { return std::tie(a.what, a.size) < std::tie(b.what, b.size); });
    return sorted;
}

std::vector<Figures::Row> Figures::rows(const std::string &what) const
{
    std::vector<Row> all = rows();
    std::vector<Row> named;
    std::copy_if(all.begin(), all.end(), std::back_inserter(named),
                 [&](const Row &row) { return row.what == what; });
    return named;
}

std::string formatted(double value, const std::string &unit)
{
    static const std::vector<std::string> times{"ns", "µs", "ms", "s"};
    static const std::vector<std::string> bytes{"B", "kB", "MB", "GB"};
    const std::vector<std::string> units = unit == "ns" ? times
        : unit == "B"                                   ? bytes
                                                        : std::vector<std::string>{unit};
    std::size_t prefix = 0;
    while (prefix + 1 < units.size() && std::abs(value) >= 999.5) {
        value /= 1000;
        ++prefix;
    }
    const int decimals = std::abs(value) < 9.995 ? 2 : std::abs(value) < 99.95 ? 1 : 0;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", decimals, value, units[prefix].c_str());
    return text;
}
