// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "model.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orders {

namespace {

constexpr std::int64_t LongestWait = 60000; // ms: the battery is looked at each second

std::string word(bool value)
{
    return value ? "true" : "false";
}

std::int64_t milliseconds(std::int64_t seconds)
{
    return std::clamp<std::int64_t>(seconds * 1000, 0, std::numeric_limits<int>::max());
}

} // namespace

std::string dateText(int day)
{
    if (day <= 0)
        return "01-01-1970";
    return (day < 10 ? "0" : "") + std::to_string(day) + "-03-2024";
}

Model::Model(const Setup &setup)
    : m_accuracies{MeasureModel("live"), MeasureModel("init"), MeasureModel("interrupt"),
                   MeasureModel("final")}
    , m_direct{"direct", {}}
    , m_lightOff(setup.lightOff)
    , m_beepTime(setup.beepTime * 1000000)
    , m_answerDate(dateText(0))
{
    m_state.measureMode = setup.endOfMeasure == 0 ? Trigger : setup.endOfMeasure == 2 ? Defined : Auto;
    m_state.nbMeasures = setup.nbMeasures;
    m_state.measureTime = setup.measureTime;
    m_state.calibrationDate = dateText(0);
    m_state.mspFirmware = "2.1";
    m_state.mspServer = "1.4";
    m_calibration.maximum = setup.maxCalibrations;
    m_pin.setSecret(setup.password);
    m_clock.setInterval(HoldOff, milliseconds(setup.waitingForGo));
    m_clock.setInterval(LightOff, milliseconds(setup.lightOff));
    m_clock.setInterval(BeforeShutter, setup.beforeShutter);
    m_clock.setInterval(ToStop, 2000);
    m_clock.setInterval(MeasureEnd, milliseconds(setup.measureTime));
    m_clock.setInterval(ClockModel::PinEnable, PinModel::EnableDelay);
    m_clock.setInterval(ClockModel::BatteryTick, 1000);
    m_clock.start(HoldOff);
    m_clock.start(ClockModel::BatteryTick);
}

State Model::state() const
{
    State ret = m_state;
    ret.currentAccuracy = m_accuracies[std::size_t(m_currentAccuracy)].shown.name;
    ret.calibration = m_calibration.status;
    ret.pinAccepted = m_pin.accepted;
    ret.pinDisabled = m_pin.disabled;
    ret.pinDigits = m_pin.told;
    for (std::size_t i = 0; i < ret.pinFilled.size(); ++i)
        ret.pinFilled[i] = i < m_pin.entered.size();
    for (int timer = 0; timer < TimerCount; ++timer)
        ret.timers[std::size_t(timer)] = m_clock.state(timer);
    for (std::size_t i = 0; i < m_accuracies.size(); ++i)
        ret.accuracies[i] = m_accuracies[i].shown;
    ret.direct = m_direct.shown();
    for (const UnitModel &unit : m_units)
        ret.units.push_back(unit.state());
    return ret;
}

Event Model::resolved(const Event &event) const
{
    if (event.kind != Kind::WaitForTimer)
        return event;
    Event ret;
    ret.kind = Kind::Wait;
    if (const std::optional<std::int64_t> next = m_clock.next())
        ret.number = int(std::min<std::int64_t>(*next - m_clock.now(), LongestWait));
    return ret;
}

Effects Model::apply(const Event &event)
{
    m_out.clear();
    if (isFromLink(event.kind)) {
        m_onTheirWay.push_back(event);
    } else {
        // Whoever calls comes before what is on its way; the event loop, in which time passes, after it.
        if (event.kind == Kind::Wait)
            deliver();
        handle(event);
    }
    if (!event.held)
        deliver();
    return m_out;
}

void Model::deliver()
{
    const std::vector<Event> arriving = std::exchange(m_onTheirWay, {});
    for (const Event &event : arriving)
        handle(event);
}

void Model::handle(const Event &event)
{
    if (event.kind <= Kind::WaitForTimer)
        applyLink(event);
    else if (event.kind <= Kind::WriteHome)
        applySetting(event);
    else if (event.kind < Kind::InitFile)
        applySlot(event);
    else if (event.kind <= Kind::RemoveMeasureFiles)
        applyFile(event);
    else if (event.kind < Kind::AddUnit)
        applyCompanion(event);
    else
        applyUnit(event);
}

void Model::setAcquisitionMode(int mode)
{
    set(m_state.acquisitionMode, mode, "acquisitionModeChanged " + std::to_string(mode));
}

void Model::setCurrentAccuracy(int index)
{
    set(m_currentAccuracy, index, "currentAccuracyChanged " + m_accuracies[std::size_t(index)].shown.name);
}

void Model::setAccuracyStage(int stage)
{
    // Also when the stage is the same.
    if (stage >= 0 && stage < 4)
        setCurrentAccuracy(stage);
    set(m_state.accuracyStage, stage, "accuracyStageChanged " + std::to_string(stage));
}

void Model::setEnableMeasure(bool enable)
{
    if (m_enableMeasure == enable)
        return;
    m_enableMeasure = enable;
    msp(enable ? "RUN_HARD" : "ABORT");
}

void Model::setUdIndexEdition(int index)
{
    if (m_state.udIndexEdition == index)
        return;
    m_state.udIndexEdition = index;
    tell("udIndexEditionChanged " + std::to_string(index));
    const UnitModel *const current = unit(index);
    setEnableMeasure(!current || current->shown.statut == Raw);
}

void Model::setMeasureTime(int seconds)
{
    if (m_state.acquisitionMode != None)
        return tell("log [Halvar Controller]: Cannot change Measure Time during a measure.");
    if (m_state.measureTime == seconds)
        return;
    m_state.measureTime = seconds;
    tell("measureTimeChanged " + std::to_string(seconds));
    m_clock.setInterval(MeasureEnd, milliseconds(seconds));
}

