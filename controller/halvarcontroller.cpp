// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The settings: properties as QML sees them, and the rules of their setters. Assembly, sequencing, the two
// links and the diagnostic file have sources of their own beside this one.
#include "halvarcontroller.h"

#include <QTimer>

#include <QsLog.h>

#include "labels.h"
#include "scaling.h"
#include "shellcommand.h"
#include "udlistmodel.h"

void HalvarController::setMeasureMode(MeasureModeEnumClass::MeasureMode mode)
{
    QLOG_TRACE() << "[Halvar Controller]: setMeasureMode()";
    if (m_acquisitionMode != AcquisitionModeEnumClass::NONE) {
        QLOG_ERROR() << "[Halvar Controller]: Cannot change Measure Mode during a measure.";
        return;
    }
    if (m_measureMode == mode)
        return;
    // The mode pages change the mode and follow it themselves: no signal, or they would answer each other.
    m_measureMode = mode;
    QLOG_INFO() << "[Halvar Controller]: Measure Mode changed to "
                << halvar::nameOf(MeasureModeEnumClass::MeasureModeNames, mode);
}

void HalvarController::setMeasureTime(int seconds)
{
    QLOG_TRACE() << "[Halvar Controller]: setMeasureTime()";
    if (m_acquisitionMode != AcquisitionModeEnumClass::NONE) {
        QLOG_ERROR() << "[Halvar Controller]: Cannot change Measure Time during a measure.";
        return;
    }
    if (m_measureTime == seconds)
        return;
    m_measureTime = seconds;
    emit measureTimeChanged();
    QLOG_INFO() << "[Halvar Controller]: Measure TimeMode changed to " << seconds;
    m_measureTimer->setInterval(halvar::scaledInterval(m_measureTime, 1000)); // a slot may have set it again
}

void HalvarController::setNbMeasures(int number)
{
    if (m_nbMeasures == number)
        return;
    m_nbMeasures = number;
    emit nbMeasuresChanged();
}

void HalvarController::setFileName(const QString &name)
{
    if (m_fileName == name)
        return;
    m_fileName = name;
    emit fileNameChanged();
}

void HalvarController::setLocalization(const QString &localization)
{
    if (m_localization == localization)
        return;
    m_localization = localization;
    emit localizationChanged();
}

void HalvarController::setAcquisitionMode(AcquisitionModeEnumClass::AcquisitionMode mode)
{
    if (m_acquisitionMode == mode)
        return;
    m_acquisitionMode = mode;
    emit acquisitionModeChanged();
}

void HalvarController::setBranchMode(BranchModeEnumClass::BranchMode mode)
{
    if (m_branchMode == mode)
        return;
    m_branchMode = mode;
    emit branchModeChanged();
}

void HalvarController::setCurrentAccuracy(Measure *accuracy)
{
    // Every stage has a result: there is always one to show and to fill.
    if (!accuracy || m_currentAccuracy == accuracy)
        return;
    m_currentAccuracy = accuracy;
    emit currentAccuracyChanged();
}

void HalvarController::setAccuracyStage(AccuracyStageEnumClass::AccuracyStage stage)
{
    QLOG_DEBUG() << "[Halvar Controller]: setAccuracyStage()";
    // Before the comparison: whoever asks for a stage sees its result, even when it is the current one.
    switch (stage) {
    case AccuracyStageEnumClass::ACCURACY_LIVE:
        setCurrentAccuracy(accuracyLive);
        break;
    case AccuracyStageEnumClass::ACCURACY_INIT:
        setCurrentAccuracy(accuracyInit);
        break;
    case AccuracyStageEnumClass::ACCURACY_INTERRUPT:
        setCurrentAccuracy(accuracyInterrupt);
        break;
    case AccuracyStageEnumClass::ACCURACY_FINAL:
        setCurrentAccuracy(accuracyFinal);
        break;
    case AccuracyStageEnumClass::NB_ACCURACYSTAGE:
        break;
    }
    if (m_accuracyStage == stage)
        return;
    m_accuracyStage = stage;
    emit accuracyStageChanged();
    QLOG_INFO() << "[Halvar Controller]: Setting ACCURACY"
                << halvar::nameOf(AccuracyStageEnumClass::AccuracyStageNames, stage);
}

void HalvarController::setUdIndex(int index)
{
    if (m_udIndex == index)
        return;
    QLOG_DEBUG() << "Index changed!!!";
    m_udIndex = index;
    emit udIndexChanged();
}

void HalvarController::setUdIndexEdition(int index)
{
    if (m_udIndexEdition == index)
        return;
    m_udIndexEdition = index;
    uds->updateCurrentIndex(index);
    QLOG_DEBUG() << "[Halvar Controller][CurrentIndex]: " << index;
    const UDStatutEnumClass::UDStatut statut = uds->currentStatut();
    emit udIndexEditionChanged();
    if (statut == UDStatutEnumClass::RAW)
        QLOG_DEBUG() << "[Halvar Controller][Measures]: Enabled!";
    else
        QLOG_DEBUG() << "[Halvar Controller][Measures]: Disabled."
                     << halvar::nameOf(UDStatutEnumClass::UDStatutNames, statut);
    setEnableMeasure(statut == UDStatutEnumClass::RAW);
}

void HalvarController::setUdLocal(const QString &local)
{
    if (m_udLocal == local)
        return;
    QLOG_DEBUG() << "[Halvar Controller][CurrentLocal]: " << local;
    m_udLocal = local;
    emit udLocalChanged();
}

void HalvarController::setEnableMeasure(bool enableMeasure)
{
    if (m_enableMeasure == enableMeasure)
        return;
    m_enableMeasure = enableMeasure;
    if (enableMeasure)
        modeHard();
    else
        modeStandby();
}

void HalvarController::setLight(bool on)
{
    if (m_light == on)
        return;
    m_light = on;
    emit lightChanged();
    switchLight(on);
    // 0 s, and what counts as that: the light stays on until somebody switches it off.
    if (m_lightTimer->interval() == 0)
        return;
    if (on)
        m_lightTimer->start();
    else
        m_lightTimer->stop();
}

void HalvarController::switchOffLight()
{
    setLight(false);
}

void HalvarController::switchWifi(bool wifi)
{
    if (wifi) {
        QLOG_INFO() << "[Halvar Controller]: Asking the system to switch ON the Wifi.";
        halvar::runShellCommand(QStringLiteral("napwifi start"));
    } else {
        QLOG_INFO() << "[Halvar Controller]: Asking the system to switch OFF the Wifi.";
        halvar::runShellCommand(QStringLiteral("napwifi stop"));
    }
}

void HalvarController::shutdown()
{
    halvar::runShellCommand(QStringLiteral("halt"));
}

QString HalvarController::getLibControllerVersion()
{
    return QStringLiteral("v" HALVAR_VERSION);
}

QString HalvarController::getMSPFwVersion()
{
    return MspFwVersion;
}

QString HalvarController::getMSPVersion()
{
    return MspVersion;
}

void HalvarController::waitingForGo()
{
    QLOG_INFO() << "[Halvar Controller]: Waiting for go done!";
    m_waitingForGo = false;
    emit waitingForGoUpdated();
}
