// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How a measure, an accuracy check and a calibration run: what starts each, what moves it on, where its
// results go. The service's status notifications end an acquisition; a stop only asks for that.
#include "halvarcontroller.h"

#include <QTimer>

#include <QsLog.h>

#include "buzzer.h"
#include "calibration.h"
#include "errortext.h"
#include "halvar-error.h"
#include "labels.h"
#include "measurelistmodel.h"
#include "scaling.h"
#include "ud.h"
#include "udlistmodel.h"

namespace nap = com::halvar::nap;

void HalvarController::startMeasure()
{
    QLOG_INFO() << "[Halvar Controller]: Starting MEASURE";
    m_nbNapMeasure = 0;
    setAcquisitionMode(AcquisitionModeEnumClass::MEASURE);
    switch (m_measureMode) {
    case MeasureModeEnumClass::AUTO:
        callStartMeasure(true);
        break;
    case MeasureModeEnumClass::DEFINED:
        m_measureTimer->start();
        callStartMeasure(false);
        break;
    case MeasureModeEnumClass::TRIGGER:
        callStartMeasure(false);
        break;
    case MeasureModeEnumClass::NB_MEASUREMODE:
        break;
    }
}

void HalvarController::stopMeasure()
{
    if (m_acquisitionMode != AcquisitionModeEnumClass::MEASURE)
        return;
    abortAcquisition();
    // The wording is known to those who read the logs; the last measure stays in its list.
    QLOG_INFO() << "[TODO][Halvar Controller]: Remove last measure!";
}

void HalvarController::stopMeasureProperly()
{
    if (m_acquisitionMode != AcquisitionModeEnumClass::MEASURE)
        return;
    if (m_napServer)
        m_napServer.requestStopMeasure();
}

void HalvarController::stopByMeasureMode()
{
    // A shot that lasts while the trigger is held ends with its result when it is released; any other measure
    // whose trigger is let go is given up.
    if (m_measureMode == MeasureModeEnumClass::TRIGGER)
        stopMeasureProperly();
    else
        stopMeasure();
}

void HalvarController::delayedStopMeasure()
{
    QLOG_INFO() << "[Halvar Controller]: delayedStopMeasure...";
    stopByMeasureMode();
    saveFile();
}

void HalvarController::startAccuracyCheck()
{
    setAcquisitionMode(AcquisitionModeEnumClass::ACCURACY);
    if (!m_napServer)
        return;
    QLOG_INFO() << "[Halvar Controller]: Starting ACCURACY"
                << halvar::nameOf(AccuracyStageEnumClass::AccuracyStageNames, m_accuracyStage);
    m_currentAccuracy->reset();
    m_napServer.startAccuracyCheck();
}

void HalvarController::stopAccuracyCheck()
{
    if (m_acquisitionMode != AcquisitionModeEnumClass::ACCURACY)
        return;
    QLOG_INFO() << "[Halvar Controller]: Stopping ACCURACY"
                << halvar::nameOf(AccuracyStageEnumClass::AccuracyStageNames, m_accuracyStage);
    abortAcquisition();
    setAcquisitionMode(AcquisitionModeEnumClass::NONE);
}

void HalvarController::startCalibration()
{
    setAcquisitionMode(AcquisitionModeEnumClass::CALIBRATION);
    if (!m_napServer)
        return;
    QLOG_INFO() << "[Halvar Controller]: Starting CALIBRATION";
    m_napServer.startCalibration();
}

void HalvarController::stopCalibration()
{
    if (m_acquisitionMode != AcquisitionModeEnumClass::CALIBRATION)
        return;
    abortAcquisition();
    setAcquisitionMode(AcquisitionModeEnumClass::NONE);
}

void HalvarController::callStartMeasure(bool autoStop)
{
    if (m_napServer)
        m_napServer.startMeasure(m_customData, autoStop);
}

void HalvarController::abortAcquisition()
{
    if (m_napServer)
        m_napServer.abort();
}

void HalvarController::fetchMeasureSummary()
{
    // A failed call leaves the summary of the measure before.
    if (m_napServer)
        m_napServer.getLastMeasure(m_measureSummary);
}

UD *HalvarController::unitInEdition() const
{
    return m_udIndexEdition >= 0 && m_udIndexEdition < uds->size() ? uds->at(m_udIndexEdition) : nullptr;
}

