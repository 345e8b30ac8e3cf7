// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Config::read. What was read, written to a file again, is read back the same; a second reading changes
// nothing.
#include <QXmlStreamWriter>

#include <memory>

#include "config.h"
#include "harness.h"
#include "memoryhome.h"
#include "xmlmutator.h"

namespace {

std::unique_ptr<fuzz::MemoryHome> home;

struct Value
{
    QString key;
    QString text; ///< as it stands in a file
};

QString number(float value)
{
    constexpr int digits = 9; // tell any two floats apart
    return QString::number(double(value), 'g', digits);
}

QVector<Value> versions(const Config &config)
{
    return {{QStringLiteral("VersionXMLFile"), config.VersionXMLFile()},
            {QStringLiteral("VersionLambrik"), config.VersionLambrik()},
            {QStringLiteral("VersionAppSAV"), config.VersionAppSAV()},
            {QStringLiteral("VersionMarten"), config.VersionMarten()}};
}

QVector<Value> unit(const Config &config)
{
    const auto integer = [](int value) { return QString::number(value); };
    return {{QStringLiteral("SN_Analyzer"), config.getSN_Analyzer()},
            {QStringLiteral("Wifi_Password"), config.getWifiPassword()},
            {QStringLiteral("Nbr_Energy_Adj_Test"), integer(config.Nbr_Energy_Adj_Test())},
            {QStringLiteral("DateEndSource"), config.DateEndSource().toString(QStringLiteral("dd/MM/yyyy"))},
            {QStringLiteral("Password"), integer(config.Password())},
            {QStringLiteral("N_ASN"), config.getN_ASN()},
            {QStringLiteral("N_VISA"), config.getN_VISA()},
            {QStringLiteral("Beep_Time"), integer(config.Beep_Time())},
            {QStringLiteral("Led_Light_Off"), integer(config.Led_Light_Off())},
            {QStringLiteral("Type_End_Measure"), config.Type_End_Measure()},
            {QStringLiteral("Time_Before_Open_Shutter"), integer(config.Time_Before_Open_Shutter())},
            {QStringLiteral("Time_Measure"), integer(config.Time_Measure())},
            {QStringLiteral("Nbr_Measure"), integer(config.Nbr_Measure())},
            {QStringLiteral("Waiting_For_Go"), integer(config.getWaiting_For_Go())},
            {QStringLiteral("Nist_InformationValue"), number(config.Nist_InformationValue())},
            {QStringLiteral("Nist_InformationPrecision"), number(config.Nist_InformationPrecision())},
            {QStringLiteral("Maxtime_Error_Status"), integer(config.Maxtime_Error_Status())},
            {QStringLiteral("Remaining_Time_Before_EndSource"),
             integer(config.Remaining_Time_Before_EndSource())}};
}

QStringList texts(const Config &config)
{
    QStringList result;
    for (const Value &value : versions(config) + unit(config))
        result.append(value.key + QLatin1Char('=') + value.text);
    return result;
}

QByteArray document(const Config &config)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("Data"));
    for (const QVector<Value> &group : {versions(config), unit(config)}) {
        xml.writeStartElement(QStringLiteral("Group"));
        for (const Value &value : group)
            xml.writeTextElement(value.key, value.text);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    // The writer leaves a carriage return as it is, which a reader takes for the end of a line.
    return bytes.replace('\r', "&#13;");
}

bool read(Config &config, const QByteArray &bytes)
{
    home->write("config/config_unit", bytes);
    return config.read(home->path());
}

} // namespace

const fuzz::XmlVocabulary &fuzz::vocabulary()
{
    static const XmlVocabulary words = [] {
        XmlVocabulary made;
        const Config empty;
        for (const Value &value : versions(empty) + unit(empty))
            made.elements.push_back(value.key.toStdString());
        for (const char *name : {"Data", "Versions", "Unit", "x"})
            made.elements.emplace_back(name);
        made.attributes = {"a", "b"};
        made.values = {"31/12/2031", "29/02/2027", "2031-12-31", "defini", "gachette", "12345", "HA-0042"};
        return made;
    }();
    return words;
}

void fuzz::prepare()
{
    home = std::make_unique<MemoryHome>();
}

void fuzz::run(const QByteArray &input)
{
    Config config;
    const bool intact = read(config, input);
    const QStringList first = texts(config);
    FUZZ_VERIFY(config.DateEndSource().isNull() || config.DateEndSource().isValid());

    FUZZ_VERIFY(config.read(home->path()) == intact);
    FUZZ_VERIFY(texts(config) == first);

    Config again;
    FUZZ_VERIFY(read(again, document(config)));
    FUZZ_VERIFY2(texts(again) == first,
                 first.join(QLatin1Char('|')) + QStringLiteral(" became ")
                     + texts(again).join(QLatin1Char('|')));
}
