// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAP_RECORDS_H
#define HALVAR_NAP_RECORDS_H

#include <QMetaType>

#include <tessel/tuple.h>

#include <utility>

#include "export.h"
#include "field.h"

/// The analysis service's records, as they travel. Each is a tuple with a class name of its own; a field is
/// set from its C++ type or from a typed value, and reads as 0 when it is absent. Implicitly shared values.
namespace com {
namespace halvar {
namespace nap {

// A value outside its list is carried unchanged.
enum AcqStatus : int {
    NOT_STARTED = 0, ///< no acquisition runs: the one before has ended
    IN_PROGRESS = 1,
    ERROR = 2
};

enum AcqError : int {
    UNKNOWN_ERROR = 0,
    INVALID_TEMPERATURE = 1,
    INVALID_ACCELERATING_VOLTAGE = 2,
    DPP_ERROR = 3,
    DATA_MANAGER_ERROR = 4,
    TIMEOUT_ERROR = 5
};

enum DetectionDecision : int {
    POSITIVE = 0,
    NEGATIVE = 1,
    UNDETERMINED = 2,
    INSUFFICIENT_ACQTIME = 3,
    COMPTON_ERROR = 4,
    ACCURACY_OK = 5,
    ACCURACY_ERROR = 6,
    UNCALIBRATED = 7
};

/// Base of the records: an empty tuple of the record's class name, or a view of a tuple that came in.
template <typename Record>
class RecordBase : public tessel::Tuple
{
public:
    RecordBase() { init(); }
    /// Takes the fields over, whatever class name they came under.
    explicit RecordBase(const tessel::Tuple &tuple)
        : tessel::Tuple(tuple)
    {
        init();
    }
    explicit RecordBase(tessel::Tuple &&tuple)
        : tessel::Tuple(std::move(tuple))
    {
        init();
    }
    void init() { set_class_name(Record::getSymbClassName()); }
};

/// Temperature in °C, accelerating voltage in V, and whether the service can acquire with them.
class HALVAR_NAP_EXPORT AcqConditions : public RecordBase<AcqConditions>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_temperature(double value) { s_temperature.set(*this, value); }
    void set_temperature(const tessel::Value &value) { s_temperature.set(*this, value); }
    double get_temperature() const { return s_temperature.get(*this); }
    bool is_set_temperature() const { return s_temperature.isSet(*this); }

    void set_acceleratingVoltage(double value) { s_acceleratingVoltage.set(*this, value); }
    void set_acceleratingVoltage(const tessel::Value &value) { s_acceleratingVoltage.set(*this, value); }
    double get_acceleratingVoltage() const { return s_acceleratingVoltage.get(*this); }
    bool is_set_acceleratingVoltage() const { return s_acceleratingVoltage.isSet(*this); }

    void set_readyForAcquisition(bool value) { s_readyForAcquisition.set(*this, value); }
    void set_readyForAcquisition(const tessel::Value &value) { s_readyForAcquisition.set(*this, value); }
    bool get_readyForAcquisition() const { return s_readyForAcquisition.get(*this); }
    bool is_set_readyForAcquisition() const { return s_readyForAcquisition.isSet(*this); }

    void set_acceptableTemperature(bool value) { s_acceptableTemperature.set(*this, value); }
    void set_acceptableTemperature(const tessel::Value &value) { s_acceptableTemperature.set(*this, value); }
    bool get_acceptableTemperature() const { return s_acceptableTemperature.get(*this); }
    bool is_set_acceptableTemperature() const { return s_acceptableTemperature.isSet(*this); }

    void set_acceptableAcceleratingVoltage(bool value) { s_acceptableAcceleratingVoltage.set(*this, value); }
    void set_acceptableAcceleratingVoltage(const tessel::Value &value)
    {
        s_acceptableAcceleratingVoltage.set(*this, value);
    }
    bool get_acceptableAcceleratingVoltage() const { return s_acceptableAcceleratingVoltage.get(*this); }
    bool is_set_acceptableAcceleratingVoltage() const { return s_acceptableAcceleratingVoltage.isSet(*this); }

private:
    static constexpr Field<double> s_temperature{"temperature"};
    static constexpr Field<double> s_acceleratingVoltage{"acceleratingVoltage"};
    static constexpr Field<bool> s_readyForAcquisition{"readyForAcquisition"};
    static constexpr Field<bool> s_acceptableTemperature{"acceptableTemperature"};
    static constexpr Field<bool> s_acceptableAcceleratingVoltage{"acceptableAcceleratingVoltage"};
};

/// Concentration, its standard deviation and the decision; a result without a decision begins a shot.
class HALVAR_NAP_EXPORT DetectionResult : public RecordBase<DetectionResult>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_value(double value) { s_value.set(*this, value); }
    void set_value(const tessel::Value &value) { s_value.set(*this, value); }
    double get_value() const { return s_value.get(*this); }
    bool is_set_value() const { return s_value.isSet(*this); }

