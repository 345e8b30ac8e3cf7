// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QUANTILE_H
#define QUANTILE_H

#include <algorithm>
#include <cstddef>
#include <vector>

/// The value that \p fraction of \p samples do not exceed. \p samples must not be empty; their order is lost.
inline double quantile(std::vector<double> &samples, double fraction)
{
    const auto rank = std::min(samples.size() - 1, std::size_t(double(samples.size()) * fraction));
    const auto found = samples.begin() + std::ptrdiff_t(rank);
    std::nth_element(samples.begin(), found, samples.end());
    return *found;
}

#endif // QUANTILE_H
