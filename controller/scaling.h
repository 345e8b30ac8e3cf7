// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_SCALING_H
#define HALVAR_SCALING_H

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace halvar {

/// \p value x \p factor as an interval: a negative product counts as 0, one beyond int as its maximum. No
/// entry of a configuration file overflows, which would give an interval that nobody asked for.
inline int scaledInterval(int value, int factor)
{
    const qint64 product = qint64(value) * factor;
    return static_cast<int>(qBound<qint64>(0, product, std::numeric_limits<int>::max()));
}

/// \p value without its fraction; 0 for what is not a number, the nearest int for what is too large.
inline int truncatedToInt(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int>(
        qBound<double>(std::numeric_limits<int>::min(), std::trunc(value), std::numeric_limits<int>::max()));
}

} // namespace halvar

#endif // HALVAR_SCALING_H
