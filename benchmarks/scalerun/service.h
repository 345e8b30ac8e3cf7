// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SERVICE_H
#define SERVICE_H

#include <atomic>
#include <mutex>

#include <nap/napserver.h>
#include <nap/notificationobserver.h>

/// An analysis service that measures nothing: it counts the measures it is asked for, and sends its one
/// observer what it is told to. Called from any thread.
class Service : public com::halvar::nap::NAPServer
{
public:
    /// Where the controller looks for the service. False when something else is there.
    bool publishForControllers();

    /// Measures begun so far; each one's identifier is this number.
    int measures() const { return m_measures; }
    /// Measures whose end was asked for.
    int stops() const { return m_stops; }

    void sendDetection(const com::halvar::nap::DetectionResult &result);
    void sendStatus(com::halvar::nap::AcqStatus status);

    int startMeasure(const com::halvar::nap::MeasureCustomData &customData, bool autoStop) override;
    int requestStopMeasure() override;
    int abort() override { return tessel::OK; }
    int sendLastStatus() override { return tessel::OK; }
    int getLastCalibrationDate(tessel::TimeDate &date) override;
    int getLastMeasure(com::halvar::nap::MeasureSummary &measure) override;
    int registerObserver(const tessel::AString &serviceDescription) override;
    int unregisterObserver(const tessel::AString &serviceDescription) override;

private:
    void send(const com::halvar::nap::NotificationMessage &message);

    std::atomic<int> m_measures{0};
    std::atomic<int> m_stops{0};
    std::mutex m_mutex;
    tessel::AString m_description;
    tessel::PService m_observer;
};

#endif // SERVICE_H
