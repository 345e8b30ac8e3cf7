// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What an interface calls when it hears a signal.
#include "generator.h"

namespace orders {

namespace {

struct Topic
{
    const char *signal;
    Kind own; ///< what is nearest to it: a page that sets again what it hears was set
};

// These come in the middle of a rule, with more to be done after them.
constexpr std::array<Topic, 13> InRules{{{"acquisitionModeChanged", Kind::SetAcquisitionMode},
                                         {"measure concentration", Kind::ClearDirect},
                                         {"measure decision", Kind::RemoveUnitMeasure},
                                         {"measure id", Kind::ClearDirect},
                                         {"direct:", Kind::ClearDirect},
                                         {"unit decision", Kind::ClearUnits},
                                         {"unit statut", Kind::SetStatut},
                                         {"unit rows", Kind::RemoveUnitMeasure},
                                         {"units:", Kind::ClearUnits},
                                         {"init", Kind::SetCurrentAccuracy},
                                         {"MSP", Kind::SetBranchMode},
                                         {"udIndexEditionChanged", Kind::SetUdIndexEdition},
                                         {"calibrationStateChanged", Kind::SetCalibrationState}}};

constexpr std::array<Topic, 23> Others{{{"currentAccuracyChanged", Kind::SetCurrentAccuracy},
                                        {"accuracyStageChanged", Kind::SetAccuracyStage},
                                        {"udIndexChanged", Kind::SetUdIndex},
                                        {"udLocalChanged", Kind::SetUdLocal},
                                        {"lightChanged", Kind::SetLight},
                                        {"fileNameChanged", Kind::SetFileName},
                                        {"localizationChanged", Kind::SetLocalization},
                                        {"measureTimeChanged", Kind::SetMeasureTime},
                                        {"nbMeasuresChanged", Kind::SetNbMeasures},
                                        {"branchModeChanged", Kind::SetBranchMode},
                                        {"sendTemperature", Kind::WriteTemperature},
                                        {"sendTension", Kind::WriteVoltage},
                                        {"sendLastCalibrationDate", Kind::WriteCalibrationDate},
                                        {"waitingForGoUpdated", Kind::WriteWaitingForGo},
                                        {"couluresChanged", Kind::WriteCoulures},
                                        {"pin accepted", Kind::PinClearDigits},
                                        {"pin nbDigits", Kind::PinDigit},
                                        {"pin disabled", Kind::PinDisable},
                                        {"shockSignal", Kind::SetShock},
                                        {"lastShockSignal", Kind::ResetShock},
                                        {"readyForAcquisitionSignal", Kind::SetReady},
                                        {"errorMessageSignal", Kind::SetErrorMessage},
                                        {"battery", Kind::SaveFile}}};

} // namespace

std::vector<Reaction> Generator::reactions()
{
    std::vector<Reaction> ret;
    for (int count = 20; count > 0; --count) {
        const Topic &topic = chance(60) ? InRules[std::size_t(below(int(InRules.size())))]
                                        : Others[std::size_t(below(int(Others.size())))];
        const int time = chance(60) ? 1 : 1 + below(12);
        ret.push_back({topic.signal, time, chance(30) ? make(topic.own) : answer()});
    }
    return ret;
}

Event Generator::answer()
{
    if (chance(60))
        return make(oneOf({Kind::ClearDirect, Kind::RemoveDirect, Kind::ClearUnits, Kind::RemoveUnit,
                           Kind::RemoveUnitMeasure, Kind::InitFile, Kind::LoadFile, Kind::AddUnit,
                           Kind::SetUdIndexEdition, Kind::SetAcquisitionMode, Kind::SetBranchMode,
                           Kind::SetMeasureTime, Kind::StartAccuracyCheck, Kind::StopMeasure}));
    // Who deletes the sender of a signal that he answers has himself to blame, and the shell is slow.
    Event ret = anything();
    while (ret.kind <= Kind::WaitForTimer || ret.kind == Kind::SwitchWifi || ret.kind == Kind::Shutdown
           || (ret.kind >= Kind::DeleteUnit && ret.kind <= Kind::DeleteDirect))
        ret = anything();
    return ret;
}

} // namespace orders
