// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "diagnosticreader.h"

#include <array>
#include <cstddef>
#include <utility>

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

// Bytes that one of them takes for good, its lists and connections included, without its texts.
constexpr qint64 unitSize = 960;
constexpr qint64 measureSize = 640;
constexpr qint64 itemSize = 700; // with its place in the document that is written back

// Of the reference lists, in all writes of one load: many times what a building and its lists give. A file
// made of nothing but new titles would otherwise take hours, and wear out the flash.
constexpr qint64 itemsWrittenAtOnce = 2000000;

/// The values of an enumeration that a file can give, by their labels, which are decoded once.
template <typename Enumeration, std::size_t N>
class Values
{
public:
    template <std::size_t Size>
    Values(const char *const (&labels)[Size], const std::array<Enumeration, N> &candidates, Enumeration other)
        : m_other(other)
    {
        for (std::size_t i = 0; i < N; ++i)
            m_values[i] = {QString::fromUtf8(labels[candidates[i]]), candidates[i]};
    }
    /// The value whose label is \p text, letter for letter; the other one for any other text.
    Enumeration operator()(const QString &text) const
    {
        for (const auto &[label, value] : m_values) {
            if (text == label)
                return value;
        }
        return m_other;
    }

private:
    std::array<std::pair<QString, Enumeration>, N> m_values;
    Enumeration m_other;
};

Decision::DetectionDecision accuracyResult(const QString &text)
{
    static const Values values(
        Decision::DetectionDecisionNames,
        std::array{Decision::ACCURACY_OK, Decision::ACCURACY_ERROR, Decision::UNCALIBRATED},
        Decision::NOT_DETERMINED);
    return values(text);
}

Decision::DetectionDecision measureResult(const QString &text)
{
    static const Values values(Decision::DetectionDecisionNames,
                               std::array{Decision::POSITIVE, Decision::NEGATIVE}, Decision::NOT_DETERMINED);
    return values(text);
}

Localisation::Localisation localisation(const QString &text)
{
    static const Values values(Localisation::LocalisationNames,
                               std::array{Localisation::LEFT, Localisation::UP, Localisation::CENTER,
                                          Localisation::DOWN, Localisation::RIGHT},
                               Localisation::NOT_DETERMINED);
    return values(text);
}

Degradation::DegradationState degradation(const QString &text)
{
    static const Values values(
        Degradation::DegradationStateNames,
        std::array{Degradation::NON_VISIBLE, Degradation::ETAT_USAGE, Degradation::DEGRADE},
        Degradation::NON_DEGRADE);
    return values(text);
}

Statut::UDStatut statut(const QString &text)
{
    static const Values values(Statut::UDStatutNames,
                               std::array{Statut::POSITIVE, Statut::NEGATIVE, Statut::SKIPPED}, Statut::RAW);
    return values(text);
}

/// Hands \p text to \p setter, unless there is none.
template <typename Setter>
void take(const QString *text, Setter setter)
{
    if (text)
        setter(*text);
}

/// \p text in memory of its own size, for who keeps it: the reader's has room for longer ones.
QString kept(const QString &text)
{
    return text.isEmpty() ? QString() : QString(text.constData(), text.size());
}

} // namespace

DiagnosticReader::DiagnosticReader(HalvarController &controller, const Database *database)
    : m_controller(controller)
    , m_database(database)
{ }

bool DiagnosticReader::read(QIODevice *device)
{
    m_xml.setDevice(device);
    // At a sector that cannot be read, the device never comes to its end, and so neither does the reader.
    while (!m_xml.atEnd() && !m_xml.hasError()) {
        if (m_xml.readNext() == QXmlStreamReader::StartElement)
            readTopLevel();
    }
    if (m_writesWaited > 0)
        m_database->writeIfChanged();
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
    } else if (m_xml.name() == QLatin1String("LocauxNonVisites")) {
        m_xml.skipCurrentElement();
    } else {
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
            take(text("Nom:"), [this](const QString &name) { m_controller.setFileName(kept(name)); });
        else if (m_xml.name() == QLatin1String("Localisation"))
            take(text("Localisation:"),
                 [this](const QString &place) { m_controller.setLocalization(kept(place)); });
        else
            m_xml.skipCurrentElement();
    }
}

