// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "names.h"

#include <mspclient.h>
#include <nap/records.h>

#include "acquisition.h"

namespace nap = com::halvar::nap;

namespace simulator {

const char *Names::find(int value) const
{
    for (const Entry &entry : m_entries) {
        if (entry.value == value)
            return entry.name;
    }
    return nullptr;
}

QString Names::name(int value) const
{
    const char *found = find(value);
    return found ? QString::fromLatin1(found) : QString::number(value);
}

QJsonValue Names::json(int value) const
{
    const char *found = find(value);
    return found ? QJsonValue(QString::fromLatin1(found)) : QJsonValue(value);
}

std::optional<int> Names::value(const QString &name) const
{
    for (const Entry &entry : m_entries) {
        if (name == QLatin1String(entry.name))
            return entry.value;
    }
    return std::nullopt;
}

QString Names::list() const
{
    QStringList all;
    for (const Entry &entry : m_entries)
        all.append(QString::fromLatin1(entry.name));
    return all.join(QStringLiteral(", "));
}

namespace names {

const Names &mspCommand()
{
    static const Names names = {{"LIGHT_ON", MSPClient::LIGHT_ON},       {"LIGHT_OFF", MSPClient::LIGHT_OFF},
                                {"RESET_SHOCK", MSPClient::RESET_SHOCK}, {"RUN_HARD", MSPClient::RUN_HARD},
                                {"RUN_SOFT", MSPClient::RUN_SOFT},       {"SHUT_OPEN", MSPClient::SHUT_OPEN},
                                {"SHUT_CLOSE", MSPClient::SHUT_CLOSE},   {"ABORT", MSPClient::ABORT},
                                {"SET_DAC", MSPClient::SET_DAC},         {"ACK_ERROR", MSPClient::ACK_ERROR},
                                {"MEAS_DONE", MSPClient::MEAS_DONE}};
    return names;
}

const Names &mspEvent()
{
    static const Names names = {
        {"SYS_ERR", MSPClient::SYS_ERR},         {"SHUT_OPENED", MSPClient::SHUT_OPENED},
        {"SHUT_CLOSED", MSPClient::SHUT_CLOSED}, {"PROBE_OFF", MSPClient::PROBE_OFF},
        {"PROBE_ON", MSPClient::PROBE_ON},       {"TRIG_OFF", MSPClient::TRIG_OFF}};
    return names;
}

const Names &mspState()
{
    static const Names names = {{"STANDBY", MSPInfo::STANDBY},
                                {"READY_HARD", MSPInfo::READY_HARD},
                                {"SHUTTER_OPEN_HARD", MSPInfo::SHUTTER_OPEN_HARD},
                                {"ERROR", MSPInfo::ERROR},
                                {"READY_SOFT", MSPInfo::READY_SOFT},
                                {"SHUTTER_OPEN_SOFT", MSPInfo::SHUTTER_OPEN_SOFT}};
    return names;
}

const Names &acqStatus()
{
    static const Names names = {
        {"NOT_STARTED", nap::NOT_STARTED}, {"IN_PROGRESS", nap::IN_PROGRESS}, {"ERROR", nap::ERROR}};
    return names;
}

const Names &acqError()
{
    static const Names names = {{"UNKNOWN_ERROR", nap::UNKNOWN_ERROR},
                                {"INVALID_TEMPERATURE", nap::INVALID_TEMPERATURE},
                                {"INVALID_ACCELERATING_VOLTAGE", nap::INVALID_ACCELERATING_VOLTAGE},
                                {"DPP_ERROR", nap::DPP_ERROR},
                                {"DATA_MANAGER_ERROR", nap::DATA_MANAGER_ERROR},
                                {"TIMEOUT_ERROR", nap::TIMEOUT_ERROR}};
    return names;
}

const Names &decision()
{
    static const Names names = {{"POSITIVE", nap::POSITIVE},
                                {"NEGATIVE", nap::NEGATIVE},
                                {"UNDETERMINED", nap::UNDETERMINED},
                                {"INSUFFICIENT_ACQTIME", nap::INSUFFICIENT_ACQTIME},
                                {"COMPTON_ERROR", nap::COMPTON_ERROR},
                                {"ACCURACY_OK", nap::ACCURACY_OK},
                                {"ACCURACY_ERROR", nap::ACCURACY_ERROR},
                                {"UNCALIBRATED", nap::UNCALIBRATED}};
    return names;
}

const Names &calibrationOutcome()
{
    static const Names names = {{"success", 0}, {"error", 1}};
    return names;
}

const Names &accuracyOutcome()
{
    static const Names names = {{"measured", -1},
                                {"ok", nap::ACCURACY_OK},
                                {"error", nap::ACCURACY_ERROR},
                                {"uncalibrated", nap::UNCALIBRATED}};
    return names;
}

const Names &acquisition()
{
    static const Names names = {{"none", Acquisition::None},
                                {"measure", Acquisition::Measure},
                                {"accuracy", Acquisition::Accuracy},
                                {"calibration", Acquisition::Calibration}};
    return names;
}

} // namespace names
} // namespace simulator
