// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "frames.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QQuickWindow>

Frames::Frames(QQuickWindow *window)
    : m_window(window)
{
    m_clock.start();
    connect(
        window, &QQuickWindow::afterAnimating, this,
        [this] {
            const QMutexLocker lock(&m_mutex);
            m_begun = m_clock.nsecsElapsed();
            ++m_begunCount;
        },
        Qt::DirectConnection);
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [this] {
            const QMutexLocker lock(&m_mutex);
            if (m_begun < 0)
                return;
            m_times.append(double(m_clock.nsecsElapsed() - m_begun) / 1e6);
            m_begun = -1;
            m_shownCount = m_begunCount;
        },
        Qt::DirectConnection);
}

int Frames::count() const
{
    const QMutexLocker lock(&m_mutex);
    return m_shownCount;
}

QVector<double> Frames::take()
{
    const QMutexLocker lock(&m_mutex);
    QVector<double> times;
    times.swap(m_times);
    return times;
}

bool Frames::waitForNext(int limitMs)
{
    int before = 0;
    {
        const QMutexLocker lock(&m_mutex);
        before = m_begunCount;
    }
    m_window->update();
    QElapsedTimer limit;
    limit.start();
    while (count() <= before) {
        if (limit.elapsed() > limitMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}
