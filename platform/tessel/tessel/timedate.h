// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TIMEDATE_H
#define TESSEL_TIMEDATE_H

#include <QtGlobal>

#include "export.h"

namespace tessel {

/// A moment, UTC, in ms since 1 January 1970; that day's midnight unless given.
class TESSEL_EXPORT TimeDate
{
public:
    TimeDate() = default;
    explicit TimeDate(qint64 millisecondsSinceEpoch)
        : m_milliseconds(millisecondsSinceEpoch)
    { }
    /// Midnight of a day; 1 January 1970 when there is no such day.
    TimeDate(int year, int month, int day);
    static TimeDate now();

    int year() const;
    int month() const;
    int day() const;
    int hour() const;
    int minute() const;
    int second() const;
    int millisecond() const;
    qint64 milliseconds() const { return m_milliseconds; }

    friend bool operator==(const TimeDate &a, const TimeDate &b)
    {
        return a.m_milliseconds == b.m_milliseconds;
    }
    friend bool operator!=(const TimeDate &a, const TimeDate &b) { return !(a == b); }

private:
    qint64 m_milliseconds = 0;
};

} // namespace tessel

#endif // TESSEL_TIMEDATE_H
