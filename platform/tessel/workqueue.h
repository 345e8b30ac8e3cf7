// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_WORKQUEUE_H
#define TESSEL_WORKQUEUE_H

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace tessel {

/// Work for the thread that the queue lives on, which runs an event loop.
class WorkQueue : public QObject
{
    Q_OBJECT

public:
    /// Has \p work done there and comes back when it is. \return false, and it is not done, when that thread
    /// does not run any more.
    bool doAndWait(const std::function<void()> &work);

private slots:
    void doNext();

private:
    struct Task
    {
        const std::function<void()> &work;
        bool isStarted = false;
        bool isDone = false;
    };

    std::mutex m_mutex;
    std::condition_variable m_done;
    std::deque<Task *> m_tasks;
};

} // namespace tessel

#endif // TESSEL_WORKQUEUE_H
