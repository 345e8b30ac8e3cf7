// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef CONFIGFILE_H
#define CONFIGFILE_H

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "config.h"
#include "metatext.h"

inline const QByteArray fullFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<Data>
    <Versions>
        <VersionXMLFile>1.2</VersionXMLFile>
        <VersionLambrik>2.3.4</VersionLambrik>
        <VersionAppSAV>0.9</VersionAppSAV>
        <VersionMarten>1.4.0</VersionMarten>
    </Versions>
    <Unit>
        <SN_Analyzer>HA-0042</SN_Analyzer>
        <Wifi_Password>été &amp; hiver</Wifi_Password>
        <Nbr_Energy_Adj_Test>3</Nbr_Energy_Adj_Test>
        <DateEndSource>31/12/2031</DateEndSource>
        <Password>12345</Password>
        <N_ASN>T750001</N_ASN>
        <N_VISA>V-7</N_VISA>
        <Beep_Time>1</Beep_Time>
        <Led_Light_Off>30</Led_Light_Off>
        <Type_End_Measure>defini</Type_End_Measure>
        <Time_Before_Open_Shutter>500</Time_Before_Open_Shutter>
        <Time_Measure>8</Time_Measure>
        <Nbr_Measure>4</Nbr_Measure>
        <Waiting_For_Go>10</Waiting_For_Go>
        <Nist_InformationValue>1.04</Nist_InformationValue>
        <Nist_InformationPrecision>0.06</Nist_InformationPrecision>
        <Maxtime_Error_Status>15</Maxtime_Error_Status>
        <Remaining_Time_Before_EndSource>6</Remaining_Time_Before_EndSource>
    </Unit>
</Data>
)";

/// Every value, by its getter, as text.
inline QStringList values(const Config &config)
{
    return {config.VersionXMLFile(),
            config.VersionLambrik(),
            config.VersionAppSAV(),
            config.VersionMarten(),
            config.getSN_Analyzer(),
            config.getWifiPassword(),
            QString::number(config.Nbr_Energy_Adj_Test()),
            config.DateEndSource().toString(Qt::ISODate),
            QString::number(config.Password()),
            config.getN_ASN(),
            config.getN_VISA(),
            QString::number(config.Beep_Time()),
            QString::number(config.Led_Light_Off()),
            config.Type_End_Measure(),
            QString::number(config.Time_Before_Open_Shutter()),
            QString::number(config.Time_Measure()),
            QString::number(config.Nbr_Measure()),
            QString::number(config.getWaiting_For_Go()),
            QString::number(double(config.Nist_InformationValue())),
            QString::number(double(config.Nist_InformationPrecision())),
            QString::number(config.Maxtime_Error_Status()),
            QString::number(config.Remaining_Time_Before_EndSource())};
}

inline QStringList fullValues()
{
    return linesOf(R"(
        1.2
        2.3.4
        0.9
        1.4.0
        HA-0042
        été & hiver
        3
        2031-12-31
        12345
        T750001
        V-7
        1
        30
        defini
        500
        8
        4
        10
        1.04
        0.06
        15
        6)");
}

/// A file whose second group holds \p unit.
inline QByteArray fileWith(const QByteArray &unit)
{
    return "<Data><Versions/><Unit>" + unit + "</Unit></Data>";
}

/// A home directory of its own, with a configuration file.
class ConfigHome
{
public:
    ConfigHome() { m_ready = m_directory.isValid() && QDir(directory()).mkdir(QStringLiteral("config")); }
    bool isReady() const { return m_ready; }
    QString directory() const { return m_directory.path(); }
    /// As Config::read() wants it, ending in a separator.
    QString path() const { return directory() + QLatin1Char('/'); }
    bool write(const QByteArray &content) const
    {
        QFile file(path() + QStringLiteral("config/config_unit"));
        file.remove(); // a new file each time: some file systems flush one that is truncated
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

private:
    QTemporaryDir m_directory;
    bool m_ready = false;
};

#endif // CONFIGFILE_H
