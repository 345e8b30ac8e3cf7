// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_NAP_NAPSERVER_H
#define HALVAR_NAP_NAPSERVER_H

#include <tessel/tessel.h>

#include "export.h"
#include "records.h"

namespace com {
namespace halvar {
namespace nap {

/// The analysis service, as an implementation offers it. Every operation answers ERR_NOT_IMPLEMENTED until it
/// is overridden; requests from other processes arrive on the middleware's dispatch thread.
///
/// Operations that no client of ours uses take and give plain tuples.
class HALVAR_NAP_EXPORT NAPServer : public tessel::Service
{
public:
    NAPServer();

    static const char *get_factory_class_name();
    /// Makes the interface known to the middleware; without effect when it is.
    static void load_stub();

    virtual int getNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int setNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int resetNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply);
    /// \param date is set only when the result is not negative.
    virtual int getLastCalibrationDate(tessel::TimeDate &date);
    virtual int exit(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int setLogLevel(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int getInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int setInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int init(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int serve(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int destroy(const tessel::Tuple &request, tessel::Tuple &reply);
    /// \param autoStop the service ends the measure itself, once it is decided.
    virtual int startMeasure(const MeasureCustomData &customData, bool autoStop);
    virtual int requestStopMeasure();
    virtual int startCalibration();
    virtual int abort();
    virtual int startSpectrumAcquisitionByDuration(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int startSpectrumAcquisitionByCounts(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int startAccuracyCheck();
    virtual int sendLastStatus();
    /// \param measure takes over the fields of the last measure's summary; its own others stay.
    virtual int getLastMeasure(MeasureSummary &measure);
    virtual int getLastMeasures(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int getMeasure(const tessel::Tuple &request, tessel::Tuple &reply);
    virtual int getMeasures(const tessel::Tuple &request, tessel::Tuple &reply);
    /// \param serviceDescription where to call the observer back, "name@TCPIP:host:port".
    virtual int registerObserver(const tessel::AString &serviceDescription);
    virtual int unregisterObserver(const tessel::AString &serviceDescription);
    virtual int notify(const tessel::Tuple &request, tessel::Tuple &reply);

    /// Hands a request on to its operation.
    int call(const tessel::Tuple &request, tessel::Tuple &reply) override;

protected:
    ~NAPServer() override = default;
};

/// A client's handle of the analysis service: empty until bound. Each operation blocks until the service has
/// answered, at most for the middleware's time limit, and returns its status, negative on failure; an empty
/// handle answers ERR_PEER_GONE. A service that lives in this process is called directly.
class HALVAR_NAP_EXPORT PNAPServer : public tessel::AutoRef<tessel::Service>
{
public:
    using tessel::AutoRef<tessel::Service>::AutoRef;

    /// \param description "name@TCPIP:host:port", with or without the interface and a colon before it.
    /// \return whether the service was found; the handle holds it, and has let go of the one before.
    bool bind(const char *description);
    /// A handle of an implementation in this process.
    static PNAPServer create(NAPServer *implementation);

    int getNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int setNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int resetNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int getLastCalibrationDate(tessel::TimeDate &date) const;
    int exit(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int setLogLevel(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int getInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int setInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int init(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int serve(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int destroy(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int startMeasure(const MeasureCustomData &customData, bool autoStop) const;
    int requestStopMeasure() const;
    int startCalibration() const;
    int abort() const;
    int startSpectrumAcquisitionByDuration(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int startSpectrumAcquisitionByCounts(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int startAccuracyCheck() const;
    int sendLastStatus() const;
    int getLastMeasure(MeasureSummary &measure) const;
    int getLastMeasures(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int getMeasure(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int getMeasures(const tessel::Tuple &request, tessel::Tuple &reply) const;
    int registerObserver(const tessel::AString &serviceDescription) const;
    int unregisterObserver(const tessel::AString &serviceDescription) const;
    int notify(const tessel::Tuple &request, tessel::Tuple &reply) const;
};

} // namespace nap
} // namespace halvar
} // namespace com

#endif // HALVAR_NAP_NAPSERVER_H
