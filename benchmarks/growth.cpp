// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "growth.h"

#include <cmath>
#include <limits>

double growthExponent(const std::vector<std::pair<double, double>> &points)
{
    double meanWork = 0;
    double meanCost = 0;
    for (const auto &[work, cost] : points) {
        if (!(work > 0) || !(cost > 0))
            return std::numeric_limits<double>::quiet_NaN();
        meanWork += std::log(work) / double(points.size());
        meanCost += std::log(cost) / double(points.size());
    }
    double variance = 0;
    double covariance = 0;
    for (const auto &[work, cost] : points) {
        const double distance = std::log(work) - meanWork;
        variance += distance * distance;
        covariance += distance * (std::log(cost) - meanCost);
    }
    return variance > 0 ? covariance / variance : std::numeric_limits<double>::quiet_NaN();
}
