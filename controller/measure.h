// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_MEASURE_H
#define HALVAR_MEASURE_H

#include <QMetaType>
#include <QObject>
#include <QString>

#include <array>

#include <nap/records.h>

#include "enums.h"
#include "halvar-export.h"

/// One shot as the interface shows it: concentration with its sigma, decision, and what the operator noted
/// about the spot.
///
/// While a shot runs, each intermediate result is taken over and the last four are kept. The last results
/// before the trigger is released are taken with a hand that already moves: updateResult() settles the shot
/// on the one received three before the newest. Interface thread only.
class HALVAR_EXPORT Measure : public QObject
{
    Q_OBJECT

    Q_PROPERTY(double concentration READ concentration NOTIFY concentrationChanged)
    Q_PROPERTY(double sigma READ sigma NOTIFY sigmaChanged)
    Q_PROPERTY(DetectionDecisionEnumClass::DetectionDecision detectionDecision READ detectionDecision NOTIFY
                   detectionDecisionChanged)
    /// Where on the element the shot was taken.
    Q_PROPERTY(LocalisationEnumClass::Localisation localisation READ localisation WRITE setLocalisation NOTIFY
                   localisationChanged)
    Q_PROPERTY(DegradationStateEnumClass::DegradationState degradationState READ degradationState WRITE
                   setDegradationState NOTIFY degradationStateChanged)
    /// State of conservation, free text. Its changes are announced by degradationStateChanged() only.
    Q_PROPERTY(QString conservationState READ conservationState WRITE setConservationState NOTIFY
                   conservationStateChanged)
    /// The analysis service's number of the measure, -1 for none.
    Q_PROPERTY(int idNAP READ idNAP WRITE setIdNAP NOTIFY idNAPChanged)

public:
    explicit Measure(QObject *parent = nullptr);

    double concentration() const { return m_concentration; }
    double sigma() const { return m_sigma; }
    DetectionDecisionEnumClass::DetectionDecision detectionDecision() const { return m_detectionDecision; }
    LocalisationEnumClass::Localisation localisation() const { return m_localisation; }
    DegradationStateEnumClass::DegradationState degradationState() const { return m_degradationState; }
    QString conservationState() const { return m_conservationState; }
    int idNAP() const { return m_idNAP; }

    /// These three signal a change, and keep the value among the last four whether it changed or not. The
    /// concentration counts as one value received.
    void setConcentration(double concentration);
    void setSigma(double sigma);
    void setDetectionDecision(const DetectionDecisionEnumClass::DetectionDecision &detectionDecision);

    void setLocalisation(LocalisationEnumClass::Localisation localisation);
    void setDegradationState(DegradationStateEnumClass::DegradationState degradationState);
    void setConservationState(const QString &conservationState);
    void setIdNAP(int id);

    /// Takes a result of the service over; one without a decision changes nothing.
    void setDetectionResult(const com::halvar::nap::DetectionResult &result);
    /// Back to a blank measure. The number of values received goes on growing.
    void reset();
    /// Settles the shot on the result received three before the newest; with three values or fewer it stays
    /// as it is.
    void updateResult();

signals:
    void concentrationChanged(double concentration);
    void sigmaChanged();
    void detectionDecisionChanged(DetectionDecisionEnumClass::DetectionDecision detectionDecision);
    void localisationChanged();
    void degradationStateChanged();
    void conservationStateChanged();
    void idNAPChanged();

private:
    double m_concentration = 0.0;
    double m_sigma = 0.0;
    // The last four received, newest first.
    std::array<double, 4> mem_concentration{};
    std::array<double, 4> mem_sigma{};
    std::array<DetectionDecisionEnumClass::DetectionDecision, 4> mem_detectionDecision{};
    DetectionDecisionEnumClass::DetectionDecision m_detectionDecision =
        DetectionDecisionEnumClass::NOT_DETERMINED;
    LocalisationEnumClass::Localisation m_localisation = LocalisationEnumClass::NOT_DETERMINED;
    DegradationStateEnumClass::DegradationState m_degradationState = DegradationStateEnumClass::NON_DEGRADE;
    QString m_conservationState;
    int m_idNAP = -1;
    int m_nbMesure = 0;
};

Q_DECLARE_METATYPE(Measure *)

#endif // HALVAR_MEASURE_H
