// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_CONFIG_H
#define HALVAR_CONFIG_H

#include <QDate>
#include <QObject>
#include <QString>

#include "halvar-export.h"
#include "xmlreader.h"

/// The unit's configuration, read once at start-up from home/config/config_unit.
///
/// The file is XML: below the root "Data" one element with the version labels, then one with the unit's
/// values, in any order; the last occurrence of a key wins. A text that the file lacks is empty, a number 0,
/// the date null; a number that cannot be read is 0, a date that cannot be read null.
class HALVAR_EXPORT Config : public QObject
{
    Q_OBJECT

public:
    explicit Config(QObject *parent = nullptr);

    /// \param home the instrument's home directory, ending in a separator.
    /// \return whether the file was opened and no XML error was met in reading as far as the unit's values;
    /// what was
    ///         read before an error is kept. A file with another root gives no values, and true.
    bool read(QString home);

public slots:
    QString VersionXMLFile() const { return m_VersionXMLFile; }
    QString VersionLambrik() const { return m_VersionLambrik; }
    QString VersionAppSAV() const { return m_VersionAppSAV; }
    QString VersionMarten() const { return m_VersionMarten; }
    /// Serial number of the analyser.
    QString getSN_Analyzer() const { return m_SN_Analyzer; }
    /// Password of the instrument's own Wi-Fi network.
    QString getWifiPassword() const { return m_Wifi_Password; }
    /// Number of calibration attempts allowed.
    int Nbr_Energy_Adj_Test() const { return m_Nbr_Energy_Adj_Test; }
    /// End of life of the source.
    QDate DateEndSource() const { return m_DateEndSource; }
    /// The operator's code, as a number of five digits.
    int Password() const { return m_Password; }
    QString getN_ASN() const { return m_N_ASN; }
    QString getN_VISA() const { return m_N_VISA; }
    /// Length of a beep, in s.
    int Beep_Time() const { return m_Beep_Time; }
    /// Time after which the light goes off by itself, in s; 0 for never.
    int Led_Light_Off() const { return m_Led_Light_Off; }
    /// How a measure ends at start-up: "defini", "gachette", anything else for automatic.
    QString Type_End_Measure() const { return m_Type_End_Measure; }
    /// Delay between the opening of the shutter and the measure, in ms.
    int Time_Before_Open_Shutter() const { return m_Time_Before_Open_Shutter; }
    /// Length of a measure of defined time, in s.
    int Time_Measure() const { return m_Time_Measure; }
    int Nbr_Measure() const { return m_Nbr_Measure; }
    /// Start-up hold-off, in s.
    int getWaiting_For_Go() const { return m_Waiting_For_Go; }
    /// Value of the reference sample and its precision, in the unit of a concentration.
    float Nist_InformationValue() const { return m_Nist_InformationValue; }
    float Nist_InformationPrecision() const { return m_Nist_InformationPrecision; }
    int Maxtime_Error_Status() const { return m_Maxtime_Error_Status; }
    /// Months before the end of the source at which its warning begins.
    int Remaining_Time_Before_EndSource() const { return m_Remaining_Time_Before_EndSource; }

private:
    void readVersions();
    void readConfigUnit();
    void skipUnknown();
    template <typename Value, typename Conversion>
    void readValue(Value &member, Conversion convert);
    void readText(QString &member);
    void readNumber(int &member);
    void readNumber(float &member);
    void readDate(QDate &member);

    halvar::XmlReader m_reader;
    QString m_home;
    QString m_VersionXMLFile;
    QString m_VersionLambrik;
    QString m_VersionAppSAV;
    QString m_VersionMarten;
    QString m_SN_Analyzer;
    QString m_Wifi_Password;
    int m_Nbr_Energy_Adj_Test = 0;
    QDate m_DateEndSource;
    int m_Password = 0;
    QString m_N_ASN;
    QString m_N_VISA;
    int m_Beep_Time = 0;
    int m_Led_Light_Off = 0;
    QString m_Type_End_Measure;
    int m_Time_Before_Open_Shutter = 0;
    int m_Time_Measure = 0;
    int m_Nbr_Measure = 0;
    int m_Waiting_For_Go = 0;
    float m_Nist_InformationValue = 0;
    float m_Nist_InformationPrecision = 0;
    int m_Maxtime_Error_Status = 0;
    int m_Remaining_Time_Before_EndSource = 0;
};

#endif // HALVAR_CONFIG_H
