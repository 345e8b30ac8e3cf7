// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_UD_H
#define HALVAR_UD_H

#include <QObject>
#include <QString>

#include "enums.h"
#include "halvar-export.h"
#include "measurelistmodel.h"

/// A diagnostic unit: one coated surface of a building, with its measures and what they say together.
class HALVAR_EXPORT UD : public QObject
{
    Q_OBJECT

    Q_PROPERTY(int identifier READ identifier WRITE setIdentifier NOTIFY identifierChanged)
    Q_PROPERTY(UDStatutEnumClass::UDStatut statut READ statut WRITE setStatut NOTIFY statutChanged)
    Q_PROPERTY(QString observation READ observation WRITE setObservation NOTIFY observationChanged)
    Q_PROPERTY(DetectionDecisionEnumClass::DetectionDecision detectionDecision READ detectionDecision WRITE
                   setDetectionDecision NOTIFY detectionDecisionChanged)
    /// Room, element, coating and substrate: titles of the reference lists, or the operator's own.
    Q_PROPERTY(QString local READ local WRITE setLocal NOTIFY localChanged)
    /// Letter of the zone within the room; the character code, as QML has no character type.
    Q_PROPERTY(char zone READ zone WRITE setZone NOTIFY zoneChanged)
    Q_PROPERTY(QString element READ element WRITE setElement NOTIFY elementChanged)
    Q_PROPERTY(QString revetement READ revetement WRITE setRevetement NOTIFY revetementChanged)
    Q_PROPERTY(QString substrat READ substrat WRITE setSubstrat NOTIFY substratChanged)
    /// The unit's own list, never null, oldest measure first.
    Q_PROPERTY(MeasureListModel *measures READ measures NOTIFY measuresChanged)

public:
    explicit UD(QObject *parent = nullptr);
    /// A unit that continues \p source: same room, element, substrate and coating, next zone letter (after
    /// 'Z' the next character follows). A null source gives a blank unit.
    UD(const UD *source, QObject *parent);

    int identifier() const { return m_identifier; }
    UDStatutEnumClass::UDStatut statut() const { return m_statut; }
    QString observation() const { return m_observation; }
    DetectionDecisionEnumClass::DetectionDecision detectionDecision() const { return m_detectionDecision; }
    QString local() const { return m_local; }
    char zone() const { return m_zone; }
    QString element() const { return m_element; }
    QString revetement() const { return m_revetement; }
    QString substrat() const { return m_substrat; }
    MeasureListModel *measures() { return &m_measures; }
    const MeasureListModel *measures() const { return &m_measures; }

    void setIdentifier(int identifier);
    void setStatut(UDStatutEnumClass::UDStatut statut);
    void setObservation(const QString &observation);
    void setDetectionDecision(DetectionDecisionEnumClass::DetectionDecision detectionDecision);
    void setLocal(const QString &local);
    void setZone(char zone);
    void setElement(const QString &element);
    void setRevetement(const QString &revetement);
    void setSubstrat(const QString &substrat);

    /// Derives decision and statut from the measures, in their order: one positive measure makes the unit
    /// positive, unless \p nbMeasures negative ones came before it and made it negative. Else nothing
    /// changes. A unit marked as not measured is left alone.
    void updateStatut(int nbMeasures);

signals:
    void identifierChanged();
    void statutChanged();
    void observationChanged();
    void detectionDecisionChanged();
    void localChanged();
    void zoneChanged();
    void elementChanged();
    void revetementChanged();
    void substratChanged();
    void measuresChanged();

private:
    void setResult(DetectionDecisionEnumClass::DetectionDecision decision,
                   UDStatutEnumClass::UDStatut statut);

    int m_identifier = 0;
    UDStatutEnumClass::UDStatut m_statut = UDStatutEnumClass::RAW;
    QString m_observation;
    DetectionDecisionEnumClass::DetectionDecision m_detectionDecision =
        DetectionDecisionEnumClass::NOT_DETERMINED;
    QString m_local;
    char m_zone = 'A';
    QString m_element;
    QString m_revetement;
    QString m_substrat;
    MeasureListModel m_measures;
};

#endif // HALVAR_UD_H
