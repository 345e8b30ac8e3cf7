// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "gate.h"

#include <QDeadlineTimer>
#include <QThread>

#include <memory>

#include <tessel/status.h>

namespace simulator {

struct Gate::Call
{
    std::function<int()> operation; // empty once nobody waits for it any more
    int result = tessel::ERR_PEER_GONE;
    bool done = false;
};

int Gate::pass(const std::function<int()> &operation)
{
    if (QThread::currentThread() == thread())
        return m_open ? operation() : tessel::ERR_PEER_GONE;

    QMutexLocker lock(&m_mutex);
    // A call that came before the gate was closed does not slip through when it is opened again.
    const int closings = m_closings;
    const auto passable = [this, closings] { return m_open && m_closings == closings; };
    const QDeadlineTimer delay(m_delay);
    ++m_held;
    while (passable() && (m_silent || !delay.hasExpired()))
        m_changed.wait(&m_mutex, m_silent ? QDeadlineTimer(QDeadlineTimer::Forever) : delay);
    --m_held;
    if (!passable())
        return tessel::ERR_PEER_GONE;

    const auto call = std::make_shared<Call>();
    call->operation = operation;
    QMetaObject::invokeMethod(
        this,
        [this, call] {
            std::function<int()> carriedOut;
            {
                const QMutexLocker locker(&m_mutex);
                carriedOut = call->operation;
            }
            // Only this thread closes the gate: a call that is not given up here is not given up below.
            if (!carriedOut)
                return;
            const int result = carriedOut();
            const QMutexLocker locker(&m_mutex);
            call->result = result;
            call->done = true;
            m_changed.wakeAll();
        },
        Qt::QueuedConnection);
    while (passable() && !call->done)
        m_changed.wait(&m_mutex);
    call->operation = nullptr;
    return call->result;
}

void Gate::setSilent(bool silent)
{
    const QMutexLocker lock(&m_mutex);
    m_silent = silent;
    m_changed.wakeAll();
}

void Gate::setDelay(int milliseconds)
{
    const QMutexLocker lock(&m_mutex);
    m_delay = milliseconds;
}

void Gate::setOpen(bool open)
{
    const QMutexLocker lock(&m_mutex);
    if (m_open && !open)
        ++m_closings;
    m_open = open;
    m_changed.wakeAll();
}

int Gate::held()
{
    const QMutexLocker lock(&m_mutex);
    return m_held;
}

} // namespace simulator
