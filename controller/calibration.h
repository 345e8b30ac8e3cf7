// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_CALIBRATION_H
#define HALVAR_CALIBRATION_H

#include <QObject>

#include "enums.h"
#include "halvar-export.h"

/// State of the energy calibration, and the number of attempts: a run of failures ends in TOO_MANY_ERRORS.
class HALVAR_EXPORT Calibration : public QObject
{
    Q_OBJECT

    Q_PROPERTY(CalibrationEnumClass::CalibrationStatut calibrationState READ calibrationState NOTIFY
                   calibrationStateChanged)

public:
    explicit Calibration(QObject *parent = nullptr);

    CalibrationEnumClass::CalibrationStatut calibrationState() const { return m_calibrationState; }
    /// Takes a state over and counts attempts. Returning to NOT_STARTED is silent: the interface goes on
    /// showing how the last calibration ended.
    void setCalibrationState(const CalibrationEnumClass::CalibrationStatut &requested);
    /// Number of attempts after which a failure is final.
    void setNbMaxCalibration(int number) { m_nbMaxCalibration = number; }
    void resetNbCalibration() { m_nbCalibration = 0; }

signals:
    void calibrationStateChanged(CalibrationEnumClass::CalibrationStatut calibrationState);

private:
    CalibrationEnumClass::CalibrationStatut m_calibrationState = CalibrationEnumClass::NOT_STARTED;
    int m_nbCalibration = 0;
    int m_nbMaxCalibration = 3;
};

#endif // HALVAR_CALIBRATION_H
