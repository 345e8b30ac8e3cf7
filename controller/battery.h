// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_BATTERY_H
#define HALVAR_BATTERY_H

#include <QObject>
#include <QTimer>

#include "enums.h"
#include "halvar-export.h"

/// The battery's level, sampled from the gauge's sysfs file.
///
/// LEVEL_UNKNOW until the first sample and whenever the file cannot be opened; content that is not a plain
/// number counts as 0 µV, hence LEVEL_CRITICAL: a gauge that answers nonsense must not look healthy.
/// Interface thread only.
class HALVAR_EXPORT Battery : public QObject
{
    Q_OBJECT

    Q_PROPERTY(BatteryLevelsEnumClass::BatteryLevels level READ level NOTIFY levelChanged)

public:
    explicit Battery(QObject *parent = nullptr);

    /// Samples every \p ms ms from now on; the first sample comes after the first period.
    void init(int ms);
    BatteryLevelsEnumClass::BatteryLevels level() const { return m_level; }

signals:
    void levelChanged(BatteryLevelsEnumClass::BatteryLevels level);

private slots:
    void update();

private:
    void setLevel(BatteryLevelsEnumClass::BatteryLevels level);

    long m_tension = 0; // µV
    BatteryLevelsEnumClass::BatteryLevels m_level = BatteryLevelsEnumClass::LEVEL_UNKNOW;
    QTimer m_timerBattery;
};

#endif // HALVAR_BATTERY_H
