// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "workqueue.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>

namespace tessel {

bool WorkQueue::doAndWait(const std::function<void()> &work)
{
    if (QThread::currentThread() == thread()) {
        work();
        return true;
    }
    Task task{work};
    std::unique_lock<std::mutex> lock(m_mutex);
    m_tasks.push_back(&task);
    QMetaObject::invokeMethod(this, "doNext", Qt::QueuedConnection);
    // Qt hands nothing to a thread once the application is gone, or the thread: what has not begun by then
    // never will.
    constexpr std::chrono::milliseconds patience(50);
    while (!m_done.wait_for(lock, patience, [&task] { return task.isDone; })) {
        if (!task.isStarted && (!QCoreApplication::instance() || !thread()->isRunning())) {
            m_tasks.erase(std::find(m_tasks.begin(), m_tasks.end(), &task));
            return false;
        }
    }
    return true;
}

void WorkQueue::doNext()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_tasks.empty())
        return;
    Task &task = *m_tasks.front();
    m_tasks.pop_front();
    task.isStarted = true;
    lock.unlock();
    task.work();
    lock.lock();
    task.isDone = true;
    m_done.notify_all();
}

} // namespace tessel
