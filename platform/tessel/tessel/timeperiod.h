// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TIMEPERIOD_H
#define TESSEL_TIMEPERIOD_H

#include <QtGlobal>

#include "astring.h"
#include "export.h"

namespace tessel {

/// A length of time, in µs.
class TESSEL_EXPORT TimePeriod
{
public:
    TimePeriod() = default;
    explicit TimePeriod(qint64 microseconds)
        : m_microseconds(microseconds)
    { }

    qint64 microseconds() const { return m_microseconds; }
    double seconds() const { return static_cast<double>(m_microseconds) / 1e6; }
    /// In seconds, e.g. "1.250000 s".
    AString to_string() const;

    friend bool operator==(const TimePeriod &a, const TimePeriod &b)
    {
        return a.m_microseconds == b.m_microseconds;
    }
    friend bool operator!=(const TimePeriod &a, const TimePeriod &b) { return !(a == b); }

private:
    qint64 m_microseconds = 0;
};

} // namespace tessel

#endif // TESSEL_TIMEPERIOD_H