void DiagnosticReader::readAccuracies()
{
    QLOG_DEBUG() << "Justesses OK :";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Justesse"))
            readAccuracy();
        else
            m_xml.skipCurrentElement();
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
        m_xml.skipCurrentElement();
        return;
    }
    accuracy->setIdNAP(attributes.value(QLatin1String("Id")).toInt());
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Resultat"))
            take(text("Resultat:"), [accuracy](const QString &result) {
                accuracy->setDetectionDecision(accuracyResult(result));
            });
        else
            m_xml.skipCurrentElement();
    }
    m_controller.setAccuracyStage(next);
}

void DiagnosticReader::readBuilding()
{
    while (m_xml.readNextStartElement()) {
        const QString name = m_xml.name().toString();
        const QString *const observation = text();
        if (!observation)
            return;
        const bool observed = *observation == QLatin1String("vrai");
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
            m_xml.skipCurrentElement();
    }
}

void DiagnosticReader::readUnit()
{
    QLOG_DEBUG() << "UD OK:";
    if (!m_xml.account(unitSize))
        return;
    auto *unit = new UD(m_controller.uds);
    while (m_xml.readNextStartElement())
        readUnitChild(*unit);
    // Complete, so that views hear of it once; of a damaged file, as far as it was read.
    m_controller.uds->append(unit);
}

void DiagnosticReader::readUnitChild(UD &unit)
{
    if (m_xml.name() == QLatin1String("Local")) {
        take(readReference(m_database ? m_database->m_LocalItemsListModel : nullptr, "Local image path:",
                           "Local:", "Local loaded on the fly!", QStringLiteral("local")),
             [&unit](const QString &title) { unit.setLocal(kept(title)); });
    } else if (m_xml.name() == QLatin1String("Zone")) {
        take(text("Zone:"), [&unit](const QString &zone) {
            // A unit has one Latin letter for its zone; without one it keeps the first.
            const char letter = zone.isEmpty() ? '\0' : zone.at(0).toLatin1();
            if (letter != '\0') {
                unit.setZone(letter);
            } else if (!zone.isEmpty()) {
                QLOG_WARN() << "[Halvar Controller]: Zone" << zone << "is no Latin letter, kept as A";
            }
        });
    } else if (m_xml.name() == QLatin1String("Element")) {
        take(readReference(m_database ? m_database->m_ElementItemsListModel : nullptr, "Local element path:",
                           "Element:", "Element loaded on the fly!", QStringLiteral("élément")),
             [&unit](const QString &title) { unit.setElement(kept(title)); });
    } else if (m_xml.name() == QLatin1String("Substrat")) {
        take(readReference(m_database ? m_database->m_SubstratItemsListModel : nullptr,
                           "Local substrat path:", "Substrat:", "Substrat loaded on the fly!",
                           QStringLiteral("substrat")),
             [&unit](const QString &title) { unit.setSubstrat(kept(title)); });
    } else if (m_xml.name() == QLatin1String("Revetement")) {
        take(readReference(m_database ? m_database->m_RevetementItemsListModel : nullptr,
                           "Local revetement path:", "Revetement:", "Revetement loaded on the fly!",
                           QStringLiteral("revêtement")),
             [this, &unit](const QString &title) {
                 unit.setRevetement(kept(title));
                 writeDatabase();
             });
    } else if (m_xml.name() == QLatin1String("Statut")) {
        take(text("Statut:"), [&unit](const QString &label) { unit.setStatut(statut(label)); });
    } else if (m_xml.name() == QLatin1String("Observation")) {
        take(text("Observation:"), [&unit](const QString &note) { unit.setObservation(kept(note)); });
    } else if (m_xml.name() == QLatin1String("Mesures")) {
        readMeasures(unit);
    } else {
        m_xml.skipCurrentElement();
    }
}