void HalvarController::nap_DetectionResult(const nap::DetectionResult &result)
{
    QLOG_TRACE() << "[Halvar Controller]: nap_DetectionResult()";
    if (m_acquisitionMode == AcquisitionModeEnumClass::ACCURACY) {
        m_currentAccuracy->setDetectionResult(result);
        return;
    }
    if (m_acquisitionMode != AcquisitionModeEnumClass::MEASURE)
        return;
    if (m_branchMode == BranchModeEnumClass::BRANCH_DIRECT) {
        directMeasures->lastFrontMeasure(result);
        ++m_nbNapMeasure;
    } else if (m_branchMode == BranchModeEnumClass::BRANCH_INDEXED && m_udIndexEdition != -1) {
        UD *const unit = unitInEdition();
        if (!unit) {
            QLOG_WARN() << "[Halvar Controller]: Detection result dropped: no unit at index"
                        << m_udIndexEdition;
            return;
        }
        unit->measures()->lastBackMeasure(result);
        ++m_nbNapMeasure;
    }
}

void HalvarController::nap_AcqStatus(const nap::AcqStatus &status)
{
    QLOG_TRACE() << "[Halvar Controller]: nap_AcqStatus()";
    switch (m_acquisitionMode) {
    case AcquisitionModeEnumClass::ACCURACY:
        accuracyStatus(status);
        break;
    case AcquisitionModeEnumClass::CALIBRATION:
        calibrationStatus(status);
        break;
    case AcquisitionModeEnumClass::MEASURE:
        measureStatus(status);
        break;
    default:
        QLOG_DEBUG() << "[Halvar Controller]: AcquisitionMode::None";
        break;
    }
}

void HalvarController::accuracyStatus(nap::AcqStatus status)
{
    QLOG_INFO() << "[Halvar Controller]: AccuracyCheck...";
    switch (status) {
    case nap::IN_PROGRESS:
        QLOG_INFO() << "[Halvar Controller][Accuracy]: STARTED";
        break;
    case nap::ERROR:
        stopAccuracyCheck();
        QLOG_INFO() << "[Halvar Controller][Accuracy]: ERROR";
        break;
    case nap::NOT_STARTED:
        m_buzzer->beep();
        // Without the signal: the check's page stays open on its result until the operator leaves it.
        m_acquisitionMode = AcquisitionModeEnumClass::NONE;
        fetchMeasureSummary();
        m_currentAccuracy->setIdNAP(m_measureSummary.get_id());
        QLOG_INFO() << "[Halvar Controller][Accuracy]: FINISHED";
        break;
    }
}

void HalvarController::calibrationStatus(nap::AcqStatus status)
{
    QLOG_INFO() << "[Halvar Controller]: Calibration...";
    switch (status) {
    case nap::IN_PROGRESS:
        calibration->setCalibrationState(CalibrationEnumClass::IN_PROGRESS);
        QLOG_INFO() << "[Halvar Controller][Calibration]: STARTED";
        break;
    case nap::ERROR:
        calibration->setCalibrationState(CalibrationEnumClass::ERROR);
        stopCalibration();
        QLOG_INFO() << "[Halvar Controller][Calibration]: ERROR";
        break;
    case nap::NOT_STARTED:
        calibration->setCalibrationState(CalibrationEnumClass::NOT_STARTED);
        m_buzzer->beep();
        // Without the signal, as at the end of an accuracy check.
        m_acquisitionMode = AcquisitionModeEnumClass::NONE;
        QLOG_INFO() << "[Halvar Controller][Calibration]: FINISHED";
        break;
    }
}

void HalvarController::measureStatus(nap::AcqStatus status)
{
    QLOG_INFO() << "[Halvar Controller]: Measure...";
    switch (status) {
    case nap::IN_PROGRESS:
        QLOG_INFO() << "[Halvar Controller]: STARTED";
        break;
    case nap::ERROR:
        stopMeasure();
        QLOG_INFO() << "[Halvar Controller]: ERROR";
        break;
    case nap::NOT_STARTED:
        // The same word as at the start: the log tools pair STARTED with FINISHED below.
        QLOG_INFO() << "[Halvar Controller]: STARTED";
        m_buzzer->beep();
        measureDone();
        if (m_branchMode == BranchModeEnumClass::BRANCH_DIRECT)
            endDirectMeasure();
        else if (m_branchMode == BranchModeEnumClass::BRANCH_INDEXED)
            endIndexedMeasure();
        setAcquisitionMode(AcquisitionModeEnumClass::NONE);
        QLOG_INFO() << "[Halvar Controller]: FINISHED";
        break;
    }
}

void HalvarController::endDirectMeasure()
{
    fetchMeasureSummary();
    Measure *const measure = directMeasures->first();
    if (!measure) {
        QLOG_WARN() << "[Halvar Controller]: Measure ended without a direct measure.";
        return;
    }
    measure->setIdNAP(m_measureSummary.get_id());
    if (m_measureMode == MeasureModeEnumClass::TRIGGER)
        directMeasures->finalizeFirstMeasure();
}

