// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "virtualclock.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimerEvent>

#include <algorithm>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace orders {

namespace {

constexpr int LongestPoll = 10; // ms of real time: whoever waits for a condition looks again

short pollEvents(const QSocketNotifier *notifier)
{
    switch (notifier->type()) {
    case QSocketNotifier::Read:
        return POLLIN;
    case QSocketNotifier::Write:
        return POLLOUT;
    default:
        return POLLPRI;
    }
}

} // namespace

VirtualClock::VirtualClock()
    : m_wakeUp(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    if (m_wakeUp < 0)
        qFatal("No event descriptor");
}

VirtualClock::~VirtualClock()
{
    ::close(m_wakeUp);
}

std::vector<VirtualClock::Timer>::iterator VirtualClock::next()
{
    return std::min_element(m_timers.begin(), m_timers.end(),
                            [](const Timer &a, const Timer &b) { return a.due < b.due; });
}

void VirtualClock::advance(int milliseconds, const std::function<void()> &afterEach)
{
    const std::int64_t end = m_now + milliseconds;
    for (auto expired = next(); expired != m_timers.end() && expired->due <= end; expired = next()) {
        m_now = std::max(m_now, expired->due);
        // It repeats unless its owner stops it, and then comes after those that were started before.
        Timer again = *expired;
        again.due = m_now + std::max(1, again.interval);
        m_timers.erase(expired);
        m_timers.push_back(again);
        QTimerEvent event(again.id);
        QCoreApplication::sendEvent(again.object, &event);
        afterEach();
    }
    m_now = end;
}

bool VirtualClock::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    m_interrupted = false;
    emit awake();
    QCoreApplication::sendPostedEvents();
    std::vector<pollfd> descriptors{{m_wakeUp, POLLIN, 0}};
    const QVector<QSocketNotifier *> notifiers = m_notifiers;
    for (const QSocketNotifier *notifier : notifiers)
        descriptors.push_back({int(notifier->socket()), pollEvents(notifier), 0});
    const bool waits = flags.testFlag(QEventLoop::WaitForMoreEvents) && !m_interrupted;
    emit aboutToBlock();
    if (::poll(descriptors.data(), descriptors.size(), waits ? LongestPoll : 0) <= 0)
        return false;
    emit awake();
    eventfd_t ignored = 0;
    ::eventfd_read(m_wakeUp, &ignored);
    for (int i = 0; i < notifiers.size(); ++i) {
        if (descriptors[std::size_t(i) + 1].revents == 0 || !m_notifiers.contains(notifiers[i]))
            continue; // quiet, or gone since
        QEvent event(QEvent::SockAct);
        QCoreApplication::sendEvent(notifiers[i], &event);
    }
    QCoreApplication::sendPostedEvents();
    return true;
}

void VirtualClock::registerSocketNotifier(QSocketNotifier *notifier)
{
    m_notifiers.append(notifier);
}

void VirtualClock::unregisterSocketNotifier(QSocketNotifier *notifier)
{
    m_notifiers.removeOne(notifier);
}

void VirtualClock::registerTimer(int timerId, int interval, Qt::TimerType, QObject *object)
{
    m_timers.push_back({timerId, interval, object, m_now + interval});
}

bool VirtualClock::unregisterTimer(int timerId)
{
    const auto timer =
        std::find_if(m_timers.begin(), m_timers.end(), [timerId](const Timer &t) { return t.id == timerId; });
    if (timer == m_timers.end())
        return false;
    m_timers.erase(timer);
    return true;
}

bool VirtualClock::unregisterTimers(QObject *object)
{
    const auto rest = std::remove_if(m_timers.begin(), m_timers.end(),
                                     [object](const Timer &t) { return t.object == object; });
    const bool any = rest != m_timers.end();
    m_timers.erase(rest, m_timers.end());
    return any;
}

QList<QAbstractEventDispatcher::TimerInfo> VirtualClock::registeredTimers(QObject *object) const
{
    QList<TimerInfo> ret;
    for (const Timer &timer : m_timers) {
        if (timer.object == object)
            ret.append(TimerInfo(timer.id, timer.interval, Qt::PreciseTimer));
    }
    return ret;
}

int VirtualClock::remainingTime(int timerId)
{
    for (const Timer &timer : m_timers) {
        if (timer.id == timerId)
            return int(std::max<std::int64_t>(0, timer.due - m_now));
    }
    return -1;
}

void VirtualClock::wakeUp()
{
    ::eventfd_write(m_wakeUp, 1);
}

} // namespace orders
