// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "config.h"

#include <QFile>
#include <QRegularExpression>

#include <QsLog.h>

#include <utility>

namespace {

/// The date type would also read a year of three digits and a sign.
QDate dateFromText(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9]{2}/[0-9]{2}/[0-9]{4}\\z"));
    if (!form.match(text).hasMatch())
        return QDate();
    return QDate::fromString(text, QStringLiteral("dd/MM/yyyy"));
}

} // namespace

Config::Config(QObject *parent)
    : QObject(parent)
{ }

bool Config::read(QString home)
{
    m_home = std::move(home);
    QFile file(m_home + QLatin1String("config/config_unit"));
    // Not as text: that takes out bytes which in UTF-16 are no line ends. The XML reader knows line ends
    // itself.
    if (!file.open(QIODevice::ReadOnly)) {
        QLOG_WARN() << "[Halvar Controller]: Une erreur s'est produite lors de l'ouverture du fichier!";
        return false;
    }
    m_reader.setDevice(&file);
    if (m_reader.readNextStartElement() && m_reader.name() == QLatin1String("Data")) {
        if (m_reader.readNextStartElement())
            readVersions();
        if (m_reader.readNextStartElement())
            readConfigUnit();
    }
    file.close();
    const bool wellFormed = !m_reader.hasError();
    m_reader.clear();
    return wellFormed;
}

void Config::readVersions()
{
    while (m_reader.readNextStartElement()) {
        if (m_reader.name() == QLatin1String("VersionXMLFile"))
            readText(m_VersionXMLFile);
        else if (m_reader.name() == QLatin1String("VersionLambrik"))
            readText(m_VersionLambrik);
        else if (m_reader.name() == QLatin1String("VersionAppSAV"))
            readText(m_VersionAppSAV);
        else if (m_reader.name() == QLatin1String("VersionMarten"))
            readText(m_VersionMarten);
        else
            skipUnknown();
    }
}

void Config::readConfigUnit()
{
    while (m_reader.readNextStartElement()) {
        if (m_reader.name() == QLatin1String("SN_Analyzer"))
            readText(m_SN_Analyzer);
        else if (m_reader.name() == QLatin1String("Wifi_Password"))
            readText(m_Wifi_Password);
        else if (m_reader.name() == QLatin1String("Nbr_Energy_Adj_Test"))
            readNumber(m_Nbr_Energy_Adj_Test);
        else if (m_reader.name() == QLatin1String("DateEndSource"))
            readDate(m_DateEndSource);
        else if (m_reader.name() == QLatin1String("Password"))
            readNumber(m_Password);
        else if (m_reader.name() == QLatin1String("N_ASN"))
            readText(m_N_ASN);
        else if (m_reader.name() == QLatin1String("N_VISA"))
            readText(m_N_VISA);
        else if (m_reader.name() == QLatin1String("Beep_Time"))
            readNumber(m_Beep_Time);
        else if (m_reader.name() == QLatin1String("Led_Light_Off"))
            readNumber(m_Led_Light_Off);
        else if (m_reader.name() == QLatin1String("Type_End_Measure"))
            readText(m_Type_End_Measure);
        else if (m_reader.name() == QLatin1String("Time_Before_Open_Shutter"))
            readNumber(m_Time_Before_Open_Shutter);
        else if (m_reader.name() == QLatin1String("Time_Measure"))
            readNumber(m_Time_Measure);
        else if (m_reader.name() == QLatin1String("Nbr_Measure"))
            readNumber(m_Nbr_Measure);
        else if (m_reader.name() == QLatin1String("Waiting_For_Go"))
            readNumber(m_Waiting_For_Go);
        else if (m_reader.name() == QLatin1String("Nist_InformationValue"))
            readNumber(m_Nist_InformationValue);
        else if (m_reader.name() == QLatin1String("Nist_InformationPrecision"))
            readNumber(m_Nist_InformationPrecision);
        else if (m_reader.name() == QLatin1String("Maxtime_Error_Status"))
            readNumber(m_Maxtime_Error_Status);
        else if (m_reader.name() == QLatin1String("Remaining_Time_Before_EndSource"))
            readNumber(m_Remaining_Time_Before_EndSource);
        else
            skipUnknown();
    }
}

void Config::skipUnknown()
{
    QLOG_TRACE() << m_reader.name().toString() << " not taken into account.";
    m_reader.skipCurrentElement();
}

template <typename Value, typename Conversion>
void Config::readValue(Value &member, Conversion convert)
{
    const QString key = m_reader.name().toString();
    const QString text = m_reader.readElementText();
    // Where the file breaks off inside a value, half of a number or of a password is worse than none.
    if (m_reader.hasError())
        return;
    member = convert(text);
    QLOG_TRACE() << key << ": " << member;
}

void Config::readText(QString &member)
{
    readValue(member, [](const QString &text) { return text; });
}

void Config::readNumber(int &member)
{
    readValue(member, [](const QString &text) { return text.toInt(nullptr, 10); });
}

void Config::readNumber(float &member)
{
    readValue(member, [](const QString &text) {
        bool ok = false;
        const float value = text.toFloat(&ok);
        return ok ? value : 0.0F;
    });
}

void Config::readDate(QDate &member)
{
    readValue(member, dateFromText);
}
