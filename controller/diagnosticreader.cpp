// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "diagnosticreader.h"

#include <QsLog.h>

#include "database.h"
#include "databaseitemlistmodel.h"
#include "halvarcontroller.h"
#include "labels.h"
#include "measure.h"
#include "measurelistmodel.h"
#include "ud.h"
#include "udlistmodel.h"

namespace {

using Accuracy = AccuracyStageEnumClass;
using Decision = DetectionDecisionEnumClass;
using Degradation = DegradationStateEnumClass;
using Localisation = LocalisationEnumClass;
using Statut = UDStatutEnumClass;

/// The value among \p candidates whose label is \p text, letter for letter; \p other for any other text.
template <typename Enumeration, size_t N>
Enumeration valueOf(const QString &text, const char *const (&labels)[N],
                    std::initializer_list<Enumeration> candidates, Enumeration other)
{
    for (Enumeration candidate : candidates) {
        if (text == QString::fromUtf8(labels[candidate]))
            return candidate;
    }
    return other;
}

Decision::DetectionDecision accuracyResult(const QString &text)
{
    return valueOf(text, Decision::DetectionDecisionNames,
                   {Decision::ACCURACY_OK, Decision::ACCURACY_ERROR, Decision::UNCALIBRATED},
                   Decision::NOT_DETERMINED);
}

Decision::DetectionDecision measureResult(const QString &text)
{
    return valueOf(text, Decision::DetectionDecisionNames, {Decision::POSITIVE, Decision::NEGATIVE},
                   Decision::NOT_DETERMINED);
}

Localisation::Localisation localisation(const QString &text)
{
    return valueOf(
        text, Localisation::LocalisationNames,
        {Localisation::LEFT, Localisation::UP, Localisation::CENTER, Localisation::DOWN, Localisation::RIGHT},
        Localisation::NOT_DETERMINED);
}

Degradation::DegradationState degradation(const QString &text)
{
    return valueOf(text, Degradation::DegradationStateNames,
                   {Degradation::NON_VISIBLE, Degradation::ETAT_USAGE, Degradation::DEGRADE},
                   Degradation::NON_DEGRADE);
}

Statut::UDStatut statut(const QString &text)
{
    return valueOf(text, Statut::UDStatutNames, {Statut::POSITIVE, Statut::NEGATIVE, Statut::SKIPPED},
                   Statut::RAW);
}

} // namespace

DiagnosticReader::DiagnosticReader(HalvarController &controller, const Database *database)
    : m_controller(controller)
    , m_database(database)
{ }

bool DiagnosticReader::read(QIODevice *device)
{
    m_xml.setDevice(device);
    while (!m_xml.atEnd()) {
        if (m_xml.readNext() == QXmlStreamReader::StartElement)
            readTopLevel();
    }
    return !m_xml.hasError();
}

QString DiagnosticReader::error() const
{
    return QStringLiteral("line %1, column %2: %3")
        .arg(m_xml.lineNumber())
        .arg(m_xml.columnNumber())
        .arg(m_xml.errorString());
}

void DiagnosticReader::readTopLevel()
{
    // "Dossier" and what is unknown are not entered: their children are met here in turn.
    if (m_xml.name() == QLatin1String("Dossier")) {
        QLOG_DEBUG() << "Dossier OK :";
    } else if (m_xml.name() == QLatin1String("Informations")) {
        readInformations();
    } else if (m_xml.name() == QLatin1String("Justesses")) {
        readAccuracies();
    } else if (m_xml.name() == QLatin1String("Uds")) {
        readUnits();
    } else if (m_xml.name() == QLatin1String("DegradationBatiment")) {
        readBuilding();
    } else if (m_xml.name() != QLatin1String("LocauxNonVisites")) {
        QLOG_ERROR() << "[Halvar Controller]: XML file" << m_xml.name().toString() << "malformated";
    }
}

void DiagnosticReader::readInformations()
{
    QLOG_DEBUG() << "Informations OK :";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Date"))
            text("Date:"); // when it was saved: of no use to this instrument
        else if (m_xml.name() == QLatin1String("Nom"))
            m_controller.setFileName(text("Nom:"));
        else if (m_xml.name() == QLatin1String("Localisation"))
            m_controller.setLocalization(text("Localisation:"));
        else
            skip();
    }
}

void DiagnosticReader::readAccuracies()
{
    QLOG_DEBUG() << "Justesses OK :";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Justesse"))
            readAccuracy();
        else
            skip();
    }
}

void DiagnosticReader::readAccuracy()
{
    const QXmlStreamAttributes attributes = m_xml.attributes();
    const QStringRef stage = attributes.value(QLatin1String("Statut"));
    Measure *accuracy = nullptr;
    Accuracy::AccuracyStage next = Accuracy::ACCURACY_FINAL;
    if (stage == QLatin1String("VED")) {
        accuracy = m_controller.accuracyInit;
        next = Accuracy::ACCURACY_INTERRUPT;
    } else if (stage == QLatin1String("RST")) {
        accuracy = m_controller.accuracyInterrupt;
    } else if (stage == QLatin1String("VEF")) {
        accuracy = m_controller.accuracyFinal;
    } else {
        skip();
        return;
    }
    accuracy->setIdNAP(attributes.value(QLatin1String("Id")).toInt());
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Resultat"))
            accuracy->setDetectionDecision(accuracyResult(text("Resultat:")));
        else
            skip();
    }
    m_controller.setAccuracyStage(next);
}

