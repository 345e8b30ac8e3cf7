// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "nap/napserver.h"

namespace com {
namespace halvar {
namespace nap {

NAPServer::NAPServer()
    : tessel::Service("com.halvar.nap.NAPServer")
{ }

const char *NAPServer::get_factory_class_name()
{
    return "com.halvar.nap.NAPServer";
}

void NAPServer::load_stub()
{
    tessel::init();
}

int NAPServer::getNAPConfiguration(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::setNAPConfiguration(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::resetNAPConfiguration(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getLastCalibrationDate(tessel::TimeDate &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::exit(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::setLogLevel(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getInstrumentCharacteristics(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::setInstrumentCharacteristics(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::init(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::serve(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::destroy(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::startMeasure(const MeasureCustomData &, bool)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::requestStopMeasure()
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::startCalibration()
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::abort()
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::startSpectrumAcquisitionByDuration(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::startSpectrumAcquisitionByCounts(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::startAccuracyCheck()
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::sendLastStatus()
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getLastMeasure(MeasureSummary &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getLastMeasures(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getMeasure(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::getMeasures(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::registerObserver(const tessel::AString &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::unregisterObserver(const tessel::AString &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::notify(const tessel::Tuple &, tessel::Tuple &)
{
    return tessel::ERR_NOT_IMPLEMENTED;
}

int NAPServer::call(const tessel::Tuple &request, tessel::Tuple &reply)
{
    static const QByteArray prefix("com.halvar.nap.NAPServer.");
    if (!request.class_name().startsWith(prefix))
        return tessel::ERR_NOT_IMPLEMENTED;
    const QByteArray operation = request.class_name().mid(prefix.size());

    if (operation == "startMeasure")
        return startMeasure(MeasureCustomData(request.get("customData").toTuple()),
                            request.get("autoStop").toBool());
    if (operation == "requestStopMeasure")
        return requestStopMeasure();
    if (operation == "abort")
        return abort();
    if (operation == "startAccuracyCheck")
        return startAccuracyCheck();
    if (operation == "startCalibration")
        return startCalibration();
    if (operation == "sendLastStatus")
        return sendLastStatus();
    if (operation == "registerObserver")
        return registerObserver(request.get("serviceDescription").toAString());
    if (operation == "unregisterObserver")
        return unregisterObserver(request.get("serviceDescription").toAString());
    if (operation == "getLastCalibrationDate") {
        tessel::TimeDate date;
        const int status = getLastCalibrationDate(date);
        if (status >= 0)
            reply.set("date", tessel::Value(date));
        return status;
    }
    if (operation == "getLastMeasure") {
        MeasureSummary measure;
        const int status = getLastMeasure(measure);
        if (status >= 0)
            reply.set("measure", tessel::Value(measure));
        return status;
    }

    using Operation = int (NAPServer::*)(const tessel::Tuple &, tessel::Tuple &);
    static const struct
    {
        const char *name;
        Operation operation;
    } others[] = {
        {"getNAPConfiguration", &NAPServer::getNAPConfiguration},
        {"setNAPConfiguration", &NAPServer::setNAPConfiguration},
        {"resetNAPConfiguration", &NAPServer::resetNAPConfiguration},
        {"exit", &NAPServer::exit},
        {"setLogLevel", &NAPServer::setLogLevel},
        {"getInstrumentCharacteristics", &NAPServer::getInstrumentCharacteristics},
        {"setInstrumentCharacteristics", &NAPServer::setInstrumentCharacteristics},
        {"init", &NAPServer::init},
        {"serve", &NAPServer::serve},
        {"destroy", &NAPServer::destroy},
        {"startSpectrumAcquisitionByDuration", &NAPServer::startSpectrumAcquisitionByDuration},
        {"startSpectrumAcquisitionByCounts", &NAPServer::startSpectrumAcquisitionByCounts},
        {"getLastMeasures", &NAPServer::getLastMeasures},
        {"getMeasure", &NAPServer::getMeasure},
        {"getMeasures", &NAPServer::getMeasures},
        {"notify", &NAPServer::notify},
    };
    for (const auto &other : others) {
        if (operation == other.name)
            return (this->*other.operation)(request, reply);
    }
    return tessel::ERR_NOT_IMPLEMENTED;
}

} // namespace nap
} // namespace halvar
} // namespace com
