// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_RIG_H
#define ORDERS_RIG_H

#include <QCoreApplication>
#include <QThread>

#include <atomic>
#include <map>
#include <memory>

#include "controllerfixture.h"
#include "event.h"
#include "recordingnap.h"
#include "scriptedmsp.h"
#include "testhome.h"
#include "virtualclock.h"
#include "watcher.h"

namespace orders {

/// Knows the MSP client of a controller, which nobody else has a pointer to: it is seen when its thread
/// brings it its first event.
class Application : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;
    bool notify(QObject *receiver, QEvent *event) override;
    MSPClient *mspClient() const { return m_client; }

private:
    std::atomic<MSPClient *> m_client{nullptr};
};

/// A real controller with its real links, and the world around it: an analysis service in this process, which
/// notifies from a thread of its own; a scripted MSP behind the client on the worker thread; the instrument's
/// files. Time passes only when an event says so.
class Rig
{
public:
    /// \param clock of the thread's timers.
    Rig(Application &application, VirtualClock &clock, const Sequence &sequence);
    ~Rig();

    /// Lets \p event happen and everything that it leads to.
    void apply(const Event &event);
    Effects takeEffects() { return m_watcher->take(); }
    State state() const;
    /// What is never so, whatever the interface answers to signals. Empty when all is well.
    std::string inconsistency() const;
    /// Leads the controller through one more measure, without answers. \return what went wrong, empty when it
    /// still measures.
    std::string measureOnce();

    /// Compares what the MSP received with what it was sent, then destroys the controller with a notification
    /// on its way. \return what is wrong, empty when nothing is.
    std::string finish();

private:
    class Service;
    // rig.cpp
    void start();
    int untilExpiry() const;
    void answer(const std::string &signal);
    static void deliver();
    static void setGauge(int microvolts);
    /// Runs \p action in the service's thread, or on the client in the MSP's, and waits for it; what it
    /// signals is then on its way to the controller.
    template <typename Action>
    void fromService(Action action)
    {
        QMetaObject::invokeMethod(&m_serviceSide, action, Qt::BlockingQueuedConnection);
    }
    template <typename Action>
    void fromMsp(Action action)
    {
        MSPClient *const client = m_application.mspClient();
        QMetaObject::invokeMethod(
            client, [client, action] { action(client); }, Qt::BlockingQueuedConnection);
    }

    QString homeOf(bool other) const { return other ? m_home.file(QStringLiteral("other/")) : m_home.path(); }

    // rigevents.cpp
    QString pathOf(const std::string &name) const;
    void applyLink(const Event &event);
    void applySetting(const Event &event);
    void applySlot(const Event &event);
    void applyCompanion(const Event &event);
    void applyUnit(const Event &event);

    Application &m_application;
    VirtualClock &m_clock;
    TestHome m_home;
    std::vector<Reaction> m_reactions;
    int m_answering = 0; ///< how deep
    std::map<std::string, int> m_heard; ///< how often
    tessel::AutoRef<Service> m_service;
    std::unique_ptr<ScriptedMsp> m_msp;
    std::unique_ptr<ControllerFixture> m_fixture;
    HalvarController *m_controller = nullptr;
    std::unique_ptr<Watcher> m_watcher;
    QThread m_serviceThread;
    QObject m_serviceSide; ///< lives in that thread
    QList<QTimer *> m_timers; ///< by TimerName
};

} // namespace orders

#endif // ORDERS_RIG_H
