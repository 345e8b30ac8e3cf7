// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "measure.h"

#include <QsLog.h>

#include <algorithm>

namespace {

template <typename T>
void remember(std::array<T, 4> &history, const T &newest)
{
    std::copy_backward(history.begin(), history.end() - 1, history.end());
    history[0] = newest;
}

} // namespace

Measure::Measure(QObject *parent)
    : QObject(parent)
{
    // Zero would be POSITIVE: no verdict may come out of a history that holds none.
    mem_detectionDecision.fill(DetectionDecisionEnumClass::NOT_DETERMINED);
}

void Measure::setConcentration(double concentration)
{
    if (m_concentration != concentration) {
        m_concentration = concentration;
        QLOG_INFO() << "[Halvar Controller][Measure]: New concentration sent.";
        emit concentrationChanged(concentration);
    }
    ++m_nbMesure;
    remember(mem_concentration, concentration);
}

void Measure::setSigma(double sigma)
{
    if (m_sigma != sigma) {
        m_sigma = sigma;
        QLOG_INFO() << "[Halvar Controller][Measure]: New sigma sent.";
        emit sigmaChanged();
    }
    remember(mem_sigma, sigma);
}

void Measure::setDetectionDecision(const DetectionDecisionEnumClass::DetectionDecision &detectionDecision)
{
    const DetectionDecisionEnumClass::DetectionDecision decision =
        detectionDecision; // may lie in the history
    if (m_detectionDecision != decision) {
        m_detectionDecision = decision;
        QLOG_DEBUG() << "[Halvar Controller][Measure]: New detectionDecision sent.";
        emit detectionDecisionChanged(decision);
    }
    remember(mem_detectionDecision, decision);
}

void Measure::setLocalisation(LocalisationEnumClass::Localisation localisation)
{
    if (m_localisation == localisation)
        return;
    m_localisation = localisation;
    emit localisationChanged();
}

void Measure::setDegradationState(DegradationStateEnumClass::DegradationState degradationState)
{
    if (m_degradationState == degradationState)
        return;
    m_degradationState = degradationState;
    emit degradationStateChanged();
}

void Measure::setConservationState(const QString &conservationState)
{
    if (m_conservationState == conservationState)
        return;
    m_conservationState = conservationState;
    // The measure page refreshes degradation and conservation together, on this one signal.
    emit degradationStateChanged();
}

void Measure::setIdNAP(int id)
{
    if (m_idNAP == id)
        return;
    m_idNAP = id;
    emit idNAPChanged();
}

void Measure::setDetectionResult(const com::halvar::nap::DetectionResult &result)
{
    if (!result.is_set_decision())
        return;
    setConcentration(result.get_value());
    setSigma(result.get_sigma());
    setDetectionDecision(static_cast<DetectionDecisionEnumClass::DetectionDecision>(result.get_decision()));
}

void Measure::reset()
{
    setConcentration(0.0);
    setSigma(0.0);
    setDetectionDecision(DetectionDecisionEnumClass::NOT_DETERMINED);
    setLocalisation(LocalisationEnumClass::NOT_DETERMINED);
    setDegradationState(DegradationStateEnumClass::NON_DEGRADE);
    setConservationState(QString());
    setIdNAP(-1);
}

void Measure::updateResult()
{
    QLOG_DEBUG() << "[Halvar Controller][Measure]: updateResult: " << m_nbMesure;
    if (m_nbMesure <= 3)
        return;
    setConcentration(mem_concentration[3]);
    setSigma(mem_sigma[3]);
    setDetectionDecision(mem_detectionDecision[3]);
}
