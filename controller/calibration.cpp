// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "calibration.h"

#include <QsLog.h>

#include <limits>

Calibration::Calibration(QObject *parent)
    : QObject(parent)
{ }

void Calibration::setCalibrationState(const CalibrationEnumClass::CalibrationStatut &requested)
{
    // A calibration that failed does not turn out well afterwards: the next one starts from nothing.
    if (m_calibrationState == CalibrationEnumClass::ERROR && requested == CalibrationEnumClass::DONE) {
        m_calibrationState = CalibrationEnumClass::NOT_STARTED;
        return;
    }
    if (m_calibrationState == requested)
        return;
    m_calibrationState = requested;
    switch (requested) {
    case CalibrationEnumClass::ERROR:
        QLOG_INFO() << "[Halvar Library][Calibration]: Calibration number " << m_nbCalibration << " failed!";
        if (m_nbCalibration >= m_nbMaxCalibration)
            m_calibrationState = CalibrationEnumClass::TOO_MANY_ERRORS;
        emit calibrationStateChanged(m_calibrationState);
        break;
    case CalibrationEnumClass::IN_PROGRESS:
        if (m_nbCalibration < std::numeric_limits<int>::max())
            ++m_nbCalibration;
        emit calibrationStateChanged(CalibrationEnumClass::IN_PROGRESS);
        break;
    case CalibrationEnumClass::DONE:
        m_nbCalibration = 0;
        emit calibrationStateChanged(CalibrationEnumClass::DONE);
        break;
    case CalibrationEnumClass::NOT_STARTED:
    case CalibrationEnumClass::TOO_MANY_ERRORS:
        QLOG_DEBUG() << "[Halvar Library][Calibration]: We should not go inside this case.";
        break;
    }
}