    void set_sigma(double value) { s_sigma.set(*this, value); }
    void set_sigma(const tessel::Value &value) { s_sigma.set(*this, value); }
    double get_sigma() const { return s_sigma.get(*this); }
    bool is_set_sigma() const { return s_sigma.isSet(*this); }

    void set_decision(DetectionDecision value) { s_decision.set(*this, value); }
    void set_decision(const tessel::Value &value) { s_decision.set(*this, value); }
    DetectionDecision get_decision() const { return s_decision.get(*this); }
    bool is_set_decision() const { return s_decision.isSet(*this); }

    void set_algorithmExecutionDetails(const tessel::AString &value)
    {
        s_algorithmExecutionDetails.set(*this, value);
    }
    void set_algorithmExecutionDetails(const tessel::Value &value)
    {
        s_algorithmExecutionDetails.set(*this, value);
    }
    tessel::AString get_algorithmExecutionDetails() const { return s_algorithmExecutionDetails.get(*this); }
    bool is_set_algorithmExecutionDetails() const { return s_algorithmExecutionDetails.isSet(*this); }

    void set_sourceActivity(double value) { s_sourceActivity.set(*this, value); }
    void set_sourceActivity(const tessel::Value &value) { s_sourceActivity.set(*this, value); }
    double get_sourceActivity() const { return s_sourceActivity.get(*this); }
    bool is_set_sourceActivity() const { return s_sourceActivity.isSet(*this); }

private:
    static constexpr Field<double> s_value{"value"};
    static constexpr Field<double> s_sigma{"sigma"};
    static constexpr Field<DetectionDecision> s_decision{"decision"};
    static constexpr Field<tessel::AString> s_algorithmExecutionDetails{"algorithmExecutionDetails"};
    static constexpr Field<double> s_sourceActivity{"sourceActivity"};
};

/// How a spectrum was taken.
class HALVAR_NAP_EXPORT SpectrumInformation : public RecordBase<SpectrumInformation>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_liveTime(const tessel::TimePeriod &value) { s_liveTime.set(*this, value); }
    void set_liveTime(const tessel::Value &value) { s_liveTime.set(*this, value); }
    tessel::TimePeriod get_liveTime() const { return s_liveTime.get(*this); }
    bool is_set_liveTime() const { return s_liveTime.isSet(*this); }

private:
    static constexpr Field<tessel::TimePeriod> s_liveTime{"liveTime"};
};

/// A spectrum's notification.
class HALVAR_NAP_EXPORT SpectrumResult : public RecordBase<SpectrumResult>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_information(const SpectrumInformation &value) { s_information.set(*this, value); }
    void set_information(const tessel::Value &value) { s_information.set(*this, value); }
    SpectrumInformation get_information() const { return s_information.get(*this); }
    bool is_set_information() const { return s_information.isSet(*this); }

private:
    static constexpr Field<SpectrumInformation> s_information{"information"};
};

/// What the client wants kept with a measure.
class HALVAR_NAP_EXPORT MeasureCustomData : public RecordBase<MeasureCustomData>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_sampleType(const tessel::AString &value) { s_sampleType.set(*this, value); }
    void set_sampleType(const tessel::Value &value) { s_sampleType.set(*this, value); }
    tessel::AString get_sampleType() const { return s_sampleType.get(*this); }
    bool is_set_sampleType() const { return s_sampleType.isSet(*this); }

    void set_properties(const tessel::Tuple &value) { s_properties.set(*this, value); }
    void set_properties(const tessel::Value &value) { s_properties.set(*this, value); }
    tessel::Tuple get_properties() const { return s_properties.get(*this); }
    bool is_set_properties() const { return s_properties.isSet(*this); }

private:
    static constexpr Field<tessel::AString> s_sampleType{"sampleType"};
    static constexpr Field<tessel::Tuple> s_properties{"properties"};
};

