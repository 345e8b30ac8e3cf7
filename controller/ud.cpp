// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "ud.h"

#include <QsLog.h>

#include "labels.h"

using Decision = DetectionDecisionEnumClass;
using Statut = UDStatutEnumClass;

namespace {

/// A measure that somebody else deleted leaves its row behind, without a decision.
Decision::DetectionDecision decisionOf(const Measure *measure)
{
    return measure ? measure->detectionDecision() : Decision::NO_DECISION;
}

} // namespace

UD::UD(QObject *parent)
    : QObject(parent)
    , m_measures(this)
{ }

UD::UD(const UD *source, QObject *parent)
    : UD(parent)
{
    if (!source)
        return;
    m_local = source->m_local;
    m_element = source->m_element;
    m_substrat = source->m_substrat;
    m_revetement = source->m_revetement;
    m_zone = static_cast<char>(source->m_zone + 1);
}

void UD::setIdentifier(int identifier)
{
    if (m_identifier == identifier)
        return;
    m_identifier = identifier;
    emit identifierChanged();
}

void UD::setStatut(UDStatutEnumClass::UDStatut statut)
{
    if (m_statut == statut)
        return;
    m_statut = statut;
    QLOG_INFO() << "[Halvar Controller][UD]: Writing statut "
                << halvar::nameOf(Statut::UDStatutNames, statut);
    emit statutChanged();
}

void UD::setObservation(const QString &observation)
{
    if (m_observation == observation)
        return;
    m_observation = observation;
    emit observationChanged();
}

void UD::setDetectionDecision(DetectionDecisionEnumClass::DetectionDecision detectionDecision)
{
    if (m_detectionDecision == detectionDecision)
        return;
    m_detectionDecision = detectionDecision;
    QLOG_INFO() << "[Halvar Controller][UD]: Writing detectionDecision "
                << halvar::nameOf(Decision::DetectionDecisionNames, detectionDecision);
    emit detectionDecisionChanged();
}

void UD::setLocal(const QString &local)
{
    if (m_local == local)
        return;
    m_local = local;
    emit localChanged();
}

void UD::setZone(char zone)
{
    if (m_zone == zone)
        return;
    m_zone = zone;
    emit zoneChanged();
}

void UD::setElement(const QString &element)
{
    if (m_element == element)
        return;
    m_element = element;
    emit elementChanged();
}

void UD::setRevetement(const QString &revetement)
{
    if (m_revetement == revetement)
        return;
    m_revetement = revetement;
    emit revetementChanged();
}

void UD::setSubstrat(const QString &substrat)
{
    if (m_substrat == substrat)
        return;
    m_substrat = substrat;
    emit substratChanged();
}

void UD::setResult(DetectionDecisionEnumClass::DetectionDecision decision, UDStatutEnumClass::UDStatut statut)
{
    // The decision first: whoever follows the statut finds it in place.
    setDetectionDecision(decision);
    setStatut(statut);
}

void UD::updateStatut(int nbMeasures)
{
    QLOG_DEBUG() << "[UD][updateStatut]: Received with nbMeasures ! " << nbMeasures;
    if (m_statut == Statut::SKIPPED || m_measures.isEmpty())
        return;

    for (const Measure *measure : m_measures.toList()) {
        const Decision::DetectionDecision decision = decisionOf(measure);
        QLOG_DEBUG() << (decision == Decision::POSITIVE       ? "[UD][MESURE inc]: POSITIVE"
                             : decision == Decision::NEGATIVE ? "[UD][MESURE inc]: NEGATIVE"
                                                              : "[UD][MESURE inc]: AUTRE");
    }

    int negatives = 0;
    for (const Measure *measure : m_measures.toList()) {
        const Decision::DetectionDecision decision = decisionOf(measure);
        if (decision == Decision::POSITIVE) {
            setResult(Decision::POSITIVE, Statut::POSITIVE);
            return;
        }
        if (decision == Decision::NEGATIVE && ++negatives >= nbMeasures) {
            setResult(Decision::NEGATIVE, Statut::NEGATIVE);
            return;
        }
    }
}