void Model::setLight(bool on)
{
    if (m_state.light == on)
        return;
    m_state.light = on;
    tell("lightChanged " + word(on));
    msp(on ? "LIGHT_ON" : "LIGHT_OFF");
    if (m_lightOff == 0)
        return;
    if (on)
        m_clock.start(LightOff);
    else
        m_clock.stop(LightOff);
}

void Model::setShock(bool shock)
{
    set(m_state.shock, shock, "shockSignal " + word(shock));
    if (!shock)
        return;
    m_state.anyShock = true;
    tell("file shock/shock.xml");
    tell("lastShockSignal");
}

void Model::setReady(bool ready)
{
    set(m_state.ready, ready, "readyForAcquisitionSignal " + word(ready));
}

void Model::setErrorMessage(const std::string &message)
{
    set(m_state.errorMessage, message, "errorMessageSignal " + message);
}

void Model::storeCalibrationDate(const std::string &date)
{
    set(m_state.calibrationDate, date, "sendLastCalibrationDate " + date);
}

void Model::readBattery()
{
    int level = 0;
    if (m_voltage == -1)
        tell("log [Halvar Controller][Battery]: Can't read Voltage.");
    else
        level = m_voltage <= 3300000 ? 3300000 // also what is no number
            : m_voltage <= 3500000   ? 3500000
            : m_voltage <= 3700000   ? 3700000
            : m_voltage <= 3900000   ? 3900000
                                     : 3900001;
    set(m_state.battery, level, "battery " + std::to_string(level));
}

void Model::requestUpdate()
{
    call("getLastCalibrationDate");
    if (!refused("getLastCalibrationDate"))
        storeCalibrationDate(m_answerDate);
    call("sendLastStatus");
}

void Model::applySetting(const Event &e)
{
    switch (e.kind) {
    case Kind::SetAccuracyStage:
        return setAccuracyStage(e.number);
    case Kind::SetCurrentAccuracy:
        return setCurrentAccuracy(e.number);
    case Kind::SetAcquisitionMode:
        return setAcquisitionMode(e.number);
    case Kind::SetBranchMode:
        return set(m_state.branchMode, e.number, "branchModeChanged " + std::to_string(e.number));
    case Kind::SetMeasureMode:
        // Untold, and refused while anything runs.
        if (m_state.acquisitionMode != None)
            return tell("log [Halvar Controller]: Cannot change Measure Mode during a measure.");
        m_state.measureMode = e.number;
        return;
    case Kind::SetNbMeasures:
        return set(m_state.nbMeasures, e.number, "nbMeasuresChanged " + std::to_string(e.number));
    case Kind::SetMeasureTime:
        return setMeasureTime(e.number);
    case Kind::SetUdIndex:
        return set(m_state.udIndex, e.number, "udIndexChanged " + std::to_string(e.number));
    case Kind::SetUdIndexEdition:
        return setUdIndexEdition(e.number);
    case Kind::SetUdLocal:
        return set(m_state.udLocal, e.text, "udLocalChanged " + e.text);
    case Kind::SetLight:
        return setLight(e.flag);
    case Kind::SetFileName:
        return set(m_state.fileName, e.text, "fileNameChanged " + e.text);
    case Kind::SetLocalization:
        return set(m_state.localization, e.text, "localizationChanged " + e.text);
    case Kind::SetEnableMeasure:
        return setEnableMeasure(e.flag);
    case Kind::SwitchLight:
        return msp(e.flag ? "LIGHT_ON" : "LIGHT_OFF");
    case Kind::SwitchOffLight:
        return setLight(false);
    case Kind::WriteTemperature: // the two signals are crossed
        return set(m_state.temperature, e.number, "sendTension " + std::to_string(e.number));
    case Kind::WriteVoltage:
        return set(m_state.voltage, e.number, "sendTemperature " + std::to_string(e.number));
    case Kind::WriteCalibrationDate:
        return storeCalibrationDate(e.text);
    case Kind::WriteWaitingForGo:
        return set(m_state.waitingForGo, e.flag, "waitingForGoUpdated " + word(e.flag));
    case Kind::WriteEffondrement:
        return set(m_state.effondrement, e.flag, "effondrementChanged " + word(e.flag));
    case Kind::WriteCoulures:
        return set(m_state.coulures, e.flag, "couluresChanged " + word(e.flag));
    case Kind::WriteHumidite:
        return set(m_state.humidite, e.flag, "humiditeChanged " + word(e.flag));
    case Kind::WriteEditionMode:
        m_state.editionMode = e.flag;
        return;
    default:
        m_state.otherHome = e.flag;
    }
}

void Model::applySlot(const Event &e)
{
    switch (e.kind) {
    case Kind::StartAccuracyCheck:
        return startAccuracy();
    case Kind::StopAccuracyCheck:
        return stopAccuracy();
    case Kind::StartCalibration:
        return startCalibration();
    case Kind::StopCalibration:
        return stopCalibration();
    case Kind::StopMeasure:
        return stopMeasure();
    case Kind::StopMeasureProperly:
        return stopMeasureProperly();
    case Kind::RequestUpdate:
        return requestUpdate();
    case Kind::ResetShock:
        setShock(false);
        return msp("RESET_SHOCK");
    case Kind::AckError:
        return msp("ACK_ERROR");
    case Kind::EndHoldOff:
        return expired(HoldOff);
    case Kind::SwitchWifi:
        return tell(e.flag ? "shell napwifi start" : "shell napwifi stop");
    default:
        return tell("shell halt");
    }
}

} // namespace orders
