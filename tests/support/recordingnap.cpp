// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "recordingnap.h"

#include <QMutexLocker>

namespace nap = com::halvar::nap;

RecordingNap::RecordingNap() = default;

QStringList RecordingNap::calls() const
{
    const QMutexLocker lock(&m_mutex);
    QStringList copy = m_calls;
    copy.detach(); // no data in common with what another thread goes on writing to
    return copy;
}

bool RecordingNap::lastAutoStop() const
{
    const QMutexLocker lock(&m_mutex);
    return m_autoStop;
}

QString RecordingNap::lastCustomDataClass() const
{
    const QMutexLocker lock(&m_mutex);
    return m_customDataClass;
}

QStringList RecordingNap::observers() const
{
    const QMutexLocker lock(&m_mutex);
    return m_observers.keys();
}

void RecordingNap::reset()
{
    const QMutexLocker lock(&m_mutex);
    m_calls.clear();
    m_autoStop = false;
    m_customDataClass.clear();
    m_statuses.clear();
    m_lastMeasureId = 0;
    m_calibrationDate = tessel::TimeDate();
}

void RecordingNap::setStatus(const QString &operation, int status)
{
    const QMutexLocker lock(&m_mutex);
    m_statuses.insert(operation, status);
}

void RecordingNap::setLastMeasureId(int id)
{
    const QMutexLocker lock(&m_mutex);
    m_lastMeasureId = id;
}

void RecordingNap::setCalibrationDate(const tessel::TimeDate &date)
{
    const QMutexLocker lock(&m_mutex);
    m_calibrationDate = date;
}

void RecordingNap::notify(const nap::NotificationMessage &message)
{
    QMap<QString, tessel::PService> observers;
    {
        const QMutexLocker lock(&m_mutex);
        observers = m_observers;
    }
    for (auto observer = observers.begin(); observer != observers.end(); ++observer) {
        if (!observer.value()) {
            observer.value() = tessel::Service::bind(
                tessel::AString(QLatin1String("com.halvar.nap.NotificationObserver:") + observer.key()));
            const QMutexLocker lock(&m_mutex);
            if (m_observers.contains(observer.key()))
                m_observers.insert(observer.key(), observer.value());
        }
        if (observer.value())
            nap::NotificationObserver::sendMessage(*observer.value(), message);
    }
}

void RecordingNap::notifyDetection(const nap::DetectionResult &result)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_DETECTION"));
    message.set_detection(result);
    notify(message);
}

void RecordingNap::notifyStatus(nap::AcqStatus status)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_STATUS"));
    message.set_status(status);
    notify(message);
}

void RecordingNap::notifyConditions(nap::AcqStatus status, const nap::AcqConditions &conditions)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_STATUS"));
    message.set_status(status);
    message.set_conditions(conditions);
    notify(message);
}

void RecordingNap::notifyError(nap::AcqStatus status, nap::AcqError error)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_STATUS"));
    message.set_status(status);
    message.set_error(error);
    notify(message);
}

int RecordingNap::record(const QString &operation)
{
    m_calls.append(operation);
    return m_statuses.value(operation, tessel::OK);
}

int RecordingNap::getLastCalibrationDate(tessel::TimeDate &date)
{
    const QMutexLocker lock(&m_mutex);
    const int status = record(QStringLiteral("getLastCalibrationDate"));
    if (status >= 0)
        date = m_calibrationDate;
    return status;
}

int RecordingNap::startMeasure(const nap::MeasureCustomData &customData, bool autoStop)
{
    const QMutexLocker lock(&m_mutex);
    m_autoStop = autoStop;
    m_customDataClass = QString::fromUtf8(customData.class_name());
    return record(QStringLiteral("startMeasure"));
}

int RecordingNap::requestStopMeasure()
{
    const QMutexLocker lock(&m_mutex);
    return record(QStringLiteral("requestStopMeasure"));
}

int RecordingNap::startCalibration()
{
    const QMutexLocker lock(&m_mutex);
    return record(QStringLiteral("startCalibration"));
}

int RecordingNap::abort()
{
    const QMutexLocker lock(&m_mutex);
    return record(QStringLiteral("abort"));
}

int RecordingNap::startAccuracyCheck()
{
    const QMutexLocker lock(&m_mutex);
    return record(QStringLiteral("startAccuracyCheck"));
}

int RecordingNap::sendLastStatus()
{
    const QMutexLocker lock(&m_mutex);
    return record(QStringLiteral("sendLastStatus"));
}

int RecordingNap::getLastMeasure(nap::MeasureSummary &measure)
{
    const QMutexLocker lock(&m_mutex);
    const int status = record(QStringLiteral("getLastMeasure"));
    if (status >= 0)
        measure.set_id(m_lastMeasureId);
    return status;
}

int RecordingNap::registerObserver(const tessel::AString &serviceDescription)
{
    const QMutexLocker lock(&m_mutex);
    m_observers.insert(serviceDescription.toString(), tessel::PService());
    return record(QStringLiteral("registerObserver"));
}

int RecordingNap::unregisterObserver(const tessel::AString &serviceDescription)
{
    const QMutexLocker lock(&m_mutex);
    m_observers.remove(serviceDescription.toString());
    return record(QStringLiteral("unregisterObserver"));
}

RecordingNap::Published::Published()
    : m_nap(new RecordingNap)
    , m_listening(tessel::ServiceManager::auto_create().listen("TCPIP:localhost:3555"))
{
    m_nap->set_name("nap_server");
    m_nap->publish();
}

RecordingNap::Published::~Published()
{
    m_nap->unpublish();
}
