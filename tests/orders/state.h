// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_STATE_H
#define ORDERS_STATE_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// What can be seen of a controller, as plain values: the model keeps one, and one is read from the library
/// after each step. They must be equal.
namespace orders {

/// What the world outside saw, one line each, in order: signals with the value that their property has at
/// that moment, calls to the service, commands to the MSP, beeps, files written, shell commands, and
/// the log lines that are the only sign of something.
using Effects = std::vector<std::string>;

struct MeasureState
{
    std::string name; ///< "live", "init", ... or "measure N" in the order of creation; "gone" when deleted
    double concentration = 0;
    double sigma = 0;
    int decision = 2; // NOT_DETERMINED
    int localisation = 5; // NOT_DETERMINED
    int degradation = 0; // NON_DEGRADE
    std::string conservation;
    int id = -1;
};

struct UnitState
{
    std::string name; ///< "unit N" in the order of creation; "gone" when deleted
    int statut = 0; // RAW
    int decision = 2; // NOT_DETERMINED
    char zone = 'A';
    std::string local;
    std::string observation;
    std::vector<MeasureState> measures; ///< oldest first
};

struct TimerState
{
    bool active = false;
    std::int64_t remaining = 0; ///< ms, 0 when not active
};

/// The controller's timers. The one that enables the PIN again is seen by what it does.
enum TimerName {
    HoldOff,
    LightOff,
    InfoPoll,
    BeforeShutter,
    ToStop,
    MeasureEnd,
    TimerCount
};

struct State
{
    int acquisitionMode = 0; // NONE
    int measureMode = 0;
    int branchMode = 0; // NONE
    int accuracyStage = 1; // ACCURACY_INIT
    std::string currentAccuracy = "init";
    int nbMeasures = 0;
    int measureTime = 0;
    int udIndex = -1;
    int udIndexEdition = -1;
    std::string udLocal;
    bool light = false;
    bool editionMode = false;
    std::string fileName;
    std::string localization;
    bool effondrement = false;
    bool coulures = false;
    bool humidite = false;
    int temperature = 0;
    int voltage = 0;
    std::string calibrationDate;
    bool waitingForGo = true;
    int ackErrorNb = 1;
    std::string mspFirmware;
    std::string mspServer;

    int battery = 0; // LEVEL_UNKNOW
    bool otherHome = false;
    int calibration = 0; // NOT_STARTED

    bool pinAccepted = false;
    bool pinDisabled = false;
    int pinDigits = 0;
    std::array<bool, 5> pinFilled{};

    bool shock = false;
    bool anyShock = false; ///< the history names a last one
    bool ready = false;
    std::string errorMessage;

    std::array<TimerState, TimerCount> timers;
    std::array<MeasureState, 4> accuracies; ///< live, init, interrupt, final
    std::vector<MeasureState> direct; ///< newest first
    std::vector<UnitState> units;
};

bool operator==(const State &a, const State &b);

/// The lines in which the two differ, for people.
std::string difference(const State &expected, const State &seen);
std::string difference(const Effects &expected, const Effects &seen);

/// One way to write a number, for the model and for what is seen.
std::string text(double value);

} // namespace orders

#endif // ORDERS_STATE_H
