// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The link to the analysis service: binding to it, publishing the observer that it calls back, and the
// calibration date, the one thing asked of it outside an acquisition.
#include "halvarcontroller.h"

#include <QDate>

#include <QsLog.h>

#include <cstdlib>

#include "napclient.h"
#include "napobserver.h"

namespace nap = com::halvar::nap;

// One service name for both ends: the service tells its clients apart by their address.
const char HalvarController::m_serverDescription[32] = "nap_server@TCPIP:localhost:3555";
const char HalvarController::m_observerDescription[32] = "nap_server@TCPIP:localhost:3556";

namespace {

constexpr int ExitWithoutService = 1;
constexpr int ExitWithoutObserver = 2;

QString dateText(const tessel::TimeDate &date)
{
    return QDate(date.year(), date.month(), date.day()).toString(QStringLiteral("dd-MM-yyyy"));
}

} // namespace

void HalvarController::initNAP()
{
    QLOG_TRACE() << "[Halvar Controller]: initNAP()";
    tessel::init();

    if (!m_napServer.bind(m_serverDescription)) {
        QLOG_ERROR() << "[Halvar Controller]: * NAP_Server: \"KO\"";
        std::exit(ExitWithoutService);
    }
    QLOG_INFO() << "[Halvar Controller]: * NAP_Server: \"OK\"";

    nap::NotificationObserver::load_stub();
    const QByteArray description(m_observerDescription);
    const int separator = description.indexOf('@');
    const QByteArray serviceName = description.left(separator);
    const QByteArray address = description.mid(separator + 1);
    tessel::ServiceManager &manager = tessel::ServiceManager::auto_create();
    if (!manager.listen(address.constData())) {
        QLOG_ERROR() << "[Halvar Controller]: * Observer manager: \"KO\"";
        std::exit(ExitWithoutObserver);
    }
    QLOG_INFO() << "[Halvar Controller]: * Observer manager: \"OK\"";

    tessel::TimeDate calibrationDate;
    m_napServer.getLastCalibrationDate(calibrationDate);
    storeCalibrationDate(calibrationDate);

    auto *observer = new NAPObserver;
    m_nap_client = observer->nap_client();
    connect(m_nap_client, &NAPClient::nap_AcqStatus, this, &HalvarController::nap_AcqStatus);
    connect(m_nap_client, &NAPClient::nap_AcqError, this, &HalvarController::nap_AcqError);
    connect(m_nap_client, &NAPClient::nap_AcqConditions, this, &HalvarController::nap_AcqConditions);
    connect(m_nap_client, &NAPClient::nap_DetectionResult, this, &HalvarController::nap_DetectionResult);
    m_napObserver = tessel::PService(observer);
    observer->set_name(serviceName.constData());
    if (!m_napObserver) {
        QLOG_ERROR() << "[Halvar Controller]: * Observer: \"KO\"";
        std::exit(ExitWithoutObserver);
    }
    QLOG_INFO() << "[Halvar Controller]: * Observer \"OK\"";
    m_napObserver->publish();
    m_napServer.registerObserver(m_observerDescription);
}

void HalvarController::storeCalibrationDate(const tessel::TimeDate &calibrationDate)
{
    const QString text = dateText(calibrationDate);
    if (lastCalibrationDate == text)
        return;
    lastCalibrationDate = text;
    emit sendLastCalibrationDate(lastCalibrationDate);
}

void HalvarController::nap_CalibrationDate(const tessel::TimeDate &calibrationDate)
{
    QLOG_INFO() << "[Halvar Controller]: new calibration date " << dateText(calibrationDate);
    storeCalibrationDate(calibrationDate);
}

void HalvarController::requestUpdate()
{
    if (!m_napServer)
        return;
    tessel::TimeDate calibrationDate;
    // A service that does not answer must not show a calibration in 1970.
    if (m_napServer.getLastCalibrationDate(calibrationDate) >= 0)
        storeCalibrationDate(calibrationDate);
    m_napServer.sendLastStatus();
}
