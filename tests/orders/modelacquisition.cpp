// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How acquisitions run: what the links and the timers set in motion.
#include "model.h"

namespace orders {

namespace {

enum MspEvent {
    SysErr,
    ShutOpened,
    ShutClosed,
    ProbeOff,
    ProbeOn,
    TrigOff
};
enum Status {
    NotStarted,
    InProgress,
    Error
};
enum MspState {
    Standby = 2,
    ReadyHard = 3
};

} // namespace

void Model::beep()
{
    tell("beeper on");
    if (m_beepTime == 0)
        return; // until the next beep
    tell("sleeps " + std::to_string(m_beepTime) + " us");
    tell("beeper off");
}

bool Model::refused(const std::string &operation) const
{
    const auto answer = m_answerStatus.find(operation);
    return answer != m_answerStatus.end() && answer->second < 0;
}

void Model::fetchMeasureSummary()
{
    call("getLastMeasure");
    if (!refused("getLastMeasure"))
        m_summaryId = m_answerId;
}

void Model::applyLink(const Event &e)
{
    switch (e.kind) {
    case Kind::MspEvent:
        return mspEvent(e.number, e.code);
    case Kind::MspInfo:
        return mspInfo(e);
    case Kind::Status:
        return status(e.number);
    case Kind::StatusWithConditions:
        status(e.number);
        return conditions(e.flag, int(e.value), int(e.sigma));
    case Kind::StatusWithError:
        status(e.number);
        return acquisitionError(e.code);
    case Kind::Result:
        return result({e.flag, e.number, e.value, e.sigma});
    case Kind::CalibrationDate:
        return storeCalibrationDate(dateText(e.number));
    case Kind::AnswerMeasureId:
        m_answerId = e.number;
        return;
    case Kind::AnswerDate:
        m_answerDate = dateText(e.number);
        return;
    case Kind::AnswerStatus:
        m_answerStatus[e.text] = e.number;
        return;
    case Kind::Wait:
        return wait(e.number);
    case Kind::BatteryVoltage:
        m_voltage = e.number;
        return;
    default: // a command's success, a message of another kind: nothing to see
        return;
    }
}

void Model::wait(int milliseconds)
{
    const std::int64_t end = m_clock.now() + milliseconds;
    for (int timer = m_clock.expire(end); timer >= 0; timer = m_clock.expire(end))
        expired(timer);
}

void Model::expired(int timer)
{
    switch (timer) {
    case HoldOff:
        m_state.waitingForGo = false;
        return tell("waitingForGoUpdated false");
    case LightOff:
        return setLight(false);
    case BeforeShutter:
        return startMeasure();
    case ToStop:
        return delayedStop();
    case MeasureEnd:
        return stopMeasureProperly();
    case ClockModel::PinEnable:
        return disablePin(false);
    case ClockModel::BatteryTick:
        m_clock.start(ClockModel::BatteryTick);
        return readBattery();
    default:
        return;
    }
}

void Model::mspEvent(int event, int code)
{
    switch (event) {
    case ShutOpened: // from any state
        setAcquisitionMode(StartMeasure);
        m_clock.start(BeforeShutter);
        m_results = 0;
        return;
    case TrigOff:
        return triggerReleased();
    case SysErr:
        return systemError(code);
    default:
        return;
    }
}

void Model::triggerReleased()
{
    if (m_results < 2) { // whatever the state is
        m_clock.start(ToStop);
    } else if (m_state.acquisitionMode == Measuring) {
        stopByMode();
        saveFile();
    } else {
        m_clock.stop(BeforeShutter);
    }
}

void Model::systemError(int code)
{
    switch (code) {
    case 0:
    case 1:
        return setShock(true);
    case 2:
        return setErrorMessage("Anomalie obturateur - Erreur S2");
    case 3:
        return setErrorMessage("Anomalie capteur de chocs - Erreur S3");
    case 4:
        return setErrorMessage("Anomalie DAC - Erreur S4");
    case 5:
        return setErrorMessage("Problème de Haute Tension - Erreur S5");
    default:
        return;
    }
}

void Model::mspInfo(const Event &e)
{
    m_state.mspFirmware = "fw " + e.text;
    m_state.mspServer = "server " + e.text;
    if (e.number == ReadyHard)
        msp("ABORT");
    else if (e.number != Standby)
        tell("log [Halvar Controller]: * MSP: \"KO\"");
    setShock(e.shock);
    tell("file lambrik/info.txt");
    if (e.shutter) {
        m_beepTime = 0;
        setErrorMessage("Anomalie obturateur - Erreur S2");
        beep();
    }
}

void Model::startMeasure()
{
    m_results = 0;
    setAcquisitionMode(Measuring);
    const std::string customData = " customData com::halvar::nap::MeasureCustomData";
    switch (m_state.measureMode) {
    case Auto:
        return call("startMeasure autoStop true" + customData);
    case Defined:
        m_clock.start(MeasureEnd);
        return call("startMeasure autoStop false" + customData);
    case Trigger:
        return call("startMeasure autoStop false" + customData);
    default:
        return;
    }
}

void Model::stopMeasure()
{
    if (m_state.acquisitionMode == Measuring)
        call("abort");
}

void Model::stopMeasureProperly()
{
    if (m_state.acquisitionMode == Measuring)
        call("requestStopMeasure");
}

void Model::stopByMode()
{
    if (m_state.measureMode == Trigger)
        stopMeasureProperly();
    else
        stopMeasure();
}

void Model::delayedStop()
{
    stopByMode();
    saveFile(); // also when there was nothing to stop
}

void Model::startAccuracy()
{
    setAcquisitionMode(Accuracy);
    currentAccuracy().reset(m_out);
    call("startAccuracyCheck");
}

void Model::stopAccuracy()
{
    if (m_state.acquisitionMode != Accuracy)
        return;
    call("abort");
    setAcquisitionMode(None);
}

void Model::startCalibration()
{
    setAcquisitionMode(Calibrating);
    call("startCalibration");
}

void Model::stopCalibration()
{
    if (m_state.acquisitionMode != Calibrating)
        return;
    call("abort");
    setAcquisitionMode(None);
}

void Model::status(int status)
{
    if (status < NotStarted || status > Error)
        return;
    switch (m_state.acquisitionMode) {
    case Accuracy:
        if (status == Error) {
            stopAccuracy();
        } else if (status == NotStarted) {
            beep();
            m_state.acquisitionMode = None; // untold
            fetchMeasureSummary();
            currentAccuracy().setId(m_summaryId, m_out);
        }
        return;
    case Calibrating:
        // The status is passed on as the calibration's state of the same number.
        m_calibration.request(status, m_out);
        if (status == Error) {
            stopCalibration();
        } else if (status == NotStarted) {
            beep();
            m_state.acquisitionMode = None; // untold
        }
        return;
    case Measuring:
        if (status == Error)
            stopMeasure();
        else if (status == NotStarted)
            endOfMeasure();
        return;
    default:
        return;
    }
}

void Model::endOfMeasure()
{
    beep();
    msp("MEAS_DONE");
    if (m_state.branchMode == Direct) {
        fetchMeasureSummary();
        if (MeasureModel *const newest = m_direct.newest(true)) {
            newest->setId(m_summaryId, m_out);
            if (m_state.measureMode == Trigger)
                newest->settle(m_out);
        }
    } else if (m_state.branchMode == Indexed) {
        endOfUnitMeasure();
    }
    setAcquisitionMode(None);
}

void Model::endOfUnitMeasure()
{
    UnitModel *const current = unit(m_state.udIndexEdition);
    if (!current) { // an absent unit is skipped
        fetchMeasureSummary();
        return;
    }
    const int before = current->shown.statut;
    if (before == StatutPositive || before == StatutNegative)
        current->updateStatut(m_state.nbMeasures + 1, m_out);
    else if (m_state.nbMeasures != 0)
        current->updateStatut(m_state.nbMeasures, m_out);
    const int statut = current->shown.statut;
    fetchMeasureSummary();
    // Settled only after the statut was derived.
    if (MeasureModel *const newest = current->measures.newest(false)) {
        newest->setId(m_summaryId, m_out);
        if (m_state.measureMode == Trigger)
            newest->settle(m_out);
    }
    setEnableMeasure(statut == Raw);
}

void Model::conditions(bool ready, int temperature, int voltage)
{
    setReady(ready);
    // Under their own names here, though the properties' signals are crossed.
    set(m_state.temperature, temperature, "sendTemperature " + std::to_string(temperature));
    set(m_state.voltage, voltage, "sendTension " + std::to_string(voltage));
}

void Model::acquisitionError(int error)
{
    switch (error) {
    case 0:
        return setErrorMessage("Erreur C0");
    case 1:
    case 2:
        return setReady(false);
    case 3:
        return setErrorMessage("DPP - Erreur C3");
    case 4:
        return setErrorMessage("Gestion des données - Erreur C4");
    case 5:
        return setErrorMessage("Erreur C5");
    default:
        return;
    }
}

void Model::result(const Shot &shot)
{
    if (m_state.acquisitionMode == Accuracy)
        return currentAccuracy().take(shot, m_out);
    if (m_state.acquisitionMode != Measuring)
        return;
    if (m_state.branchMode == Direct) {
        m_direct.take(shot, true, m_lastMeasure, m_out);
        ++m_results;
    } else if (m_state.branchMode == Indexed) {
        if (UnitModel *const current = unit(m_state.udIndexEdition)) {
            current->measures.take(shot, false, m_lastMeasure, m_out);
            ++m_results;
        }
    }
}

} // namespace orders
