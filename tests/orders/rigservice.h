// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_RIGSERVICE_H
#define ORDERS_RIGSERVICE_H

#include "rig.h"

namespace orders {

/// An analysis service whose calls are effects among the others.
class Rig::Service : public RecordingNap
{
public:
    int getLastCalibrationDate(tessel::TimeDate &date) override
    {
        tell("getLastCalibrationDate");
        return RecordingNap::getLastCalibrationDate(date);
    }
    int startMeasure(const com::halvar::nap::MeasureCustomData &customData, bool autoStop) override
    {
        tell(std::string("startMeasure autoStop ") + (autoStop ? "true" : "false") + " customData "
             + QString::fromUtf8(customData.class_name()).toStdString());
        return RecordingNap::startMeasure(customData, autoStop);
    }
    int requestStopMeasure() override
    {
        tell("requestStopMeasure");
        return RecordingNap::requestStopMeasure();
    }
    int startCalibration() override
    {
        tell("startCalibration");
        return RecordingNap::startCalibration();
    }
    int abort() override
    {
        tell("abort");
        return RecordingNap::abort();
    }
    int startAccuracyCheck() override
    {
        tell("startAccuracyCheck");
        return RecordingNap::startAccuracyCheck();
    }
    int sendLastStatus() override
    {
        tell("sendLastStatus");
        return RecordingNap::sendLastStatus();
    }
    int getLastMeasure(com::halvar::nap::MeasureSummary &measure) override
    {
        tell("getLastMeasure");
        return RecordingNap::getLastMeasure(measure);
    }
    int registerObserver(const tessel::AString &serviceDescription) override
    {
        tell("registerObserver");
        return RecordingNap::registerObserver(serviceDescription);
    }
    int unregisterObserver(const tessel::AString &serviceDescription) override
    {
        tell("unregisterObserver");
        return RecordingNap::unregisterObserver(serviceDescription);
    }

    Watcher *watcher = nullptr; ///< none while the links come up

private:
    void tell(const std::string &call)
    {
        if (watcher)
            watcher->add("service " + call);
    }
};

} // namespace orders

#endif // ORDERS_RIGSERVICE_H
