// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/timedate.h"

#include <QDateTime>

#include "tessel/timeperiod.h"

namespace tessel {

namespace {

QDateTime dateTime(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

} // namespace

TimeDate::TimeDate(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (date.isValid())
        m_milliseconds = QDateTime(date, QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
}

TimeDate TimeDate::now()
{
    return TimeDate(QDateTime::currentMSecsSinceEpoch());
}

int TimeDate::year() const
{
    return dateTime(m_milliseconds).date().year();
}

int TimeDate::month() const
{
    return dateTime(m_milliseconds).date().month();
}

int TimeDate::day() const
{
    return dateTime(m_milliseconds).date().day();
}

int TimeDate::hour() const
{
    return dateTime(m_milliseconds).time().hour();
}

int TimeDate::minute() const
{
    return dateTime(m_milliseconds).time().minute();
}

int TimeDate::second() const
{
    return dateTime(m_milliseconds).time().second();
}

int TimeDate::millisecond() const
{
    return dateTime(m_milliseconds).time().msec();
}

AString TimePeriod::to_string() const
{
    return AString(QString::number(seconds(), 'f', 6) + QLatin1String(" s"));
}

} // namespace tessel
