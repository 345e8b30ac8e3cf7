// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "napobserver.h"

#include <QsLog.h>

namespace nap = com::halvar::nap;

namespace {

const QByteArray StatusKind = QByteArrayLiteral("NAP_STATUS");
const QByteArray DetectionKind = QByteArrayLiteral("NAP_DETECTION");
const QByteArray SpectrumKind = QByteArrayLiteral("NAP_SPECTRUM");

/// Asked once for all lines of a record: each notification passes here, and is rarely logged.
bool isLogged()
{
    return QsLogging::Logger::instance().loggingLevel() <= QsLogging::DebugLevel;
}

} // namespace

NAPObserver::NAPObserver()
    : m_napClient(nullptr)
{ }

NAPObserver::~NAPObserver() = default;

int NAPObserver::onMessage(const nap::NotificationMessage &message)
{
    const tessel::AString kind = message.get_id();
    const QByteArray &id = kind.toUtf8();
    if (id == StatusKind) {
        // Status first, then conditions, then error: an error is shown under the acquisition it belongs to.
        const nap::AcqStatus status = message.get_status();
        m_napClient.setCurrentAcqStatus(status);
        printStatus(status);
        if (message.is_set_conditions()) {
            const nap::AcqConditions conditions = message.get_conditions();
            m_napClient.setCurrentAcqConditions(conditions);
            printConditions(conditions);
        }
        if (message.is_set_error())
            m_napClient.setCurrentAcqError(message.get_error());
    } else if (id == DetectionKind) {
        const nap::DetectionResult detection = message.get_detection();
        m_napClient.setCurrentDetectionResult(detection);
        printDetection(detection);
    } else if (id == SpectrumKind) {
        printSpectrum(message.get_spectrum());
    }
    return 1;
}

void NAPObserver::printStatus(const nap::AcqStatus &status)
{
    switch (status) {
    case nap::IN_PROGRESS:
        QLOG_DEBUG() << "[NAP Observer]: IN_PROGRESS";
        break;
    case nap::ERROR:
        QLOG_DEBUG() << "[NAP Observer]: ERROR";
        break;
    case nap::NOT_STARTED:
        QLOG_DEBUG() << "[NAP Observer]: NOT_STARTED";
        break;
    }
}

const char *NAPObserver::showBoolean(bool value)
{
    return value ? "OK" : "FAIL";
}

void NAPObserver::printConditions(const nap::AcqConditions &conditions)
{
    if (!isLogged())
        return;
    QLOG_DEBUG() << "[NAP Observer]: Temperature: " << conditions.get_temperature() << " C";
    QLOG_DEBUG() << "[NAP Observer]: Accelerating Voltage: " << conditions.get_acceleratingVoltage() << " V";
    QLOG_DEBUG() << "[NAP Observer]: * Ready for Acquisition: "
                 << showBoolean(conditions.get_readyForAcquisition());
    QLOG_DEBUG() << "[NAP Observer]: * Acceptable Temperature: "
                 << showBoolean(conditions.get_acceptableTemperature());
    QLOG_DEBUG() << "[NAP Observer]: * Acceptable Accelerating Voltage: "
                 << showBoolean(conditions.get_acceptableAcceleratingVoltage());
}

void NAPObserver::printDetection(const nap::DetectionResult &detection)
{
    if (!isLogged())
        return;
    QLOG_DEBUG() << "[NAP Observer]: Concentration: " << detection.get_value();
    QLOG_DEBUG() << "[NAP Observer]: Sigma: " << detection.get_sigma();
    if (!detection.is_set_decision())
        return;
    switch (detection.get_decision()) {
    case nap::POSITIVE:
        QLOG_DEBUG() << "[NAP Observer]: POSITIVE";
        break;
    case nap::NEGATIVE:
        QLOG_DEBUG() << "[NAP Observer]: NEGATIVE";
        break;
    case nap::UNDETERMINED:
        QLOG_DEBUG() << "[NAP Observer]: UNDETERMINED";
        break;
    case nap::INSUFFICIENT_ACQTIME:
        QLOG_DEBUG() << "[NAP Observer]: INSUFFICIENT_ACQTIME";
        break;
    case nap::COMPTON_ERROR:
        QLOG_DEBUG() << "[NAP Observer]: COMPTON_ERROR";
        break;
    case nap::ACCURACY_OK:
        QLOG_DEBUG() << "[NAP Observer]: ACCURACY_OK";
        break;
    case nap::ACCURACY_ERROR:
        QLOG_DEBUG() << "[NAP Observer]: ACCURACY_ERROR";
        break;
    default:
        // UNCALIBRATED too: without a calibration there is no decision to name.
        QLOG_DEBUG() << "[NAP Observer]: UNKNOWN";
        break;
    }
}

void NAPObserver::printSpectrum(const nap::SpectrumResult &spectrum)
{
    QLOG_DEBUG() << "[NAP Observer]: Live Time : "
                 << spectrum.get_information().get_liveTime().to_string().c_str();
}
