// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "measurelistmodel.h"

MeasureListModel::MeasureListModel(QObject *parent)
    : QQmlObjectListModel<Measure>(parent, QByteArray(), QByteArray())
{
    // Each unit has a list of measures: normalizing the names anew would be half of making one.
    static const bool registered = [] {
        qRegisterMetaType<Measure *>("Measure*");
        qRegisterMetaType<DetectionDecisionEnumClass::DetectionDecision>(
            "DetectionDecisionEnumClass::DetectionDecision");
        qRegisterMetaType<LocalisationEnumClass::Localisation>("LocalisationEnumClass::Localisation");
        qRegisterMetaType<DegradationStateEnumClass::DegradationState>(
            "DegradationStateEnumClass::DegradationState");
        return true;
    }();
    Q_UNUSED(registered)
}

void MeasureListModel::lastFrontMeasure(const com::halvar::nap::DetectionResult &result)
{
    Measure *const newest = first();
    if (newest && result.is_set_decision())
        newest->setDetectionResult(result);
    else
        prepend(new Measure);
}

void MeasureListModel::lastBackMeasure(const com::halvar::nap::DetectionResult &result)
{
    Measure *const newest = last();
    if (newest && result.is_set_decision())
        newest->setDetectionResult(result);
    else
        append(new Measure);
}

void MeasureListModel::finalizeFirstMeasure()
{
    if (Measure *newest = first())
        newest->updateResult();
}

void MeasureListModel::finalizeLastMeasure()
{
    if (Measure *newest = last())
        newest->updateResult();
}
