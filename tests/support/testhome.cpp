// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "testhome.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>

TestHome::TestHome()
    : m_config{{QStringLiteral("SN_Analyzer"), QStringLiteral("HV-0042")},
               {QStringLiteral("Wifi_Password"), QStringLiteral("secret")},
               {QStringLiteral("Nbr_Energy_Adj_Test"), QStringLiteral("3")},
               {QStringLiteral("DateEndSource"), QStringLiteral("31/12/2099")},
               {QStringLiteral("Password"), QStringLiteral("12345")},
               {QStringLiteral("Beep_Time"), QStringLiteral("0")},
               {QStringLiteral("Led_Light_Off"), QStringLiteral("0")},
               {QStringLiteral("Type_End_Measure"), QStringLiteral("gachette")},
               {QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("10")},
               {QStringLiteral("Time_Measure"), QStringLiteral("1")},
               {QStringLiteral("Nbr_Measure"), QStringLiteral("3")},
               {QStringLiteral("Waiting_For_Go"), QStringLiteral("3600")},
               {QStringLiteral("Remaining_Time_Before_EndSource"), QStringLiteral("2")}}
{
    for (const char *directory : {"config", "database", "files", "shock"})
        QDir(m_directory.path()).mkpath(QLatin1String(directory));
    writeConfig();
    write(QStringLiteral("database/database_unit.xml"),
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<database_unit>\n    <locaux/>\n    <elements/>\n"
          "    <substrats/>\n    <revetements/>\n</database_unit>\n");
    write(QStringLiteral("database/database_diagnostic.xml"),
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<database_diagnostic>\n    <non_visite/>\n    "
          "<non_mesure/>\n"
          "    <etat_usage/>\n    <etat_degrade/>\n</database_diagnostic>\n");
}

void TestHome::setConfig(const QString &key, const QString &value)
{
    m_config.insert(key, value);
    writeConfig();
}

QByteArray TestHome::read(const QString &relativePath) const
{
    QFile in(file(relativePath));
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

void TestHome::write(const QString &relativePath, const QByteArray &content) const
{
    QFile out(file(relativePath));
    if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(out.fileName()));
}

void TestHome::writeConfig() const
{
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("Data"));
    xml.writeStartElement(QStringLiteral("Versions"));
    xml.writeTextElement(QStringLiteral("VersionXMLFile"), QStringLiteral("1.0"));
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("Config_Unit"));
    for (auto entry = m_config.cbegin(); entry != m_config.cend(); ++entry)
        xml.writeTextElement(entry.key(), entry.value());
    xml.writeEndDocument();
    write(QStringLiteral("config/config_unit"), content);
}
