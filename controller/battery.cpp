// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "battery.h"

#include <QFile>
#include <QRegularExpression>

#include <QsLog.h>

namespace {

using Levels = BatteryLevelsEnumClass;

Levels::BatteryLevels levelOf(long microvolts)
{
    for (Levels::BatteryLevels level :
         {Levels::LEVEL_CRITICAL, Levels::LEVEL_VERY_LOW, Levels::LEVEL_LOW, Levels::LEVEL_GOOD}) {
        if (microvolts <= level)
            return level;
    }
    return Levels::LEVEL_FULL;
}

} // namespace

Battery::Battery(QObject *parent)
    : QObject(parent)
{ }

void Battery::init(int ms)
{
    connect(&m_timerBattery, &QTimer::timeout, this, &Battery::update, Qt::UniqueConnection);
    m_timerBattery.start(qMax(0, ms));
}

void Battery::update()
{
    QLOG_TRACE() << "[Halvar Controller][Battery]: update()";
    m_tension = 0;
    QFile file(QStringLiteral("/sys/class/power_supply/bq27510-0/voltage_now"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QLOG_ERROR() << "[Halvar Controller][Battery]: Can't read Voltage.";
        setLevel(Levels::LEVEL_UNKNOW);
        return;
    }
    // An attribute of sysfs is one page at most; whatever else stands there is not read to its end.
    constexpr qint64 longestLine = 4096;
    const QString line = QString::fromLatin1(file.readLine(longestLine));
    file.close();
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    // More digits than a long holds are no voltage either: they give 0.
    if (digits.match(line).hasMatch())
        m_tension = line.trimmed().toLong();
    setLevel(levelOf(m_tension));
}

void Battery::setLevel(BatteryLevelsEnumClass::BatteryLevels level)
{
    if (m_level == level)
        return;
    m_level = level;
    QLOG_DEBUG() << "[Halvar Controller][Battery]: LEVEL updated";
    emit levelChanged(m_level);
}
