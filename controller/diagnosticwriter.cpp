// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "diagnosticwriter.h"

#include "database.h"
#include "databaseitem.h"
#include "databaseitemlistmodel.h"
#include "date.h"
#include "halvarcontroller.h"
#include "measure.h"
#include "measurelistmodel.h"
#include "ud.h"
#include "udlistmodel.h"
#include "xmltext.h"

#include <array>
#include <cstddef>

namespace {

using Decision = DetectionDecisionEnumClass;

/// A table of labels, decoded once for all measures.
template <std::size_t N>
class Labels
{
public:
    explicit Labels(const char *const (&labels)[N])
    {
        for (std::size_t value = 0; value < N; ++value)
            m_labels[value] = QString::fromUtf8(labels[value]);
    }
    /// Empty for a value that the table does not have.
    QString operator()(int value) const
    {
        return value >= 0 && static_cast<std::size_t>(value) < N ? m_labels[static_cast<std::size_t>(value)]
                                                                 : QString();
    }

private:
    std::array<QString, N> m_labels;
};

QString decisionLabel(int decision)
{
    static const Labels labels(Decision::DetectionDecisionNames);
    return labels(decision);
}

QString localisationLabel(int localisation)
{
    static const Labels labels(LocalisationEnumClass::LocalisationNames);
    return labels(localisation);
}

QString degradationLabel(int degradation)
{
    static const Labels labels(DegradationStateEnumClass::DegradationStateNames);
    return labels(degradation);
}

QString statutLabel(int statut)
{
    static const Labels labels(UDStatutEnumClass::UDStatutNames);
    return labels(statut);
}

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString frenchBool(bool value)
{
    return value ? QStringLiteral("vrai") : QStringLiteral("faux");
}

/// The first item of a title counts, as in a search from the top.
QHash<QString, QString> imagesOf(const DatabaseItemListModel *list)
{
    QHash<QString, QString> images;
    if (!list)
        return images;
    for (const DatabaseItem *item : list->toList()) {
        if (item && !images.contains(item->title()))
            images.insert(item->title(), item->image());
    }
    return images;
}

} // namespace

DiagnosticWriter::DiagnosticWriter(const HalvarController &controller, const Database *database)
    : m_controller(controller)
    , m_xml(&m_sink)
{
    if (!database)
        return;
    m_locals = imagesOf(database->m_LocalItemsListModel);
    m_elements = imagesOf(database->m_ElementItemsListModel);
    m_substrats = imagesOf(database->m_SubstratItemsListModel);
    m_revetements = imagesOf(database->m_RevetementItemsListModel);
}

QByteArray DiagnosticWriter::document()
{
    m_xml.setAutoFormatting(true);
    m_xml.writeStartDocument();
    m_xml.writeStartElement(QStringLiteral("Dossier"));
    writeInformations();
    writeAccuracies();
    writeUnits();
    writeBuilding();
    m_xml.writeEmptyElement(QStringLiteral("LocauxNonVisites"));
    m_xml.writeEndElement();
    m_xml.writeEndDocument();
    halvar::keepCarriageReturns(m_document);
    return m_document;
}

