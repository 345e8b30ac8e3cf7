// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SERVICEFIXTURE_H
#define SERVICEFIXTURE_H

#include <QTimer>

#include <memory>

#include "controllerfixture.h"
#include "enums.h"
#include "logrecorder.h"
#include "recordingnap.h"
#include "ud.h"
#include "udlistmodel.h"

/// A controller with its links up, beside a recording analysis service that is published in this process: the
/// middleware calls it directly. Notifications are handed to the controller's slots, so that each test
/// decides their order. One service for all tests of a program, since its port is fixed; one controller a
/// test.
class ServiceFixture
{
protected:
    bool publishService()
    {
        m_service = std::make_unique<RecordingNap::Published>();
        return m_service->isListening();
    }

    void startController()
    {
        m_home = std::make_unique<TestHome>();
        m_home->setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("60000"));
        m_fixture = std::make_unique<ControllerFixture>(*m_home);
        c = m_fixture->controller.get();
        c->init();
        m_service->nap().reset();
    }

    void endController()
    {
        m_fixture.reset();
        m_home.reset();
    }

    QStringList calls() const { return m_service->nap().calls(); }

    /// The controller's timers in creation order: hold-off, light, information, before the shutter, to stop,
    /// measure.
    QTimer *timerAt(int index) const
    {
        return c->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[index];
    }

    bool startMeasure() { return QMetaObject::invokeMethod(c, "startMeasure"); }

    UD *addUnit()
    {
        c->uds->add(-1);
        return c->uds->last();
    }

    static com::halvar::nap::DetectionResult result(double value, double sigma, int decision)
    {
        com::halvar::nap::DetectionResult detection;
        detection.set_value(value);
        detection.set_sigma(sigma);
        detection.set_decision(static_cast<com::halvar::nap::DetectionDecision>(decision));
        return detection;
    }

    static QStringList infoLines(const LogRecorder &log) { return log.lines(QStringLiteral("INFO")); }
    static QString line(const char *text)
    {
        return QLatin1String("[Halvar Controller]") + QString::fromUtf8(text);
    }

    std::unique_ptr<RecordingNap::Published> m_service;
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<ControllerFixture> m_fixture;
    HalvarController *c = nullptr;
    const com::halvar::nap::DetectionResult startOfShot{}; ///< a result without a decision
};

#endif // SERVICEFIXTURE_H