/// What the service keeps of a measure; id is its number there.
class HALVAR_NAP_EXPORT MeasureSummary : public RecordBase<MeasureSummary>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_id(int value) { s_id.set(*this, value); }
    void set_id(const tessel::Value &value) { s_id.set(*this, value); }
    int get_id() const { return s_id.get(*this); }
    bool is_set_id() const { return s_id.isSet(*this); }

    void set_spectrumInformation(const SpectrumInformation &value)
    {
        s_spectrumInformation.set(*this, value);
    }
    void set_spectrumInformation(const tessel::Value &value) { s_spectrumInformation.set(*this, value); }
    SpectrumInformation get_spectrumInformation() const { return s_spectrumInformation.get(*this); }
    bool is_set_spectrumInformation() const { return s_spectrumInformation.isSet(*this); }

    void set_detectionResult(const DetectionResult &value) { s_detectionResult.set(*this, value); }
    void set_detectionResult(const tessel::Value &value) { s_detectionResult.set(*this, value); }
    DetectionResult get_detectionResult() const { return s_detectionResult.get(*this); }
    bool is_set_detectionResult() const { return s_detectionResult.isSet(*this); }

    void set_customData(const MeasureCustomData &value) { s_customData.set(*this, value); }
    void set_customData(const tessel::Value &value) { s_customData.set(*this, value); }
    MeasureCustomData get_customData() const { return s_customData.get(*this); }
    bool is_set_customData() const { return s_customData.isSet(*this); }

private:
    static constexpr Field<int> s_id{"id"};
    static constexpr Field<SpectrumInformation> s_spectrumInformation{"spectrumInformation"};
    static constexpr Field<DetectionResult> s_detectionResult{"detectionResult"};
    static constexpr Field<MeasureCustomData> s_customData{"customData"};
};

/// One notification of the service: its kind ("NAP_STATUS", "NAP_DETECTION" or "NAP_SPECTRUM") and the kind's
/// own fields: status, conditions and error; detection; spectrum.
class HALVAR_NAP_EXPORT NotificationMessage : public RecordBase<NotificationMessage>
{
public:
    using RecordBase::RecordBase;
    static const tessel::Symbol &getSymbClassName();

    void set_id(const tessel::AString &value) { s_id.set(*this, value); }
    void set_id(const tessel::Value &value) { s_id.set(*this, value); }
    tessel::AString get_id() const { return s_id.get(*this); }
    bool is_set_id() const { return s_id.isSet(*this); }

    void set_component(const tessel::AString &value) { s_component.set(*this, value); }
    void set_component(const tessel::Value &value) { s_component.set(*this, value); }
    tessel::AString get_component() const { return s_component.get(*this); }
    bool is_set_component() const { return s_component.isSet(*this); }

    void set_status(AcqStatus value) { s_status.set(*this, value); }
    void set_status(const tessel::Value &value) { s_status.set(*this, value); }
    AcqStatus get_status() const { return s_status.get(*this); }
    bool is_set_status() const { return s_status.isSet(*this); }

    void set_conditions(const AcqConditions &value) { s_conditions.set(*this, value); }
    void set_conditions(const tessel::Value &value) { s_conditions.set(*this, value); }
    AcqConditions get_conditions() const { return s_conditions.get(*this); }
    bool is_set_conditions() const { return s_conditions.isSet(*this); }

    void set_error(AcqError value) { s_error.set(*this, value); }
    void set_error(const tessel::Value &value) { s_error.set(*this, value); }
    AcqError get_error() const { return s_error.get(*this); }
    bool is_set_error() const { return s_error.isSet(*this); }

    void set_detection(const DetectionResult &value) { s_detection.set(*this, value); }
    void set_detection(const tessel::Value &value) { s_detection.set(*this, value); }
    DetectionResult get_detection() const { return s_detection.get(*this); }
    bool is_set_detection() const { return s_detection.isSet(*this); }

    void set_spectrum(const SpectrumResult &value) { s_spectrum.set(*this, value); }
    void set_spectrum(const tessel::Value &value) { s_spectrum.set(*this, value); }
    SpectrumResult get_spectrum() const { return s_spectrum.get(*this); }
    bool is_set_spectrum() const { return s_spectrum.isSet(*this); }

private:
    static constexpr Field<tessel::AString> s_id{"id"};
    static constexpr Field<tessel::AString> s_component{"component"};
    static constexpr Field<AcqStatus> s_status{"status"};
    static constexpr Field<AcqConditions> s_conditions{"conditions"};
    static constexpr Field<AcqError> s_error{"error"};
    static constexpr Field<DetectionResult> s_detection{"detection"};
    static constexpr Field<SpectrumResult> s_spectrum{"spectrum"};
};

} // namespace nap
} // namespace halvar
} // namespace com

Q_DECLARE_METATYPE(com::halvar::nap::AcqStatus)
Q_DECLARE_METATYPE(com::halvar::nap::AcqError)
Q_DECLARE_METATYPE(com::halvar::nap::AcqConditions)
Q_DECLARE_METATYPE(com::halvar::nap::DetectionResult)

#endif // HALVAR_NAP_RECORDS_H
