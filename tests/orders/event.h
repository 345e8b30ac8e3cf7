// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_EVENT_H
#define ORDERS_EVENT_H

#include <iosfwd>
#include <string>
#include <vector>

namespace orders {

/// The unit configuration that a sequence begins with.
struct Setup
{
    int endOfMeasure = 0; ///< 0 "gachette", 1 "auto", 2 "defini", 3 "Defini"
    int lightOff = 0; ///< s
    int beforeShutter = 1000; ///< ms
    int measureTime = 2; ///< s
    int nbMeasures = 2;
    int maxCalibrations = 3;
    int beepTime = 0; ///< s
    int waitingForGo = 3; ///< s
    int password = 12345;
    bool traced = false; ///< every log line is composed
};

enum class Kind {
    // From the safety microcontroller
    MspEvent, ///< number, code
    MspInfo, ///< number: state, shock, shutter fault, text: versions
    MspSuccess, ///< flag
    // From the service
    Status, ///< number
    StatusWithConditions, ///< number, flag: ready, value: temperature, sigma: voltage
    StatusWithError, ///< number, code
    Result, ///< flag: has a decision, number: decision, value, sigma
    OtherMessage, ///< text: its kind
    CalibrationDate, ///< number: day of a month
    // What the service answers from now on
    AnswerMeasureId, ///< number
    AnswerDate, ///< number: day of a month
    AnswerStatus, ///< text: operation, number: status
    // Time
    BatteryVoltage, ///< number: in microvolts, -1: no gauge, -2: unreadable
    Wait, ///< number: ms
    WaitForTimer, ///< up to the next expiry, a minute at most
    // Setters and writable properties
    SetAccuracyStage,
    SetCurrentAccuracy,
    SetAcquisitionMode,
    SetBranchMode,
    SetMeasureMode,
    SetNbMeasures,
    SetMeasureTime,
    SetUdIndex,
    SetUdIndexEdition,
    SetUdLocal, ///< text
    SetLight, ///< flag
    SetFileName, ///< text
    SetLocalization, ///< text
    SetEnableMeasure, ///< flag
    SwitchLight, ///< flag
    SwitchOffLight,
    WriteTemperature,
    WriteVoltage,
    WriteCalibrationDate, ///< text
    WriteWaitingForGo, ///< flag
    WriteEffondrement, ///< flag
    WriteCoulures, ///< flag
    WriteHumidite, ///< flag
    WriteEditionMode, ///< flag
    WriteHome, ///< flag: the other one
    // Slots and invokable operations
    StartAccuracyCheck,
    StopAccuracyCheck,
    StartCalibration,
    StopCalibration,
    StopMeasure,
    StopMeasureProperly,
    RequestUpdate,
    ResetShock,
    AckError,
    EndHoldOff,
    SwitchWifi, ///< flag
    Shutdown,
    InitFile,
    SaveFile,
    LoadFile, ///< text: name of a diagnostic, saved or not
    RemoveFile, ///< text: the same
    RemoveMeasureFiles,
    // Companions
    PinDigit, ///< text
    PinClearDigit,
    PinClearDigits,
    PinCheck,
    PinEnable,
    PinDisable, ///< flag
    PinAccept, ///< flag
    PinSecret, ///< number
    SetCalibrationState, ///< number
    SetMaxCalibrations, ///< number
    ResetCalibrations,
    SetErrorMessage, ///< text
    ResetErrorMessage,
    SetShock, ///< flag
    SetReady, ///< flag
    AddUnit, ///< number: index to continue
    RemoveUnit, ///< number: row
    MoveUnit, ///< number, code: rows
    ClearUnits,
    SetStatut, ///< number: row, code: statut
    SetObservation, ///< number: row, text
    SetUnitLocal, ///< number: row, text
    UpdateStatut, ///< number: row, code: measures
    RemoveUnitMeasure, ///< number: row of the unit, code: row
    RemoveDirect, ///< number: row
    ClearDirect,
    DeleteUnit, ///< number: row; by somebody else, as are the next two
    DeleteUnitMeasure, ///< number: row of the unit, code: row
    DeleteDirect, ///< number: row
    NoteMeasure, ///< number: row in the direct list, code: localisation, degradation; text
    KindCount
};

/// One thing that happens. Each is possible in every state; rows that do not exist are part of the game.
struct Event
{
    Kind kind = Kind::Wait;
    int number = 0;
    int code = 0;
    bool flag = false;
    bool shock = false;
    bool shutter = false;
    bool held = false; ///< from a link: still on its way when the next event happens
    double value = 0;
    double sigma = 0;
    std::string text;
};

/// Whether events of this kind come through a link, and can be held.
inline bool isFromLink(Kind kind)
{
    return kind <= Kind::OtherMessage;
}

/// What a slot of the interface does, once, when it hears a signal.
struct Reaction
{
    std::string signal; ///< the effect without its values, see Watcher::onSignal
    int time = 1; ///< at which time that it comes
    Event event;
};

struct Sequence
{
    Setup setup;
    std::vector<Event> events;
    std::vector<Reaction> reactions; ///< with any of them there is no model to compare with
};

std::string toText(const Setup &setup);
std::string toText(const Event &event);
/// Numbered lines; RapidCheck prints a counterexample with it.
std::ostream &operator<<(std::ostream &out, const Sequence &sequence);

} // namespace orders

#endif // ORDERS_EVENT_H
