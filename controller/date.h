// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DATE_H
#define HALVAR_DATE_H

#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include "halvar-export.h"

/// The current date and time, refreshed every second, and how things stand with the instrument's source.
///
/// The expiry values are computed once, by setNbWarningMonths() at start-up, and stay for the run.
/// Interface thread only.
class HALVAR_EXPORT Date : public QObject
{
    Q_OBJECT

    /// Date ("dd-MM-yyyy"), time ("HH:mm:ss") and time-zone abbreviation of the last refresh.
    Q_PROPERTY(QString current READ currentDate NOTIFY dateTimeChanged)
    Q_PROPERTY(QString time READ currentTime NOTIFY dateTimeChanged)
    Q_PROPERTY(QString zone READ currentZone NOTIFY dateTimeChanged)
    /// End of life of the source, "dd-MM-yyyy"; empty when the configuration has none.
    Q_PROPERTY(QString end READ endDate CONSTANT)
    /// The warning period before the end has begun (and goes on once the source has expired).
    Q_PROPERTY(bool warning READ warning CONSTANT)
    /// The source has expired.
    Q_PROPERTY(bool alert READ alert CONSTANT)
    /// Days since the end of the source; 0 as long as it has not expired.
    Q_PROPERTY(int daysAfterAuthorization READ daysAfterAuthorization CONSTANT)

public:
    explicit Date(QObject *parent = nullptr);

    QString currentDate() const;
    QString currentTime() const;
    QString currentZone() const;
    QString endDate() const;
    bool warning() const { return m_warning; }
    bool alert() const { return m_alert; }
    int daysAfterAuthorization() const { return m_daysAfterAuthorization; }

    void setEndDate(const QDate &date);
    /// Computes the warning date, \p months calendar months before the end date (1 when not positive), and
    /// from it both flags, as seen from the day of the last refresh. Call setEndDate() first.
    void setNbWarningMonths(int months);
    void setWarning(bool warning) { m_warning = warning; }
    void setAlert(bool alert) { m_alert = alert; }

public slots:
    void update();

signals:
    void dateTimeChanged();

private:
    QDateTime m_currentDate;
    QDate m_warningDate;
    QDate m_endDate;
    QTimer m_timerDate;
    int m_daysAfterAuthorization = 0;
    bool m_warning = false;
    bool m_alert = false;
};

#endif // HALVAR_DATE_H
