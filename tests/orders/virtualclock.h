// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_VIRTUALCLOCK_H
#define ORDERS_VIRTUALCLOCK_H

#include <QAbstractEventDispatcher>
#include <QVector>

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

namespace orders {

/// An event dispatcher whose clock stands still until somebody advances it: every QTimer of its thread runs
/// on that clock, with its own rules of starting, stopping and repeating. Posted events and sockets are
/// served as usual. Installed with QCoreApplication::setEventDispatcher() before there is an application.
class VirtualClock : public QAbstractEventDispatcher
{
public:
    VirtualClock();
    ~VirtualClock() override;

    /// Lets \p milliseconds pass. Timers expire at their moments, those of the same moment in the order in
    /// which they were started; \p afterEach follows each of them.
    void advance(int milliseconds, const std::function<void()> &afterEach);

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    bool hasPendingEvents() override { return false; }
    void registerSocketNotifier(QSocketNotifier *notifier) override;
    void unregisterSocketNotifier(QSocketNotifier *notifier) override;
    void registerTimer(int timerId, int interval, Qt::TimerType timerType, QObject *object) override;
    bool unregisterTimer(int timerId) override;
    bool unregisterTimers(QObject *object) override;
    QList<TimerInfo> registeredTimers(QObject *object) const override;
    int remainingTime(int timerId) override;
    void wakeUp() override;
    void interrupt() override { m_interrupted = true; }
    void flush() override { }

private:
    struct Timer
    {
        int id;
        int interval;
        QObject *object;
        std::int64_t due;
    };
    std::vector<Timer>::iterator next();

    std::vector<Timer> m_timers; ///< in the order of their starts
    QVector<QSocketNotifier *> m_notifiers;
    std::int64_t m_now = 0;
    const int m_wakeUp;
    std::atomic<bool> m_interrupted{false};
};

} // namespace orders

#endif // ORDERS_VIRTUALCLOCK_H
