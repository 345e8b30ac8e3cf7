// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "service.h"

#include <QLatin1String>

namespace nap = com::halvar::nap;

bool Service::publishForControllers()
{
    set_name("nap_server");
    return publish() && tessel::ServiceManager::auto_create().listen("TCPIP:localhost:3555");
}

void Service::sendDetection(const nap::DetectionResult &result)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_DETECTION"));
    message.set_detection(result);
    send(message);
}

void Service::sendStatus(nap::AcqStatus status)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_STATUS"));
    message.set_status(status);
    send(message);
}

void Service::send(const nap::NotificationMessage &message)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_observer)
        m_observer = tessel::Service::bind(tessel::AString(
            QLatin1String("com.halvar.nap.NotificationObserver:") + m_description.toString()));
    if (m_observer)
        nap::NotificationObserver::sendMessage(*m_observer, message);
}

int Service::startMeasure(const nap::MeasureCustomData &, bool)
{
    ++m_measures;
    return tessel::OK;
}

int Service::requestStopMeasure()
{
    ++m_stops;
    return tessel::OK;
}

int Service::getLastCalibrationDate(tessel::TimeDate &date)
{
    date = tessel::TimeDate();
    return tessel::OK;
}

int Service::getLastMeasure(nap::MeasureSummary &measure)
{
    measure.set_id(m_measures);
    return tessel::OK;
}

int Service::registerObserver(const tessel::AString &serviceDescription)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_description = serviceDescription;
    m_observer = tessel::PService();
    return tessel::OK;
}

int Service::unregisterObserver(const tessel::AString &)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_observer = tessel::PService();
    return tessel::OK;
}
