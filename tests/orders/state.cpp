// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "state.h"

#include <algorithm>
#include <cstdio>
#include <tuple>

namespace orders {

namespace {

auto fields(const MeasureState &m)
{
    return std::tie(m.name, m.concentration, m.sigma, m.decision, m.localisation, m.degradation,
                    m.conservation, m.id);
}

auto fields(const TimerState &t)
{
    return std::tie(t.active, t.remaining);
}

template <typename Item>
std::enable_if_t<std::is_class_v<decltype(fields(std::declval<const Item &>()))>, bool>
operator==(const Item &a, const Item &b)
{
    return fields(a) == fields(b);
}

auto fields(const UnitState &u)
{
    return std::tie(u.name, u.statut, u.decision, u.zone, u.local, u.observation);
}

bool operator==(const UnitState &a, const UnitState &b)
{
    return fields(a) == fields(b)
        && std::equal(a.measures.begin(), a.measures.end(), b.measures.begin(), b.measures.end(),
                      [](const MeasureState &x, const MeasureState &y) { return x == y; });
}

template <typename List>
bool equal(const List &a, const List &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto &x, const auto &y) { return x == y; });
}

auto fields(const State &s)
{
    return std::tie(s.acquisitionMode, s.measureMode, s.branchMode, s.accuracyStage, s.currentAccuracy,
                    s.nbMeasures, s.measureTime, s.udIndex, s.udIndexEdition, s.udLocal, s.light,
                    s.editionMode, s.fileName, s.localization, s.effondrement, s.coulures, s.humidite,
                    s.temperature, s.voltage, s.calibrationDate, s.waitingForGo, s.ackErrorNb, s.mspFirmware,
                    s.mspServer, s.battery, s.otherHome, s.calibration, s.pinAccepted, s.pinDisabled,
                    s.pinDigits, s.pinFilled, s.shock, s.anyShock, s.ready, s.errorMessage);
}

constexpr std::array<const char *, 35> FieldNames{"acquisitionMode",
                                                  "measureMode",
                                                  "branchMode",
                                                  "accuracyStage",
                                                  "currentAccuracy",
                                                  "nbMeasures",
                                                  "measureTime",
                                                  "udIndex",
                                                  "udIndexEdition",
                                                  "udLocal",
                                                  "light",
                                                  "editionMode",
                                                  "fileName",
                                                  "localization",
                                                  "effondrement",
                                                  "coulures",
                                                  "humidite",
                                                  "temperature",
                                                  "voltage",
                                                  "lastCalibrationDate",
                                                  "waitingForGo",
                                                  "ackErrorNb",
                                                  "MSP firmware",
                                                  "MSP server",
                                                  "battery",
                                                  "other home",
                                                  "calibrationState",
                                                  "PIN accepted",
                                                  "PIN disabled",
                                                  "PIN nbDigits",
                                                  "PIN positions filled",
                                                  "shock",
                                                  "a last shock",
                                                  "readyForAcquisition",
                                                  "errorMessage"};

constexpr std::array<const char *, TimerCount> TimerNames{"hold-off",       "light",   "information",
                                                          "before shutter", "to stop", "measure"};

std::string shown(const std::string &value)
{
    return '"' + value + '"';
}
std::string shown(int value)
{
    return std::to_string(value);
}
std::string shown(const std::array<bool, 5> &value)
{
    std::string ret;
    for (const bool filled : value)
        ret += filled ? '*' : '.';
    return ret;
}

std::string line(const MeasureState &m)
{
    return m.name + ": " + text(m.concentration) + " +- " + text(m.sigma) + ", decision " + shown(m.decision)
        + ", localisation " + shown(m.localisation) + ", degradation " + shown(m.degradation)
        + ", conservation " + shown(m.conservation) + ", id " + shown(m.id);
}

std::string line(const UnitState &u)
{
    return u.name + ": statut " + shown(u.statut) + ", decision " + shown(u.decision) + ", zone " + u.zone
        + ", local " + shown(u.local) + ", observation " + shown(u.observation);
}

template <std::size_t... I>
void appendFields(std::vector<std::string> &lines, const State &s, std::index_sequence<I...>)
{
    const auto all = fields(s);
    static_assert(std::tuple_size_v<decltype(all)> == FieldNames.size());
    (lines.push_back(FieldNames[I] + (" " + shown(std::get<I>(all)))), ...);
}

std::vector<std::string> lines(const State &s)
{
    std::vector<std::string> ret;
    appendFields(ret, s, std::make_index_sequence<FieldNames.size()>());
    for (std::size_t i = 0; i < TimerCount; ++i)
        ret.push_back(std::string("timer ") + TimerNames[i] + ": "
                      + (s.timers[i].active ? std::to_string(s.timers[i].remaining) + " ms" : "stopped"));
    for (const MeasureState &measure : s.accuracies)
        ret.push_back("accuracy " + line(measure));
    for (const MeasureState &measure : s.direct)
        ret.push_back("direct " + line(measure));
    for (const UnitState &unit : s.units) {
        ret.push_back(line(unit));
        for (const MeasureState &measure : unit.measures)
            ret.push_back(unit.name + ", " + line(measure));
    }
    return ret;
}

/// Both lists without their common beginning and end.
std::string differentMiddle(std::vector<std::string> expected, std::vector<std::string> seen)
{
    const auto begin = std::mismatch(expected.begin(), expected.end(), seen.begin(), seen.end());
    expected.erase(expected.begin(), begin.first);
    seen.erase(seen.begin(), begin.second);
    while (!expected.empty() && !seen.empty() && expected.back() == seen.back()) {
        expected.pop_back();
        seen.pop_back();
    }
    std::string ret;
    for (const std::string &line : expected)
        ret += "    model:   " + line + '\n';
    for (const std::string &line : seen)
        ret += "    library: " + line + '\n';
    return ret;
}

} // namespace

std::string text(double value)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

bool operator==(const State &a, const State &b)
{
    return fields(a) == fields(b) && equal(a.timers, b.timers) && equal(a.accuracies, b.accuracies)
        && equal(a.direct, b.direct) && equal(a.units, b.units);
}

std::string difference(const State &expected, const State &seen)
{
    const std::vector<std::string> expectedLines = lines(expected);
    const std::vector<std::string> seenLines = lines(seen);
    if (expectedLines.size() != seenLines.size())
        return differentMiddle(expectedLines, seenLines);
    std::string ret;
    for (std::size_t i = 0; i < expectedLines.size(); ++i) {
        if (expectedLines[i] != seenLines[i])
            ret += "    model:   " + expectedLines[i] + "\n    library: " + seenLines[i] + '\n';
    }
    return ret;
}

std::string difference(const Effects &expected, const Effects &seen)
{
    return differentMiddle(expected, seen);
}

} // namespace orders
