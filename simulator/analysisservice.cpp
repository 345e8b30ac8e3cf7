// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "analysisservice.h"

#include <QsLog.h>

namespace nap = com::halvar::nap;

namespace simulator {

/// What the middleware calls, on its own thread.
class AnalysisService::Published : public nap::NAPServer
{
public:
    explicit Published(AnalysisService &service)
        : m_service(service)
    {
        set_name("nap_server");
    }

    int startMeasure(const nap::MeasureCustomData &customData, bool autoStop) override
    {
        return m_service.call(
            "startMeasure", [&] { return m_service.m_acquisition.startMeasure(customData, autoStop); },
            autoStop);
    }
    int requestStopMeasure() override
    {
        return m_service.call("requestStopMeasure",
                              [&] { return m_service.m_acquisition.requestStopMeasure(); });
    }
    int abort() override
    {
        return m_service.call("abort", [&] { return m_service.m_acquisition.abort(); });
    }
    int startAccuracyCheck() override
    {
        return m_service.call("startAccuracyCheck",
                              [&] { return m_service.m_acquisition.startAccuracyCheck(); });
    }
    int startCalibration() override
    {
        return m_service.call("startCalibration", [&] { return m_service.m_acquisition.startCalibration(); });
    }
    int sendLastStatus() override
    {
        return m_service.call("sendLastStatus", [&] {
            m_service.m_acquisition.sendLastStatus();
            return 0;
        });
    }
    int getLastMeasure(nap::MeasureSummary &measure) override
    {
        return m_service.call("getLastMeasure", [&] { return m_service.m_acquisition.lastMeasure(measure); });
    }
    int getLastCalibrationDate(tessel::TimeDate &date) override
    {
        return m_service.call("getLastCalibrationDate", [&] {
            const QDate last = m_service.m_acquisition.settings.calibrationDate;
            if (!last.isValid())
                return static_cast<int>(NothingRuns);
            date = tessel::TimeDate(last.year(), last.month(), last.day());
            return 0;
        });
    }
    int registerObserver(const tessel::AString &description) override
    {
        return m_service.call("registerObserver", [&] {
            m_service.m_observers.add(description.toString());
            emit m_service.observerChanged(QStringLiteral("registered"), description.toString());
            return 0;
        });
    }
    int unregisterObserver(const tessel::AString &description) override
    {
        return m_service.call("unregisterObserver", [&] {
            if (!m_service.m_observers.remove(description.toString()))
                return static_cast<int>(NothingRuns);
            emit m_service.observerChanged(QStringLiteral("unregistered"), description.toString());
            return 0;
        });
    }

private:
    ~Published() override = default;
    AnalysisService &m_service;
};

AnalysisService::AnalysisService(QObject *parent)
    : QObject(parent)
{
    tessel::init();
    connect(&m_acquisition, &Acquisition::notify, this, &AnalysisService::notify);
    connect(&m_observers, &Observers::dropped, this, [this](const QString &description) {
        emit observerChanged(QStringLiteral("dropped"), description);
    });
}

AnalysisService::~AnalysisService()
{
    die();
}

bool AnalysisService::start(quint16 port)
{
    if (m_published)
        return true;
    auto &manager = tessel::ServiceManager::auto_create();
    const tessel::PService published(new Published(*this));
    published->publish();
    m_gate.setOpen(true);
    if (!manager.listen(tessel::AString(QStringLiteral("TCPIP:localhost:%1").arg(port)))) {
        published->unpublish();
        return false;
    }
    m_published = published;
    return true;
}

void AnalysisService::die()
{
    if (!m_published)
        return;
    m_gate.setOpen(false); // calls that wait give up, and the dispatch thread is free to close
    m_published->unpublish();
    tessel::ServiceManager::auto_create().close();
    m_published.reset();
    m_observers.clear();
    m_acquisition.vanish();
}

void AnalysisService::notify(const nap::NotificationMessage &message)
{
    m_observers.send(message);
    emit notified(message);
}

void AnalysisService::setSilent(bool silent)
{
    m_silent = silent;
    m_gate.setSilent(silent);
    m_observers.setSilent(silent);
}

void AnalysisService::setDelay(int milliseconds)
{
    m_delay = milliseconds;
    m_gate.setDelay(milliseconds);
}

int AnalysisService::call(const char *name, const std::function<int()> &operation, bool autoStop)
{
    return m_gate.pass([this, name, &operation, autoStop] {
        // A client that hears of the call by a notice finds it counted.
        ++m_calls[QString::fromLatin1(name)];
        const int result = operation();
        QLOG_DEBUG() << "nap:" << name << "gives" << result;
        emit called(QString::fromLatin1(name), result, autoStop);
        return result;
    });
}

} // namespace simulator
