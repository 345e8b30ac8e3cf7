// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_ANALYSISSERVICE_H
#define SIMULATOR_ANALYSISSERVICE_H

#include <QMap>
#include <QObject>

#include <functional>

#include <nap/napserver.h>

#include "acquisition.h"
#include "gate.h"
#include "observers.h"

namespace simulator {

/// The analysis service in operation: its acquisition, its observers and its place on the middleware.
class AnalysisService : public QObject
{
    Q_OBJECT
public:
    static constexpr quint16 Port = 3555;

    explicit AnalysisService(QObject *parent = nullptr);
    ~AnalysisService() override;

    Acquisition &acquisition() { return m_acquisition; }
    const Acquisition &acquisition() const { return m_acquisition; }

    /// Publishes the service and listens; false when the port is taken.
    bool start(quint16 port = Port);
    /// Goes as a process that dies: calls that wait are lost, and so are the acquisition and the observers.
    void die();
    bool isAlive() const { return static_cast<bool>(m_published); }

    /// Sends \p message as it is.
    void notify(const com::halvar::nap::NotificationMessage &message);
    void setSilent(bool silent);
    bool isSilent() const { return m_silent; }
    /// See Observers::setPort().
    void setObserverPort(quint16 port) { m_observers.setPort(port); }
    void setDelay(int milliseconds);
    int delay() const { return m_delay; }

    /// Calls that wait for the end of a silence or delay.
    int heldCalls() { return m_gate.held(); }
    QStringList observers() const { return m_observers.descriptions(); }
    /// Calls that were carried out or refused, by name.
    QMap<QString, int> calls() const { return m_calls; }

signals:
    /// \p autoStop means something for startMeasure only.
    void called(const QString &name, int result, bool autoStop);
    void observerChanged(const QString &event, const QString &description);
    void notified(const com::halvar::nap::NotificationMessage &message);

private:
    class Published;

    int call(const char *name, const std::function<int()> &operation, bool autoStop = false);

    Acquisition m_acquisition;
    Observers m_observers;
    Gate m_gate;
    bool m_silent = false;
    int m_delay = 0;
    QMap<QString, int> m_calls;
    tessel::PService m_published;
};

} // namespace simulator

#endif // SIMULATOR_ANALYSISSERVICE_H
