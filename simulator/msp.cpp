// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "msp.h"

#include <QsLog.h>

#include "names.h"

namespace simulator {

namespace {

// Codes of SYS_ERR.
constexpr short ShockIdle = 0;
constexpr short ShockWorking = 1;
constexpr short ShutterFault = 2;
constexpr short ShockDetectorFault = 3;
constexpr short DacFault = 4;
constexpr short HighVoltageFault = 5;

constexpr int LargestDac = 4095;

} // namespace

MspModel::MspModel()
{
    info.fwVersion = QStringLiteral("2.4.1");
    info.MSPVersion = QStringLiteral("1.3.0");
}

bool MspModel::shutterOpen() const
{
    return info.state() == MSPInfo::SHUTTER_OPEN_HARD || info.state() == MSPInfo::SHUTTER_OPEN_SOFT;
}

bool MspModel::execute(MSPClient::MSPCommand command, const QString &params, Events &events)
{
    return !refused.contains(command) && obey(command, params, events);
}

bool MspModel::obey(MSPClient::MSPCommand command, const QString &params, Events &events)
{
    const MSPInfo::MSPState state = info.state();
    const bool idle =
        state == MSPInfo::STANDBY || state == MSPInfo::READY_HARD || state == MSPInfo::READY_SOFT;
    switch (command) {
    case MSPClient::LIGHT_ON:
    case MSPClient::LIGHT_OFF:
        m_light = command == MSPClient::LIGHT_ON;
        return true;
    case MSPClient::RESET_SHOCK:
        info.setShock(false);
        return true;
    case MSPClient::RUN_HARD:
    case MSPClient::RUN_SOFT:
        if (!idle)
            return false;
        info.setState(command == MSPClient::RUN_HARD ? MSPInfo::READY_HARD : MSPInfo::READY_SOFT);
        return true;
    case MSPClient::SHUT_OPEN:
        if (state != MSPInfo::READY_SOFT)
            return false;
        openShutter(MSPInfo::SHUTTER_OPEN_SOFT, events);
        return true;
    case MSPClient::SHUT_CLOSE:
        if (state != MSPInfo::SHUTTER_OPEN_SOFT)
            return false;
        closeShutter(MSPInfo::READY_SOFT, events);
        return true;
    case MSPClient::ABORT:
        if (!idle && !shutterOpen())
            return false;
        closeShutter(MSPInfo::STANDBY, events);
        return true;
    case MSPClient::SET_DAC: {
        bool isNumber = false;
        const int value = params.toInt(&isNumber);
        return idle && isNumber && value >= 0 && value <= LargestDac;
    }
    case MSPClient::ACK_ERROR:
        if (state != MSPInfo::ERROR)
            return false;
        info.setShutter(false);
        info.setShockDetector(false);
        info.setDAC(false);
        info.setHighVoltage(false);
        info.setState(MSPInfo::STANDBY);
        return true;
    case MSPClient::MEAS_DONE:
        if (state != MSPInfo::SHUTTER_OPEN_HARD)
            return false;
        closeShutter(MSPInfo::READY_HARD, events);
        return true;
    case MSPClient::NB_COMMANDS:
        break;
    }
    return false;
}

bool MspModel::press(Events &events)
{
    if (m_pressed)
        return false;
    m_pressed = true;
    m_pressOpened = false;
    if (info.state() == MSPInfo::READY_HARD) {
        openShutter(MSPInfo::SHUTTER_OPEN_HARD, events);
        m_pressOpened = shutterOpen();
    }
    return true;
}

bool MspModel::release(Events &events)
{
    if (!m_pressed)
        return false;
    m_pressed = false;
    if (m_pressOpened)
        events.append({MSPClient::TRIG_OFF, 0});
    return true;
}

void MspModel::happen(MSPClient::MSPEvent event, short code, Events &events)
{
    if (event == MSPClient::SYS_ERR)
        breakDown(code, events);
    else
        events.append({event, code});
}

void MspModel::breakDown(short code, Events &events)
{
    switch (code) {
    case ShockIdle:
    case ShockWorking:
        info.setShock(true);
        events.append({MSPClient::SYS_ERR, code});
        return;
    case ShutterFault:
        info.setShutter(true);
        break;
    case ShockDetectorFault:
        info.setShockDetector(true);
        break;
    case DacFault:
        info.setDAC(true);
        break;
    case HighVoltageFault:
        info.setHighVoltage(true);
        break;
    default:
        events.append({MSPClient::SYS_ERR, code});
        return;
    }
    closeShutter(MSPInfo::ERROR, events);
    events.append({MSPClient::SYS_ERR, code});
}

void MspModel::openShutter(MSPInfo::MSPState opened, Events &events)
{
    if (shutterFailures > 0) {
        --shutterFailures;
        breakDown(ShutterFault, events);
        return;
    }
    info.setState(opened);
    info.setShutterPosition(true);
    events.append({MSPClient::SHUT_OPENED, 0});
}

void MspModel::closeShutter(MSPInfo::MSPState closed, Events &events)
{
    if (shutterOpen())
        events.append({MSPClient::SHUT_CLOSED, 0});
    info.setState(closed);
    info.setShutterPosition(false);
}

Msp::Msp(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &MSPServer::commandReceived, this,
            [this](MSPServer::Request request, MSPClient::MSPCommand command, const QString &params) {
                MspModel::Events events;
                const bool accepted = model.execute(command, params, events);
                const QString name = names::mspCommand().name(command);
                ++(accepted ? m_commands : m_refusals)[name];
                QLOG_DEBUG() << "msp:" << name << (accepted ? "obeyed" : "refused");
                m_server.replySuccess(request, accepted);
                emit executed(name, accepted);
                send(events);
            });
    connect(&m_server, &MSPServer::infoRequested, this, [this](MSPServer::Request request) {
        ++m_infoRequests;
        m_server.replyInfo(request, model.info);
        emit infoGiven();
    });
}

bool Msp::start()
{
    return m_server.isListening() || m_server.listen();
}

void Msp::die()
{
    m_server.close();
}

bool Msp::press()
{
    MspModel::Events events;
    const bool done = model.press(events);
    send(events);
    return done;
}

bool Msp::release()
{
    MspModel::Events events;
    const bool done = model.release(events);
    send(events);
    return done;
}

void Msp::happen(MSPClient::MSPEvent event, short code)
{
    MspModel::Events events;
    model.happen(event, code, events);
    send(events);
}

void Msp::send(const MspModel::Events &events)
{
    for (const MspModel::Event &event : events) {
        m_server.sendEvent(event.event, event.code);
        emit eventSent(event.event, event.code);
    }
}

} // namespace simulator
