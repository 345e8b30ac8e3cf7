// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The link to the safety microcontroller: what it is asked for, and what its replies and events set in
// motion.
#include "halvarcontroller.h"

#include <QTimer>

#include <QsLog.h>

#include "buzzer.h"
#include "errortext.h"
#include "halvar-error.h"

void HalvarController::initMSP()
{
    // No parent: the client moves to the worker thread, whose end deletes it. It is reached by signals only.
    auto *client = new MSPClient(nullptr);
    client->moveToThread(&workerThread);
    connect(&workerThread, &QThread::finished, client, &QObject::deleteLater);
    connect(this, &HalvarController::msp_info_request, client, &MSPClient::info);
    connect(this, &HalvarController::msp_send_request, client, &MSPClient::send);
    connect(client, &MSPClient::msp_info, this, &HalvarController::msp_info_reply);
    connect(client, &MSPClient::msp_success, this, &HalvarController::msp_success);
    connect(client, &MSPClient::msp_event, this, &HalvarController::msp_event);
    workerThread.start(QThread::InheritPriority);
}

void HalvarController::sendMspCommand(MSPClient::MSPCommand command)
{
    emit msp_send_request(command, QString());
}

void HalvarController::switchLight(bool on)
{
    if (on) {
        QLOG_INFO() << "[Halvar Controller]: Asking the MSP to switch ON the light.";
        sendMspCommand(MSPClient::LIGHT_ON);
    } else {
        QLOG_INFO() << "[Halvar Controller]: Asking the MSP to switch OFF the light.";
        sendMspCommand(MSPClient::LIGHT_OFF);
    }
}

void HalvarController::resetShock()
{
    error->setShock(false);
    QLOG_INFO() << "[Halvar Controller]: Asking the MSP a Reset Shock.";
    sendMspCommand(MSPClient::RESET_SHOCK);
}

void HalvarController::modeHard()
{
    QLOG_INFO() << "[Halvar Controller]: Asking the MSP the HARD mode.";
    sendMspCommand(MSPClient::RUN_HARD);
}

void HalvarController::modeStandby()
{
    QLOG_INFO() << "[Halvar Controller]: Asking the MSP the STANDBY mode.";
    // Not RUN_SOFT, which is the software-driven measuring mode: standby is what aborting the hard mode
    // leaves.
    sendMspCommand(MSPClient::ABORT);
}

void HalvarController::ackError()
{
    QLOG_INFO() << "[Halvar Controller]: Ack MSP Error.";
    sendMspCommand(MSPClient::ACK_ERROR);
}

void HalvarController::measureDone()
{
    QLOG_INFO() << "[Halvar Controller]: Send MSP measure done.";
    sendMspCommand(MSPClient::MEAS_DONE);
}

void HalvarController::msp_success(bool ok)
{
    QLOG_TRACE() << "[Halvar Controller]: msp_success()";
    QLOG_DEBUG() << "[Halvar Controller]: * MSP Command: "
                 << (ok ? QStringLiteral("OK") : QStringLiteral("KO"));
}

void HalvarController::msp_info_reply(MSPInfo info)
{
    QLOG_TRACE() << "[Halvar Controller]: msp_info_reply()";
    MspFwVersion = info.fwVersion;
    MspVersion = info.MSPVersion;

    switch (info.state()) {
    case MSPInfo::STANDBY:
        QLOG_INFO() << "[Halvar Controller]: * MSP: " << QStringLiteral("Standby");
        break;
    case MSPInfo::READY_HARD:
        QLOG_INFO() << "[Halvar Controller]: * MSP: " << QStringLiteral("Hard");
        modeStandby();
        break;
    default:
        QLOG_INFO() << info;
        QLOG_FATAL() << "[Halvar Controller]: * MSP: " << QStringLiteral("KO");
        break;
    }

    error->setShock(info.shock());
    writeInfoFile(m_config);
    if (info.shutter()) {
        // A shutter that does not close is a danger: with no beep time the beeper stays on.
        m_buzzer->setBeep_time(0);
        error->setErrorMessage(
            halvar::errorText(QStringLiteral("Anomalie obturateur - "), halvar::MspSource, 2));
        m_buzzer->beep();
    }
}

void HalvarController::msp_event(MSPClient::MSPEvent event, short code)
{
    QLOG_DEBUG() << "[Halvar Controller]: msp_event()";
    switch (event) {
    case MSPClient::SHUT_OPENED:
        QLOG_INFO() << "[Halvar Controller]: MSP Shutter Open";
        setAcquisitionMode(AcquisitionModeEnumClass::START_MEASURE);
        m_timeBeforeOpenShutterTimer->start();
        m_nbNapMeasure = 0;
        break;
    case MSPClient::TRIG_OFF:
        triggerReleased();
        break;
    case MSPClient::SYS_ERR:
        systemError(code);
        break;
    case MSPClient::SHUT_CLOSED:
    case MSPClient::PROBE_OFF:
    case MSPClient::PROBE_ON:
        break;
    }
}

void HalvarController::triggerReleased()
{
    QLOG_INFO() << "[Halvar Controller]: MSP Trigger Off";
    QLOG_INFO() << "[Halvar Controller]: NapMeasure: " << m_nbNapMeasure;
    // A shot needs two results to be worth anything: released earlier, it is given two more seconds.
    if (m_nbNapMeasure < 2) {
        m_timeToStopMeasureTimer->start();
    } else if (m_acquisitionMode == AcquisitionModeEnumClass::MEASURE) {
        stopByMeasureMode();
        saveFile();
    } else {
        m_timeBeforeOpenShutterTimer->stop();
        QLOG_INFO() << "[Halvar Controller]: STOP before START";
    }
}

void HalvarController::systemError(short code)
{
    const auto show = [this, code](const QString &prefix) {
        error->setErrorMessage(halvar::errorText(prefix, halvar::MspSource, code));
    };
    switch (code) {
    case 0:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Choc détecté durant la veille";
        error->setShock(true);
        break;
    case 1:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Choc détecté en cours de fonctionnement";
        error->setShock(true);
        break;
    case 2:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Anomalie obturateur";
        show(QStringLiteral("Anomalie obturateur - "));
        break;
    case 3:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Problème de gestion du détecteur de choc";
        show(QStringLiteral("Anomalie capteur de chocs - "));
        break;
    case 4:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Problème de gestion du DAC";
        show(QStringLiteral("Anomalie DAC - "));
        break;
    case 5:
        QLOG_INFO() << "[Halvar Controller]: MSP error - Problème haute tension";
        show(QStringLiteral("Problème de Haute Tension - "));
        break;
    default:
        break;
    }
}
