// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef GROWTH_H
#define GROWTH_H

#include <utility>
#include <vector>

/// The exponent e of the cost = factor x work^e that fits the points best: the slope of the line through
/// their logarithms, by least squares. 1 for a cost that grows as the work does, 2 for its square.
///
/// \param points work and cost, both above 0, of at least two different amounts of work; else the result is
/// not a number.
double growthExponent(const std::vector<std::pair<double, double>> &points);

#endif // GROWTH_H