void DiagnosticWriter::writeInformations()
{
    m_xml.writeStartElement(QStringLiteral("Informations"));
    writeText(QStringLiteral("Date"),
              m_controller.date->currentDate() + QLatin1Char(' ') + m_controller.date->currentTime());
    writeText(QStringLiteral("Nom"), m_controller.fileName());
    writeText(QStringLiteral("Localisation"), m_controller.localization());
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeAccuracies()
{
    const auto decided = [](const Measure &accuracy) {
        return accuracy.detectionDecision() == Decision::ACCURACY_ERROR
            || accuracy.detectionDecision() == Decision::ACCURACY_OK;
    };
    // An uncalibrated first check leaves its mark on the whole diagnostic: all three are then on record.
    const bool uncalibrated = m_controller.accuracyInit->detectionDecision() == Decision::UNCALIBRATED;

    m_xml.writeStartElement(QStringLiteral("Justesses"));
    if (uncalibrated || decided(*m_controller.accuracyInit))
        writeAccuracy(*m_controller.accuracyInit, QStringLiteral("VED"));
    if (uncalibrated || decided(*m_controller.accuracyInterrupt))
        writeAccuracy(*m_controller.accuracyInterrupt, QStringLiteral("RST"));
    if (uncalibrated || decided(*m_controller.accuracyFinal))
        writeAccuracy(*m_controller.accuracyFinal, QStringLiteral("VEF"));
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeAccuracy(const Measure &accuracy, const QString &statut)
{
    m_xml.writeStartElement(QStringLiteral("Justesse"));
    m_xml.writeAttribute(QStringLiteral("Id"), QString::number(accuracy.idNAP()));
    m_xml.writeAttribute(QStringLiteral("Statut"), statut);
    writeText(QStringLiteral("Resultat"), decisionLabel(accuracy.detectionDecision()));
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeUnits()
{
    m_xml.writeStartElement(QStringLiteral("Uds"));
    int number = 0;
    for (const UD *unit : m_controller.uds->toList()) {
        if (unit) // null when somebody else deleted it
            writeUnit(*unit, ++number);
    }
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeUnit(const UD &unit, int number)
{
    m_xml.writeStartElement(QStringLiteral("Ud"));
    m_xml.writeAttribute(QStringLiteral("Id"), QString::number(number));
    writeReference(QStringLiteral("Local"), unit.local(), m_locals);
    writeText(QStringLiteral("Zone"), QString(QLatin1Char(unit.zone())));
    writeReference(QStringLiteral("Element"), unit.element(), m_elements);
    writeReference(QStringLiteral("Substrat"), unit.substrat(), m_substrats);
    writeReference(QStringLiteral("Revetement"), unit.revetement(), m_revetements);
    writeText(QStringLiteral("Statut"), statutLabel(unit.statut()));
    writeText(QStringLiteral("Observation"), unit.observation());
    m_xml.writeStartElement(QStringLiteral("Mesures"));
    for (const Measure *measure : unit.measures()->toList()) {
        if (measure)
            writeMeasure(*measure);
    }
    m_xml.writeEndElement();
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeMeasure(const Measure &measure)
{
    m_xml.writeStartElement(QStringLiteral("Mesure"));
    m_xml.writeAttribute(QStringLiteral("Id"), QString::number(measure.idNAP()));
    writeText(QStringLiteral("Concentration"), number(measure.concentration()));
    writeText(QStringLiteral("Sigma"), number(measure.sigma()));
    writeText(QStringLiteral("Resultat"), decisionLabel(measure.detectionDecision()));
    writeText(QStringLiteral("Localisation"), localisationLabel(measure.localisation()));
    writeText(QStringLiteral("NatureDegradation"), degradationLabel(measure.degradationState()));
    writeText(QStringLiteral("EtatConservation"), measure.conservationState());
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeBuilding()
{
    m_xml.writeStartElement(QStringLiteral("DegradationBatiment"));
    writeText(QStringLiteral("Effondrement"), frenchBool(m_controller.effondrement));
    writeText(QStringLiteral("Coulures"), frenchBool(m_controller.coulures));
    writeText(QStringLiteral("Humidite"), frenchBool(m_controller.humidite));
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeReference(const QString &element, const QString &title,
                                      const ImageByTitle &images)
{
    m_xml.writeStartElement(element);
    m_xml.writeAttribute(QStringLiteral("Image"), halvar::xmlText(images.value(title)));
    m_xml.writeCharacters(halvar::xmlText(title));
    m_xml.writeEndElement();
}

void DiagnosticWriter::writeText(const QString &element, const QString &text)
{
    m_xml.writeTextElement(element, halvar::xmlText(text));
}