const QString *DiagnosticReader::readReference(DatabaseItemListModel *list, const char *imageMessage,
                                               const char *valueMessage, const char *addedMessage,
                                               const QString &kind)
{
    const QString image = m_xml.attributes().value(QLatin1String("Image")).toString();
    QLOG_DEBUG() << imageMessage << image;
    const QString *const title = text(valueMessage);
    if (title && list && !list->activateIfTitleExist(*title) && m_xml.account(itemSize)) {
        QLOG_DEBUG() << addedMessage;
        list->add(kept(*title), image, kind, -1);
        m_listsGrew = true;
    }
    return title;
}

void DiagnosticReader::writeDatabase()
{
    if (!m_database)
        return;
    // Once in any case: the file may be older than the lists. Then only when it would differ.
    if (m_databaseWritten) {
        if (!isWritePutOff())
            m_database->writeIfChanged();
    } else {
        m_databaseWritten = true;
        m_database->write();
    }
}

bool DiagnosticReader::isWritePutOff()
{
    if (!m_listsGrew)
        return false;
    if (m_itemsWritten > itemsWrittenAtOnce) {
        if (++m_writesWaited < m_writesToWait)
            return true;
        m_writesWaited = 0;
        m_writesToWait *= 2;
    }
    m_listsGrew = false;
    m_itemsWritten += m_database->m_LocalItemsListModel->count()
        + m_database->m_ElementItemsListModel->count() + m_database->m_SubstratItemsListModel->count()
        + m_database->m_RevetementItemsListModel->count();
    return false;
}

void DiagnosticReader::readMeasures(UD &unit)
{
    QLOG_DEBUG() << "Mesures OK:";
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Mesure"))
            readMeasure(unit);
        else
            m_xml.skipCurrentElement();
    }
}

void DiagnosticReader::readMeasure(UD &unit)
{
    QLOG_DEBUG() << "Mesure OK:";
    if (!m_xml.account(measureSize))
        return;
    auto *measure = new Measure(unit.measures());
    measure->setIdNAP(m_xml.attributes().value(QLatin1String("Id")).toInt());
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("Concentration"))
            take(text(), [measure](const QString &value) { measure->setConcentration(value.toDouble()); });
        else if (m_xml.name() == QLatin1String("Sigma"))
            take(text(), [measure](const QString &value) { measure->setSigma(value.toDouble()); });
        else if (m_xml.name() == QLatin1String("Resultat"))
            take(text("Resultat:"),
                 [measure](const QString &label) { measure->setDetectionDecision(measureResult(label)); });
        else if (m_xml.name() == QLatin1String("Localisation"))
            take(text("Localisation:"),
                 [measure](const QString &label) { measure->setLocalisation(localisation(label)); });
        else if (m_xml.name() == QLatin1String("NatureDegradation"))
            take(text("NatureDegradation:"),
                 [measure](const QString &label) { measure->setDegradationState(degradation(label)); });
        else if (m_xml.name() == QLatin1String("EtatConservation"))
            take(text(), [measure](const QString &state) { measure->setConservationState(kept(state)); });
        else
            m_xml.skipCurrentElement();
    }
    unit.measures()->append(measure);
}

const QString *DiagnosticReader::text()
{
    m_text.resize(0); // keeps its memory
    for (;;) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::EntityReference:
            m_text.append(m_xml.text());
            break;
        case QXmlStreamReader::StartElement:
            m_xml.skipCurrentElement();
            break;
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
            break;
        case QXmlStreamReader::EndElement:
            return m_xml.hasError() ? nullptr : &m_text;
        default: // nothing else is found inside an element that is not cut off
            return nullptr;
        }
    }
}

const QString *DiagnosticReader::text(const char *message)
{
    const QString *const value = text();
    if (value) {
        QLOG_DEBUG() << message << *value;
    }
    return value;
}
