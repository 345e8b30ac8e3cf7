// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_ENUMS_H
#define HALVAR_ENUMS_H

#include <QObject>

#include "halvar-export.h"

// One holder class for each enumeration that QML sees, so that QML names a value through its holder:
// DetectionDecisionEnumClass.POSITIVE. Values of different holders share keys but not numbers, so they are
// never converted into one another.
//
// Each holder's declareQML() makes it known to QML (import Halvar 4.0) and registers the enumeration as a
// meta type under its full name; call it once per holder before QML is loaded.
//
// A ...Names table holds UTF-8 labels by value. It is indexed without a check: halvar::nameOf() in labels.h
// is for values that come from outside. The NB_... entries are counts, no values, and have no label.

/// Stage of the accuracy check of a diagnostic.
class HALVAR_EXPORT AccuracyStageEnumClass : public QObject
{
    Q_OBJECT

public:
    enum AccuracyStage : int {
        ACCURACY_LIVE = 0,
        ACCURACY_INIT = 1,
        ACCURACY_INTERRUPT = 2,
        ACCURACY_FINAL = 3,
        NB_ACCURACYSTAGE = 4
    };
    Q_ENUM(AccuracyStage)

    AccuracyStageEnumClass();
    explicit AccuracyStageEnumClass(QObject *parent);
    AccuracyStageEnumClass(const AccuracyStageEnumClass &other);
    ~AccuracyStageEnumClass() override;

    static void declareQML();

    /// For log lines.
    static const char *const AccuracyStageNames[NB_ACCURACYSTAGE];
};

/// What the instrument is doing.
class HALVAR_EXPORT AcquisitionModeEnumClass : public QObject
{
    Q_OBJECT

public:
    enum AcquisitionMode : int {
        NONE = 0,
        START_MEASURE = 1,
        MEASURE = 2,
        ACCURACY = 3,
        CALIBRATION = 4,
        NB_ACQUISITIONMODE = 5
    };
    Q_ENUM(AcquisitionMode)

    AcquisitionModeEnumClass();
    explicit AcquisitionModeEnumClass(QObject *parent);
    AcquisitionModeEnumClass(const AcquisitionModeEnumClass &other);
    ~AcquisitionModeEnumClass() override;

    static void declareQML();

    /// For log lines.
    static const char *const AcquisitionModeNames[NB_ACQUISITIONMODE];
};

/// Where results go: to the direct measures, or to the unit in edition.
class HALVAR_EXPORT BranchModeEnumClass : public QObject
{
    Q_OBJECT

public:
    enum BranchMode : int {
        NONE = 0,
        BRANCH_DIRECT = 1,
        BRANCH_INDEXED = 2,
        NB_BRANCHMODE = 3
    };
    Q_ENUM(BranchMode)

    BranchModeEnumClass();
    explicit BranchModeEnumClass(QObject *parent);
    BranchModeEnumClass(const BranchModeEnumClass &other);
    ~BranchModeEnumClass() override;

    static void declareQML();

    /// For log lines.
    static const char *const BranchModeNames[NB_BRANCHMODE];
};

/// How a measure ends: trigger released, decided by the service, or after a set time.
class HALVAR_EXPORT MeasureModeEnumClass : public QObject
{
    Q_OBJECT

public:
    enum MeasureMode : int {
        TRIGGER = 0,
        AUTO = 1,
        DEFINED = 2,
        NB_MEASUREMODE = 3
    };
    Q_ENUM(MeasureMode)

    MeasureModeEnumClass();
    explicit MeasureModeEnumClass(QObject *parent);
    MeasureModeEnumClass(const MeasureModeEnumClass &other);
    ~MeasureModeEnumClass() override;

    static void declareQML();

    /// For log lines.
    static const char *const MeasureModeNames[NB_MEASUREMODE];
};

/// Verdict of a measure or an accuracy check. 0 to 7 are the analysis service's own numbers, taken over
/// as they are; NO_DECISION exists on this side only.
class HALVAR_EXPORT DetectionDecisionEnumClass : public QObject
{
    Q_OBJECT

public:
    enum DetectionDecision : int {
        POSITIVE = 0,
        NEGATIVE = 1,
        NOT_DETERMINED = 2,
        INSUFFICIENT_ACQTIME = 3,
        COMPTON_ERROR = 4,
        ACCURACY_OK = 5,
        ACCURACY_ERROR = 6,
        UNCALIBRATED = 7,
        NO_DECISION = 8
    };
    Q_ENUM(DetectionDecision)

