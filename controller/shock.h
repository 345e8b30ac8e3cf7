// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_SHOCK_H
#define HALVAR_SHOCK_H

#include <QDateTime>
#include <QObject>

#include "halvar-export.h"

/// One mechanical shock of the instrument.
class HALVAR_EXPORT Shock : public QObject
{
    Q_OBJECT
    /// When the shock was recorded; invalid when its entry in the history could not be understood.
    Q_PROPERTY(QDateTime dateTime READ dateTime CONSTANT)

public:
    explicit Shock(const QDateTime &dateTime, QObject *parent = nullptr);

    QDateTime dateTime() const { return m_dateTime; }
    void setDateTime(const QDateTime &dateTime) { m_dateTime = dateTime; }

private:
    QDateTime m_dateTime;
};

#endif // HALVAR_SHOCK_H
