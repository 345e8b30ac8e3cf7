// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "enums.h"

#include <QMetaEnum>
#include <QQmlEngine>

namespace {

/// Makes \a Holder a type that QML can name but not create, and its enumeration \a Enum a meta type.
template <class Holder, typename Enum>
void declareHolder()
{
    const QByteArray holder = Holder::staticMetaObject.className();
    const QByteArray enumeration = holder + "::" + QMetaEnum::fromType<Enum>().name();
    qRegisterMetaType<Enum>(enumeration.constData());
    qmlRegisterUncreatableType<Holder>("Halvar", 4, 0, holder.constData(),
                                       QString::fromLatin1(holder + " only holds an enumeration"));
}

} // namespace

// A holder has no state: a copy of one is a new holder without parent.

AccuracyStageEnumClass::AccuracyStageEnumClass() = default;

AccuracyStageEnumClass::AccuracyStageEnumClass(QObject *parent)
    : QObject(parent)
{ }

AccuracyStageEnumClass::AccuracyStageEnumClass(const AccuracyStageEnumClass &)
    : QObject()
{ }

AccuracyStageEnumClass::~AccuracyStageEnumClass() = default;

void AccuracyStageEnumClass::declareQML()
{
    declareHolder<AccuracyStageEnumClass, AccuracyStage>();
}

const char *const AccuracyStageEnumClass::AccuracyStageNames[] = {"LIVE", "INIT", "INTERRUPT", "FINAL"};

AcquisitionModeEnumClass::AcquisitionModeEnumClass() = default;

AcquisitionModeEnumClass::AcquisitionModeEnumClass(QObject *parent)
    : QObject(parent)
{ }

AcquisitionModeEnumClass::AcquisitionModeEnumClass(const AcquisitionModeEnumClass &)
    : QObject()
{ }

AcquisitionModeEnumClass::~AcquisitionModeEnumClass() = default;

void AcquisitionModeEnumClass::declareQML()
{
    declareHolder<AcquisitionModeEnumClass, AcquisitionMode>();
}

const char *const AcquisitionModeEnumClass::AcquisitionModeNames[] = {"NONE", "START_MEASURE", "MEASURE",
                                                                      "ACCURACY", "CALIBRATION"};

BranchModeEnumClass::BranchModeEnumClass() = default;

BranchModeEnumClass::BranchModeEnumClass(QObject *parent)
    : QObject(parent)
{ }

BranchModeEnumClass::BranchModeEnumClass(const BranchModeEnumClass &)
    : QObject()
{ }

BranchModeEnumClass::~BranchModeEnumClass() = default;

void BranchModeEnumClass::declareQML()
{
    declareHolder<BranchModeEnumClass, BranchMode>();
}

const char *const BranchModeEnumClass::BranchModeNames[] = {"NONE", "DIRECT", "INDEXED"};

MeasureModeEnumClass::MeasureModeEnumClass() = default;

MeasureModeEnumClass::MeasureModeEnumClass(QObject *parent)
    : QObject(parent)
{ }

MeasureModeEnumClass::MeasureModeEnumClass(const MeasureModeEnumClass &)
    : QObject()
{ }

MeasureModeEnumClass::~MeasureModeEnumClass() = default;

void MeasureModeEnumClass::declareQML()
{
    declareHolder<MeasureModeEnumClass, MeasureMode>();
}

const char *const MeasureModeEnumClass::MeasureModeNames[] = {"TRIGGER", "AUTO", "DEFINED"};

DetectionDecisionEnumClass::DetectionDecisionEnumClass() = default;

DetectionDecisionEnumClass::DetectionDecisionEnumClass(QObject *parent)
    : QObject(parent)
{ }

DetectionDecisionEnumClass::DetectionDecisionEnumClass(const DetectionDecisionEnumClass &)
    : QObject()
{ }

DetectionDecisionEnumClass::~DetectionDecisionEnumClass() = default;

void DetectionDecisionEnumClass::declareQML()
{
    declareHolder<DetectionDecisionEnumClass, DetectionDecision>();
}

const char *const DetectionDecisionEnumClass::DetectionDecisionNames[] = {
    "Positive",  "Négative",      "Indéterminée", "INSUFFICIENT_ACQTIME", "COMPTON_ERROR",
    "Confirmée", "Non Confirmée", "Non Calibrée", "Pas de décision"};

UDStatutEnumClass::UDStatutEnumClass() = default;

UDStatutEnumClass::UDStatutEnumClass(QObject *parent)
    : QObject(parent)
{ }

UDStatutEnumClass::UDStatutEnumClass(const UDStatutEnumClass &)
    : QObject()
{ }

UDStatutEnumClass::~UDStatutEnumClass() = default;

void UDStatutEnumClass::declareQML()
{
    declareHolder<UDStatutEnumClass, UDStatut>();
}

const char *const UDStatutEnumClass::UDStatutNames[] = {"", "Positive", "Négative", "Non Mesurée"};

DegradationStateEnumClass::DegradationStateEnumClass() = default;

DegradationStateEnumClass::DegradationStateEnumClass(QObject *parent)
    : QObject(parent)
{ }

DegradationStateEnumClass::DegradationStateEnumClass(const DegradationStateEnumClass &)
    : QObject()
{ }

DegradationStateEnumClass::~DegradationStateEnumClass() = default;

void DegradationStateEnumClass::declareQML()
{
    declareHolder<DegradationStateEnumClass, DegradationState>();
}

const char *const DegradationStateEnumClass::DegradationStateNames[] = {"", "Non Visible", "Etat d'Usage",
                                                                        "Dégradé"};

LocalisationEnumClass::LocalisationEnumClass() = default;

LocalisationEnumClass::LocalisationEnumClass(QObject *parent)
    : QObject(parent)
{ }

LocalisationEnumClass::LocalisationEnumClass(const LocalisationEnumClass &)
    : QObject()
{ }

LocalisationEnumClass::~LocalisationEnumClass() = default;

void LocalisationEnumClass::declareQML()
{
    declareHolder<LocalisationEnumClass, Localisation>();
}

const char *const LocalisationEnumClass::LocalisationNames[] = {"Gauche", "Haut",   "Centre",
                                                                "Bas",    "Droite", ""};

CalibrationEnumClass::CalibrationEnumClass() = default;

CalibrationEnumClass::CalibrationEnumClass(QObject *parent)
    : QObject(parent)
{ }

CalibrationEnumClass::CalibrationEnumClass(const CalibrationEnumClass &)
    : QObject()
{ }

CalibrationEnumClass::~CalibrationEnumClass() = default;

void CalibrationEnumClass::declareQML()
{
    declareHolder<CalibrationEnumClass, CalibrationStatut>();
}

BatteryLevelsEnumClass::BatteryLevelsEnumClass() = default;

BatteryLevelsEnumClass::BatteryLevelsEnumClass(QObject *parent)
    : QObject(parent)
{ }

BatteryLevelsEnumClass::BatteryLevelsEnumClass(const BatteryLevelsEnumClass &)
    : QObject()
{ }

BatteryLevelsEnumClass::~BatteryLevelsEnumClass() = default;

void BatteryLevelsEnumClass::declareQML()
{
    declareHolder<BatteryLevelsEnumClass, BatteryLevels>();
}