    DetectionDecisionEnumClass();
    explicit DetectionDecisionEnumClass(QObject *parent);
    DetectionDecisionEnumClass(const DetectionDecisionEnumClass &other);
    ~DetectionDecisionEnumClass() override;

    static void declareQML();

    /// On screen and in files. Feminine, as they qualify a measure; two verdicts that operators never see
    /// keep their key.
    static const char *const DetectionDecisionNames[NO_DECISION + 1];
};

/// Statut of a diagnostic unit.
class HALVAR_EXPORT UDStatutEnumClass : public QObject
{
    Q_OBJECT

public:
    enum UDStatut : int {
        RAW = 0,
        POSITIVE = 1,
        NEGATIVE = 2,
        SKIPPED = 3
    };
    Q_ENUM(UDStatut)

    UDStatutEnumClass();
    explicit UDStatutEnumClass(QObject *parent);
    UDStatutEnumClass(const UDStatutEnumClass &other);
    ~UDStatutEnumClass() override;

    static void declareQML();

    /// On screen and in files; RAW is a unit without statut, hence the empty label.
    static const char *const UDStatutNames[SKIPPED + 1];
};

/// Nature of the degradation at a measured spot.
class HALVAR_EXPORT DegradationStateEnumClass : public QObject
{
    Q_OBJECT

public:
    enum DegradationState : int {
        NON_DEGRADE = 0,
        NON_VISIBLE = 1,
        ETAT_USAGE = 2,
        DEGRADE = 3
    };
    Q_ENUM(DegradationState)

    DegradationStateEnumClass();
    explicit DegradationStateEnumClass(QObject *parent);
    DegradationStateEnumClass(const DegradationStateEnumClass &other);
    ~DegradationStateEnumClass() override;

    static void declareQML();

    /// On screen and in files; empty where nothing was noted.
    static const char *const DegradationStateNames[DEGRADE + 1];
};

/// Where on the element a measure was taken.
class HALVAR_EXPORT LocalisationEnumClass : public QObject
{
    Q_OBJECT

public:
    enum Localisation : int {
        LEFT = 0,
        UP = 1,
        CENTER = 2,
        DOWN = 3,
        RIGHT = 4,
        NOT_DETERMINED = 5
    };
    Q_ENUM(Localisation)

    LocalisationEnumClass();
    explicit LocalisationEnumClass(QObject *parent);
    LocalisationEnumClass(const LocalisationEnumClass &other);
    ~LocalisationEnumClass() override;

    static void declareQML();

    /// On screen and in files; empty where nothing was noted.
    static const char *const LocalisationNames[NOT_DETERMINED + 1];
};

/// State of the calibration.
class HALVAR_EXPORT CalibrationEnumClass : public QObject
{
    Q_OBJECT

public:
    enum CalibrationStatut : int {
        NOT_STARTED = 0,
        IN_PROGRESS = 1,
        ERROR = 2,
        TOO_MANY_ERRORS = 3,
        DONE = 4
    };
    Q_ENUM(CalibrationStatut)

    CalibrationEnumClass();
    explicit CalibrationEnumClass(QObject *parent);
    CalibrationEnumClass(const CalibrationEnumClass &other);
    ~CalibrationEnumClass() override;

    static void declareQML();
};

/// Battery level. The values are the upper edges of the levels in µV, not indices; above LEVEL_GOOD the
/// battery is full. LEVEL_UNKNOW is spelled as QML spells it.
class HALVAR_EXPORT BatteryLevelsEnumClass : public QObject
{
    Q_OBJECT

public:
    enum BatteryLevels : int {
        LEVEL_UNKNOW = 0,
        LEVEL_CRITICAL = 3300000,
        LEVEL_VERY_LOW = 3500000,
        LEVEL_LOW = 3700000,
        LEVEL_GOOD = 3900000,
        LEVEL_FULL = 3900001
    };
    Q_ENUM(BatteryLevels)

    BatteryLevelsEnumClass();
    explicit BatteryLevelsEnumClass(QObject *parent);
    BatteryLevelsEnumClass(const BatteryLevelsEnumClass &other);
    ~BatteryLevelsEnumClass() override;

    static void declareQML();
};

#endif // HALVAR_ENUMS_H