void DiagnosticReader::readBuilding()
{
    while (m_xml.readNextStartElement()) {
        const QString name = m_xml.name().toString();
        const bool observed = text() == QLatin1String("vrai");
        if (name == QLatin1String("Effondrement")) {
            m_controller.effondrement = observed;
            emit m_controller.effondrementChanged();
        } else if (name == QLatin1String("Coulures")) {
            m_controller.coulures = observed;
            emit m_controller.couluresChanged();
        } else if (name == QLatin1String("Humidite")) {
            m_controller.humidite = observed;
            emit m_controller.humiditeChanged();
        }
    }
}

void DiagnosticReader::readUnits()
{
    QLOG_DEBUG() << "Uds OK :";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Ud"))
            readUnit();
        else
            skip();
    }
}

void DiagnosticReader::readUnit()
{
    QLOG_DEBUG() << "UD OK:";
    auto *unit = new UD(m_controller.uds);
    while (m_xml.readNextStartElement())
        readUnitChild(*unit);
    // Complete, so that views hear of it once; of a damaged file, as far as it was read.
    m_controller.uds->append(unit);
}

void DiagnosticReader::readUnitChild(UD &unit)
{
    if (m_xml.name() == QLatin1String("Local")) {
        unit.setLocal(readReference(m_database ? m_database->m_LocalItemsListModel : nullptr,
                                    "Local image path:", "Local:", "Local loaded on the fly!",
                                    QStringLiteral("local")));
    } else if (m_xml.name() == QLatin1String("Zone")) {
        const QString zone = text("Zone:");
        if (!zone.isEmpty())
            unit.setZone(zone.at(0).toLatin1());
    } else if (m_xml.name() == QLatin1String("Element")) {
        unit.setElement(readReference(m_database ? m_database->m_ElementItemsListModel : nullptr,
                                      "Local element path:", "Element:", "Element loaded on the fly!",
                                      QStringLiteral("élément")));
    } else if (m_xml.name() == QLatin1String("Substrat")) {
        unit.setSubstrat(readReference(m_database ? m_database->m_SubstratItemsListModel : nullptr,
                                       "Local substrat path:", "Substrat:", "Substrat loaded on the fly!",
                                       QStringLiteral("substrat")));
    } else if (m_xml.name() == QLatin1String("Revetement")) {
        unit.setRevetement(readReference(m_database ? m_database->m_RevetementItemsListModel : nullptr,
                                         "Local revetement path:", "Revetement:",
                                         "Revetement loaded on the fly!", QStringLiteral("revêtement")));
        writeDatabase();
    } else if (m_xml.name() == QLatin1String("Statut")) {
        unit.setStatut(statut(text("Statut:")));
    } else if (m_xml.name() == QLatin1String("Observation")) {
        unit.setObservation(text("Observation:"));
    } else if (m_xml.name() == QLatin1String("Mesures")) {
        readMeasures(unit);
    } else {
        skip();
    }
}

QString DiagnosticReader::readReference(DatabaseItemListModel *list, const char *imageMessage,
                                        const char *valueMessage, const char *addedMessage,
                                        const QString &kind)
{
    const QString image = m_xml.attributes().value(QLatin1String("Image")).toString();
    QLOG_DEBUG() << imageMessage << image;
    const QString title = text(valueMessage);
    if (list && !list->activateIfTitleExist(title)) {
        QLOG_DEBUG() << addedMessage;
        list->add(title, image, kind, -1);
    }
    return title;
}

void DiagnosticReader::writeDatabase()
{
    if (!m_database)
        return;
    // Once in any case: the file may be older than the lists. Then only when it would differ.
    if (m_databaseWritten) {
        m_database->writeIfChanged();
    } else {
        m_databaseWritten = true;
        m_database->write();
    }
}

void DiagnosticReader::readMeasures(UD &unit)
{
    QLOG_DEBUG() << "Mesures OK:";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Mesure"))
            readMeasure(unit);
        else
            skip();
    }
}

void DiagnosticReader::readMeasure(UD &unit)
{
    QLOG_DEBUG() << "Mesure OK:";
    auto *measure = new Measure(unit.measures());
    measure->setIdNAP(m_xml.attributes().value(QLatin1String("Id")).toInt());
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Concentration"))
            measure->setConcentration(text().toDouble());
        else if (m_xml.name() == QLatin1String("Sigma"))
            measure->setSigma(text().toDouble());
        else if (m_xml.name() == QLatin1String("Resultat"))
            measure->setDetectionDecision(measureResult(text("Resultat:")));
        else if (m_xml.name() == QLatin1String("Localisation"))
            measure->setLocalisation(localisation(text("Localisation:")));
        else if (m_xml.name() == QLatin1String("NatureDegradation"))
            measure->setDegradationState(degradation(text("NatureDegradation:")));
        else if (m_xml.name() == QLatin1String("EtatConservation"))
            measure->setConservationState(text());
        else
            skip();
    }
    unit.measures()->append(measure);
}

QString DiagnosticReader::text()
{
    return m_xml.readElementText(QXmlStreamReader::SkipChildElements);
}

QString DiagnosticReader::text(const char *message)
{
    const QString value = text();
    QLOG_DEBUG() << message << value;
    return value;
}

void DiagnosticReader::skip()
{
    QLOG_DEBUG() << "[Halvar Controller]: XML file" << m_xml.name().toString() << "ignored";
    m_xml.skipCurrentElement();
}
