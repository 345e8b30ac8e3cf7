// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "mspinfo.h"

namespace {

const char *stateName(MSPInfo::MSPState state)
{
    switch (state) {
    case MSPInfo::STANDBY:
        return "STANDBY";
    case MSPInfo::READY_HARD:
        return "READY_HARD";
    case MSPInfo::SHUTTER_OPEN_HARD:
        return "SHUTTER_OPEN_HARD";
    case MSPInfo::ERROR:
        return "ERROR";
    case MSPInfo::READY_SOFT:
        return "READY_SOFT";
    case MSPInfo::SHUTTER_OPEN_SOFT:
        return "SHUTTER_OPEN_SOFT";
    }
    return nullptr;
}

} // namespace

QDebug operator<<(QDebug stream, MSPInfo const &info)
{
    const QDebugStateSaver saver(stream);
    stream.nospace() << "MSPInfo(fwVersion " << info.fwVersion << ", MSPVersion " << info.MSPVersion
                     << ", state ";
    if (const char *name = stateName(info.state()))
        stream << name;
    else
        stream << int(info.state());
    stream << ", shock " << info.shock() << ", shutter " << info.shutter() << ", shockDetector "
           << info.shockDetector() << ", DAC " << info.DAC() << ", highVoltage " << info.highVoltage()
           << ", shutterPosition " << info.shutterPosition() << ", abort " << info.abort() << ", probe "
           << info.probe() << ')';
    return stream;
}
