// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "nap/napserver.h"

namespace com {
namespace halvar {
namespace nap {

namespace {

const QByteArray InterfacePrefix("com.halvar.nap.NAPServer:");

tessel::Tuple requestOf(const char *operation)
{
    return tessel::Tuple(QByteArray("com.halvar.nap.NAPServer.").append(operation).constData());
}

/// Calls the implementation directly when it lives in this process, else through the middleware.
template <typename Direct, typename Remote>
int callEither(tessel::Service *service, Direct direct, Remote remote)
{
    if (!service)
        return tessel::ERR_PEER_GONE;
    if (auto *implementation = dynamic_cast<NAPServer *>(service)) {
        const tessel::SessionContextScope scope(*service);
        return direct(*implementation);
    }
    return remote(*service);
}

/// An operation without arguments.
int callPlain(tessel::Service *service, const char *operation, int (NAPServer::*direct)())
{
    return callEither(
        // cppcheck-suppress constParameter ; the operation is no const one
        service, [direct](NAPServer &server) { return (server.*direct)(); },
        [operation](tessel::Service &remote) {
            tessel::Tuple reply;
            return remote.call(requestOf(operation), reply);
        });
}

/// An operation that takes and gives plain tuples.
int callTuple(tessel::Service *service, const char *operation, const tessel::Tuple &request,
              tessel::Tuple &reply, int (NAPServer::*direct)(const tessel::Tuple &, tessel::Tuple &))
{
    return callEither(
        // cppcheck-suppress constParameter ; the operation is no const one
        service, [&](NAPServer &server) { return (server.*direct)(request, reply); },
        [&](tessel::Service &remote) {
            tessel::Tuple named = requestOf(operation);
            named.splice(request);
            return remote.call(named, reply);
        });
}

/// An operation that takes an observer's description.
int callObserver(tessel::Service *service, const char *operation, const tessel::AString &description,
                 int (NAPServer::*direct)(const tessel::AString &))
{
    return callEither(
        // cppcheck-suppress constParameter ; the operation is no const one
        service, [&](NAPServer &server) { return (server.*direct)(description); },
        [&](tessel::Service &remote) {
            tessel::Tuple request = requestOf(operation);
            request.set("serviceDescription", tessel::Value(description));
            tessel::Tuple reply;
            return remote.call(request, reply);
        });
}

} // namespace

bool PNAPServer::bind(const char *description)
{
    QByteArray text(description);
    if (!text.startsWith(InterfacePrefix))
        text.prepend(InterfacePrefix);
    static_cast<tessel::AutoRef<tessel::Service> &>(*this) = tessel::Service::bind(tessel::AString(text));
    return get() != nullptr;
}

PNAPServer PNAPServer::create(NAPServer *implementation)
{
    return PNAPServer(implementation);
}

int PNAPServer::getNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "getNAPConfiguration", request, reply, &NAPServer::getNAPConfiguration);
}

int PNAPServer::setNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "setNAPConfiguration", request, reply, &NAPServer::setNAPConfiguration);
}

int PNAPServer::resetNAPConfiguration(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "resetNAPConfiguration", request, reply, &NAPServer::resetNAPConfiguration);
}

int PNAPServer::getLastCalibrationDate(tessel::TimeDate &date) const
{
    return callEither(
        get(), [&](NAPServer &server) { return server.getLastCalibrationDate(date); },
        [&](tessel::Service &remote) {
            tessel::Tuple reply;
            const int status = remote.call(requestOf("getLastCalibrationDate"), reply);
            if (status >= 0)
                date = reply.get("date").toTimeDate(); // TimeDate(0) when the service has none
            return status;
        });
}

int PNAPServer::exit(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "exit", request, reply, &NAPServer::exit);
}

int PNAPServer::setLogLevel(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "setLogLevel", request, reply, &NAPServer::setLogLevel);
}

int PNAPServer::getInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "getInstrumentCharacteristics", request, reply,
                     &NAPServer::getInstrumentCharacteristics);
}

int PNAPServer::setInstrumentCharacteristics(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "setInstrumentCharacteristics", request, reply,
                     &NAPServer::setInstrumentCharacteristics);
}

int PNAPServer::init(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "init", request, reply, &NAPServer::init);
}

int PNAPServer::serve(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "serve", request, reply, &NAPServer::serve);
}

int PNAPServer::destroy(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "destroy", request, reply, &NAPServer::destroy);
}

int PNAPServer::startMeasure(const MeasureCustomData &customData, bool autoStop) const
{
    return callEither(
        get(), [&](NAPServer &server) { return server.startMeasure(customData, autoStop); },
        [&](tessel::Service &remote) {
            tessel::Tuple request = requestOf("startMeasure");
            request.set("customData", tessel::Value(customData));
            request.set("autoStop", tessel::Value(autoStop));
            tessel::Tuple reply;
            return remote.call(request, reply);
        });
}

int PNAPServer::requestStopMeasure() const
{
    return callPlain(get(), "requestStopMeasure", &NAPServer::requestStopMeasure);
}

int PNAPServer::startCalibration() const
{
    return callPlain(get(), "startCalibration", &NAPServer::startCalibration);
}

int PNAPServer::abort() const
{
    return callPlain(get(), "abort", &NAPServer::abort);
}

int PNAPServer::startSpectrumAcquisitionByDuration(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "startSpectrumAcquisitionByDuration", request, reply,
                     &NAPServer::startSpectrumAcquisitionByDuration);
}

int PNAPServer::startSpectrumAcquisitionByCounts(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "startSpectrumAcquisitionByCounts", request, reply,
                     &NAPServer::startSpectrumAcquisitionByCounts);
}

int PNAPServer::startAccuracyCheck() const
{
    return callPlain(get(), "startAccuracyCheck", &NAPServer::startAccuracyCheck);
}

int PNAPServer::sendLastStatus() const
{
    return callPlain(get(), "sendLastStatus", &NAPServer::sendLastStatus);
}

int PNAPServer::getLastMeasure(MeasureSummary &measure) const
{
    return callEither(
        get(), [&](NAPServer &server) { return server.getLastMeasure(measure); },
        [&](tessel::Service &remote) {
            tessel::Tuple reply;
            const int status = remote.call(requestOf("getLastMeasure"), reply);
            if (status >= 0)
                measure.splice(reply.get("measure").toTuple());
            return status;
        });
}

int PNAPServer::getLastMeasures(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "getLastMeasures", request, reply, &NAPServer::getLastMeasures);
}

int PNAPServer::getMeasure(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "getMeasure", request, reply, &NAPServer::getMeasure);
}

int PNAPServer::getMeasures(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "getMeasures", request, reply, &NAPServer::getMeasures);
}

int PNAPServer::registerObserver(const tessel::AString &serviceDescription) const
{
    return callObserver(get(), "registerObserver", serviceDescription, &NAPServer::registerObserver);
}

int PNAPServer::unregisterObserver(const tessel::AString &serviceDescription) const
{
    return callObserver(get(), "unregisterObserver", serviceDescription, &NAPServer::unregisterObserver);
}

int PNAPServer::notify(const tessel::Tuple &request, tessel::Tuple &reply) const
{
    return callTuple(get(), "notify", request, reply, &NAPServer::notify);
}

} // namespace nap
} // namespace halvar
} // namespace com