void HalvarController::endIndexedMeasure()
{
    UD *const unit = unitInEdition();
    if (!unit) {
        QLOG_WARN() << "[Halvar Controller]: Measure ended without a unit at index" << m_udIndexEdition;
        fetchMeasureSummary();
        return;
    }
    deriveStatut(unit);
    const UDStatutEnumClass::UDStatut statut = unit->statut();
    QLOG_DEBUG() << "[Halvar Controller][Statut]:" << halvar::nameOf(UDStatutEnumClass::UDStatutNames, statut)
                 << ".";
    fetchMeasureSummary();
    Measure *const measure = unit->measures()->last();
    if (!measure) {
        QLOG_WARN() << "[Halvar Controller]: Measure ended without a measure in the unit at index"
                    << m_udIndexEdition;
    } else {
        measure->setIdNAP(m_measureSummary.get_id());
        // Only now: the statut counts the decisions as the operator saw them, the last one included.
        if (m_measureMode == MeasureModeEnumClass::TRIGGER)
            unit->measures()->finalizeLastMeasure();
    }
    setEnableMeasure(statut == UDStatutEnumClass::RAW);
}

void HalvarController::deriveStatut(UD *unit)
{
    QLOG_DEBUG() << "[Halvar Controller][Statut]: Setting statut for index " << m_udIndexEdition << ".";
    const UDStatutEnumClass::UDStatut statut = unit->statut();
    const char *const name = halvar::nameOf(UDStatutEnumClass::UDStatutNames, statut);
    QLOG_DEBUG() << "[Halvar Controller][Statut]: The actual statut is" << name << ".";
    if (statut == UDStatutEnumClass::POSITIVE || statut == UDStatutEnumClass::NEGATIVE) {
        QLOG_DEBUG() << "[Halvar Controller][Statut]: The statut was already set to" << name << ".";
        // One more negative than usual is needed to turn a unit that already has its result.
        unit->updateStatut(m_nbMeasures == std::numeric_limits<int>::max() ? m_nbMeasures : m_nbMeasures + 1);
    } else if (m_nbMeasures != 0) {
        unit->updateStatut(m_nbMeasures);
    }
}

void HalvarController::nap_AcqError(const nap::AcqError &acqError)
{
    QLOG_TRACE() << "[Halvar Controller]: nap_AcqError()";
    if (m_acquisitionMode == AcquisitionModeEnumClass::ACCURACY) {
        QLOG_INFO() << "[Halvar Controller]: ACQ ERROR received during AccuracyCheck";
    } else if (m_acquisitionMode == AcquisitionModeEnumClass::CALIBRATION) {
        QLOG_INFO() << "[Halvar Controller]: ACQ ERROR received during Calibration";
    } else if (m_acquisitionMode == AcquisitionModeEnumClass::MEASURE) {
        QLOG_INFO() << "[Halvar Controller]: ACQ ERROR received during Measure";
    }

    const auto show = [this, acqError](const QString &prefix) {
        error->setErrorMessage(halvar::errorText(prefix, halvar::ServiceSource, acqError));
    };
    switch (acqError) {
    case nap::UNKNOWN_ERROR:
        QLOG_INFO() << "[Halvar Controller]: NAP error - UNKNOWN_ERROR";
        show(QString());
        break;
    case nap::INVALID_TEMPERATURE:
        QLOG_INFO() << "[Halvar Controller]: NAP error - INVALID_TEMPERATURE";
        error->setReadyForAcquisition(false);
        break;
    case nap::INVALID_ACCELERATING_VOLTAGE:
        QLOG_INFO() << "[Halvar Controller]: NAP error - INVALID_ACCELERATING_VOLTAGE";
        error->setReadyForAcquisition(false);
        break;
    case nap::DPP_ERROR:
        QLOG_INFO() << "[Halvar Controller]: NAP error - DPP_ERROR";
        show(QStringLiteral("DPP - "));
        break;
    case nap::DATA_MANAGER_ERROR:
        QLOG_INFO() << "[Halvar Controller]: NAP error - DATA_MANAGER_ERROR";
        show(QStringLiteral("Gestion des données - "));
        break;
    case nap::TIMEOUT_ERROR:
        QLOG_INFO() << "[Halvar Controller]: NAP error - TIMEOUT_ERROR";
        show(QString());
        break;
    }
}

void HalvarController::nap_AcqConditions(const nap::AcqConditions &conditions)
{
    QLOG_DEBUG() << "[Halvar Controller]: nap_AcqConditions()";
    error->setReadyForAcquisition(conditions.get_readyForAcquisition());

    const int newTemperature = halvar::truncatedToInt(conditions.get_temperature());
    QLOG_DEBUG() << "[Halvar Controller]: " << newTemperature;
    if (temperature != newTemperature) {
        temperature = newTemperature;
        emit sendTemperature(temperature);
    }
    const int newVoltage = halvar::truncatedToInt(conditions.get_acceleratingVoltage());
    QLOG_DEBUG() << "[Halvar Controller]: " << newVoltage;
    if (voltage != newVoltage) {
        voltage = newVoltage;
        emit sendTension(voltage);
    }
}
