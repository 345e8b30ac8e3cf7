// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "date.h"

#include <QsLog.h>

#include <limits>

namespace {
constexpr int RefreshPeriod = 1000; // ms
} // namespace

Date::Date(QObject *parent)
    : QObject(parent)
{
    connect(&m_timerDate, &QTimer::timeout, this, &Date::update);
    update();
    m_timerDate.start(RefreshPeriod);
}

void Date::update()
{
    m_currentDate = QDateTime::currentDateTime();
    emit dateTimeChanged();
}

QString Date::currentDate() const
{
    return m_currentDate.toString(QStringLiteral("dd-MM-yyyy"));
}

QString Date::currentTime() const
{
    return m_currentDate.toString(QStringLiteral("HH:mm:ss"));
}

QString Date::currentZone() const
{
    return m_currentDate.timeZoneAbbreviation();
}

QString Date::endDate() const
{
    return m_endDate.toString(QStringLiteral("dd-MM-yyyy"));
}

void Date::setEndDate(const QDate &date)
{
    m_endDate = date;
}

void Date::setNbWarningMonths(int months)
{
    QLOG_INFO() << "[Halvar Controller][Date]: Warning check!!";
    if (months <= 0) {
        QLOG_WARN() << "[Halvar Controller][Date]: Le nombre de jours doit être strictement positif.";
        months = 1;
    }
    m_warningDate = m_endDate.addMonths(-months);
    QLOG_INFO() << "[Halvar Controller][Date]: m_warningDate " << m_warningDate;
    QLOG_INFO() << "[Halvar Controller][Date]: m_endDate " << m_endDate;
    QLOG_INFO() << "[Halvar Controller][Date]: m_currentDate " << m_currentDate;

    const QDate today = m_currentDate.date();
    if (today < m_warningDate) {
        setWarning(false);
        setAlert(false);
    } else if (today < m_endDate) {
        setWarning(true);
        setAlert(false);
        // Named after the flag that it shows, not after the period: "Alert !! false" is the warning period.
        QLOG_INFO() << "[Halvar Controller][Date]: Alert !! " << m_alert;
    } else {
        // Without an end date there is no number of days; the source still counts as expired.
        const qint64 days = m_endDate.isValid() ? qAbs(today.daysTo(m_endDate)) : 0;
        m_daysAfterAuthorization = static_cast<int>(qMin<qint64>(days, std::numeric_limits<int>::max()));
        setWarning(true);
        setAlert(true);
        QLOG_INFO() << "[Halvar Controller][Date]: Warning !! " << m_warning;
    }
}
