// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MSPINFO_H
#define MSPINFO_H

#include <QDebug>
#include <QMetaType>
#include <QString>

#include "mspexport.h"

/// What the safety microcontroller answers to an information request: its versions, its fault flags
/// and its state. A plain value; a flag that is set names what is wrong (or what was seen).
class MSPInfo
{
public:
    /// An unknown state is carried with the number that the microcontroller gave.
    enum MSPState : int {
        STANDBY = 2,
        READY_HARD = 3,
        SHUTTER_OPEN_HARD = 4,
        ERROR = 5,
        READY_SOFT = 6,
        SHUTTER_OPEN_SOFT = 7
    };

    QString fwVersion; ///< firmware of the microcontroller
    QString MSPVersion; ///< server that speaks for it

    bool shock() const { return m_shock; }
    void setShock(bool shock) { m_shock = shock; }
    /// The shutter is faulty.
    bool shutter() const { return m_shutter; }
    void setShutter(bool shutter) { m_shutter = shutter; }
    bool shockDetector() const { return m_shockDetector; }
    void setShockDetector(bool shockDetector) { m_shockDetector = shockDetector; }
    bool DAC() const { return m_DAC; }
    void setDAC(bool dac) { m_DAC = dac; }
    bool highVoltage() const { return m_highVoltage; }
    void setHighVoltage(bool highVoltage) { m_highVoltage = highVoltage; }
    bool shutterPosition() const { return m_shutterPosition; }
    void setShutterPosition(bool shutterPosition) { m_shutterPosition = shutterPosition; }
    bool abort() const { return m_abort; }
    void setAbort(bool abort) { m_abort = abort; }
    bool probe() const { return m_probe; }
    void setProbe(bool probe) { m_probe = probe; }
    MSPState state() const { return m_state; }
    void setState(MSPState state) { m_state = state; }

private:
    bool m_shock = false;
    bool m_shutter = false;
    bool m_shockDetector = false;
    bool m_DAC = false;
    bool m_highVoltage = false;
    bool m_shutterPosition = false;
    bool m_abort = false;
    bool m_probe = false;
    MSPState m_state = STANDBY;
};

Q_DECLARE_METATYPE(MSPInfo)

/// One line: the versions, the state by its name (its number when it has none) and every flag.
MSP_EXPORT QDebug operator<<(QDebug stream, MSPInfo const &info);

#endif // MSPINFO_H
