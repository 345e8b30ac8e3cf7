// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "event.h"

#include <array>
#include <ostream>

#include "state.h"

namespace orders {

namespace {

template <std::size_t Size>
std::string named(const std::array<const char *, Size> &names, int value)
{
    return value >= 0 && value < int(Size) ? names[std::size_t(value)] : std::to_string(value);
}

std::string mspEvent(int event)
{
    return named<6>({"SYS_ERR", "SHUT_OPENED", "SHUT_CLOSED", "PROBE_OFF", "PROBE_ON", "TRIG_OFF"}, event);
}
std::string mspState(int state)
{
    return named<8>(
        {"0", "1", "STANDBY", "READY_HARD", "SHUTTER_OPEN_HARD", "ERROR", "READY_SOFT", "SHUTTER_OPEN_SOFT"},
        state);
}
std::string status(int status)
{
    return named<3>({"NOT_STARTED", "IN_PROGRESS", "ERROR"}, status);
}
std::string decision(int decision)
{
    return named<9>({"POSITIVE", "NEGATIVE", "NOT_DETERMINED", "INSUFFICIENT_ACQTIME", "COMPTON_ERROR",
                     "ACCURACY_OK", "ACCURACY_ERROR", "UNCALIBRATED", "NO_DECISION"},
                    decision);
}
std::string stage(int stage)
{
    return named<4>({"LIVE", "INIT", "INTERRUPT", "FINAL"}, stage);
}
std::string acquisition(int mode)
{
    return named<5>({"NONE", "START_MEASURE", "MEASURE", "ACCURACY", "CALIBRATION"}, mode);
}
std::string calibration(int state)
{
    return named<5>({"NOT_STARTED", "IN_PROGRESS", "ERROR", "TOO_MANY_ERRORS", "DONE"}, state);
}
std::string statut(int statut)
{
    return named<4>({"RAW", "POSITIVE", "NEGATIVE", "SKIPPED"}, statut);
}
std::string flag(bool value)
{
    return value ? "true" : "false";
}
std::string quoted(const std::string &text)
{
    return '"' + text + '"';
}

std::string call(const char *name, const std::string &first = {}, const std::string &second = {})
{
    return std::string(name) + '(' + first + (second.empty() ? "" : ", ") + second + ')';
}
std::string call(const char *name, int number)
{
    return call(name, std::to_string(number));
}

std::string linkEvent(const Event &e)
{
    switch (e.kind) {
    case Kind::MspEvent:
        return "MSP event " + mspEvent(e.number) + (e.number == 0 ? ' ' + std::to_string(e.code) : "");
    case Kind::MspInfo:
        return "MSP information " + mspState(e.number) + (e.shock ? ", shock" : "")
            + (e.shutter ? ", shutter fault" : "") + ", versions " + quoted(e.text);
    case Kind::MspSuccess:
        return "MSP command " + std::string(e.flag ? "OK" : "KO");
    case Kind::Status:
        return "service status " + status(e.number);
    case Kind::StatusWithConditions:
        return "service status " + status(e.number) + ", conditions " + (e.flag ? "ready" : "not ready")
            + ", temperature " + text(e.value) + ", voltage " + text(e.sigma);
    case Kind::StatusWithError:
        return "service status " + status(e.number) + ", error " + std::to_string(e.code);
    case Kind::Result:
        return e.flag ? "service result " + text(e.value) + " +- " + text(e.sigma) + ' ' + decision(e.number)
                      : "service result without a decision";
    case Kind::OtherMessage:
        return "service message of kind " + quoted(e.text);
    case Kind::AnswerMeasureId:
        return "the service's last measure is " + std::to_string(e.number);
    case Kind::AnswerDate:
        return "the service's calibration date is day " + std::to_string(e.number);
    case Kind::AnswerStatus:
        return "the service answers " + e.text + " with " + std::to_string(e.number);
    case Kind::BatteryVoltage:
        return "the battery's gauge gives "
            + (e.number == -1       ? "nothing"
                   : e.number == -2 ? "no number"
                                    : std::to_string(e.number));
    case Kind::Wait:
        return std::to_string(e.number) + " ms pass";
    default:
        return "time passes up to the next expiry of a timer";
    }
}

std::string setterEvent(const Event &e)
{
    switch (e.kind) {
    case Kind::SetAccuracyStage:
        return call("setAccuracyStage", stage(e.number));
    case Kind::SetCurrentAccuracy:
        return call("setCurrentAccuracy", stage(e.number));
    case Kind::SetAcquisitionMode:
        return call("setAcquisitionMode", acquisition(e.number));
    case Kind::SetBranchMode:
        return call("setBranchMode", named<3>({"NONE", "BRANCH_DIRECT", "BRANCH_INDEXED"}, e.number));
    case Kind::SetMeasureMode:
        return call("setMeasureMode", named<3>({"TRIGGER", "AUTO", "DEFINED"}, e.number));
    case Kind::SetNbMeasures:
        return call("setNbMeasures", e.number);
    case Kind::SetMeasureTime:
        return call("setMeasureTime", e.number);
    case Kind::SetUdIndex:
        return call("setUdIndex", e.number);
    case Kind::SetUdIndexEdition:
        return call("setUdIndexEdition", e.number);
    case Kind::SetUdLocal:
        return call("setUdLocal", quoted(e.text));
    case Kind::SetLight:
        return call("setLight", flag(e.flag));
    case Kind::SetFileName:
        return call("setFileName", quoted(e.text));
    case Kind::SetLocalization:
        return call("setLocalization", quoted(e.text));
    case Kind::SetEnableMeasure:
        return call("setEnableMeasure", flag(e.flag));
    case Kind::SwitchLight:
        return call("switchLight", flag(e.flag));
    case Kind::SwitchOffLight:
        return call("switchOffLight");
    case Kind::WriteTemperature:
        return "temperature = " + std::to_string(e.number);
    case Kind::WriteVoltage:
        return "voltage = " + std::to_string(e.number);
    case Kind::WriteCalibrationDate:
        return "lastCalibrationDate = " + quoted(e.text);
    case Kind::WriteWaitingForGo:
        return "waitingForGo = " + flag(e.flag);
    case Kind::WriteEffondrement:
        return "effondrement = " + flag(e.flag);
    case Kind::WriteCoulures:
        return "coulures = " + flag(e.flag);
    case Kind::WriteHumidite:
        return "humidite = " + flag(e.flag);
    case Kind::WriteEditionMode:
        return "editionMode = " + flag(e.flag);
    default:
        return e.flag ? "home = the other one" : "home = the first one";
    }
}

std::string slotEvent(const Event &e)
{
    switch (e.kind) {
    case Kind::CalibrationDate:
        return call("nap_CalibrationDate", "day " + std::to_string(e.number));
    case Kind::StartAccuracyCheck:
        return call("startAccuracyCheck");
    case Kind::StopAccuracyCheck:
        return call("stopAccuracyCheck");
    case Kind::StartCalibration:
        return call("startCalibration");
    case Kind::StopCalibration:
        return call("stopCalibration");
    case Kind::StopMeasure:
        return call("stopMeasure");
    case Kind::StopMeasureProperly:
        return call("stopMeasureProperly");
    case Kind::RequestUpdate:
        return call("requestUpdate");
    case Kind::ResetShock:
        return call("resetShock");
    case Kind::AckError:
        return call("ackError");
    case Kind::EndHoldOff:
        return call("waitingForGo");
    case Kind::SwitchWifi:
        return call("switchWifi", flag(e.flag));
    case Kind::Shutdown:
        return call("shutdown");
    case Kind::InitFile:
        return call("initFile");
    case Kind::SaveFile:
        return call("saveFile");
    case Kind::LoadFile:
        return call("loadFile", quoted(e.text));
    case Kind::RemoveFile:
        return call("removeFile", quoted(e.text));
    default:
        return call("removeMeasureFiles");
    }
}

std::string companionEvent(const Event &e)
{
    switch (e.kind) {
    case Kind::PinDigit:
        return call("pin.enterDigit", quoted(e.text));
    case Kind::PinClearDigit:
        return call("pin.clearDigit");
    case Kind::PinClearDigits:
        return call("pin.clearDigits");
    case Kind::PinCheck:
        return call("pin.checkSecret");
    case Kind::PinEnable:
        return call("pin.enable");
    case Kind::PinDisable:
        return call("pin.setDisabled", flag(e.flag));
    case Kind::PinAccept:
        return call("pin.setAccepted", flag(e.flag));
    case Kind::PinSecret:
        return call("pin.setSecret", e.number);
    case Kind::SetCalibrationState:
        return call("calibration.setCalibrationState", calibration(e.number));
    case Kind::SetMaxCalibrations:
        return call("calibration.setNbMaxCalibration", e.number);
    case Kind::ResetCalibrations:
        return call("calibration.resetNbCalibration");
    case Kind::SetErrorMessage:
        return call("error.setErrorMessage", quoted(e.text));
    case Kind::ResetErrorMessage:
        return call("error.resetErrorMessage");
    case Kind::SetShock:
        return call("error.setShock", flag(e.flag));
    case Kind::SetReady:
        return call("error.setReadyForAcquisition", flag(e.flag));
    case Kind::AddUnit:
        return call("uds.add", e.number);
    case Kind::RemoveUnit:
        return call("uds.remove", e.number);
    case Kind::MoveUnit:
        return call("uds.move", std::to_string(e.number), std::to_string(e.code));
    case Kind::ClearUnits:
        return call("uds.clear");
    case Kind::SetStatut:
        return "uds[" + std::to_string(e.number) + "].statut = " + statut(e.code);
    case Kind::SetObservation:
        return "uds[" + std::to_string(e.number) + "].observation = " + quoted(e.text);
    case Kind::SetUnitLocal:
        return "uds[" + std::to_string(e.number) + "].local = " + quoted(e.text);
    case Kind::UpdateStatut:
        return call(("uds[" + std::to_string(e.number) + "].updateStatut").c_str(), e.code);
    case Kind::RemoveUnitMeasure:
        return call(("uds[" + std::to_string(e.number) + "].measures.remove").c_str(), e.code);
    case Kind::RemoveDirect:
        return call("directMeasures.remove", e.number);
    case Kind::ClearDirect:
        return call("directMeasures.clear");
    case Kind::DeleteUnit:
        return "somebody deletes uds[" + std::to_string(e.number) + ']';
    case Kind::DeleteUnitMeasure:
        return "somebody deletes uds[" + std::to_string(e.number) + "].measures[" + std::to_string(e.code)
            + ']';
    case Kind::DeleteDirect:
        return "somebody deletes directMeasures[" + std::to_string(e.number) + ']';
    default:
        return "directMeasures[" + std::to_string(e.number) + "]: localisation and degradation "
            + std::to_string(e.code) + ", conservation " + quoted(e.text);
    }
}

} // namespace

std::string toText(const Setup &setup)
{
    return "Type_End_Measure " + named<4>({"gachette", "auto", "defini", "Defini"}, setup.endOfMeasure)
        + ", Time_Before_Open_Shutter " + std::to_string(setup.beforeShutter) + ", Time_Measure "
        + std::to_string(setup.measureTime) + ", Nbr_Measure " + std::to_string(setup.nbMeasures)
        + ", Nbr_Energy_Adj_Test " + std::to_string(setup.maxCalibrations) + ", Led_Light_Off "
        + std::to_string(setup.lightOff) + ", Beep_Time " + std::to_string(setup.beepTime)
        + ", Waiting_For_Go " + std::to_string(setup.waitingForGo) + ", Password "
        + std::to_string(setup.password) + (setup.traced ? ", log level Trace" : "");
}

std::string toText(const Event &event)
{
    if (event.kind == Kind::CalibrationDate)
        return slotEvent(event);
    if (event.kind <= Kind::WaitForTimer)
        return linkEvent(event) + (event.held ? ", on its way" : "");
    if (event.kind <= Kind::WriteHome)
        return setterEvent(event);
    if (event.kind <= Kind::RemoveMeasureFiles)
        return slotEvent(event);
    return companionEvent(event);
}

std::ostream &operator<<(std::ostream &out, const Sequence &sequence)
{
    out << "\n     0  configuration: " << toText(sequence.setup) << '\n';
    for (const Reaction &reaction : sequence.reactions)
        out << "        \"" << reaction.signal << "\" number " << reaction.time << " is answered with "
            << toText(reaction.event) << '\n';
    int number = 0;
    for (const Event &event : sequence.events) {
        const std::string line = std::to_string(++number);
        out << std::string(6 - std::min<std::size_t>(5, line.size()), ' ') << line << "  " << toText(event)
            << '\n';
    }
    return out;
}

} // namespace orders
