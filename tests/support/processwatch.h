// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PROCESSWATCH_H
#define PROCESSWATCH_H

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <holdings.h>

/// How long the thread that made this was kept from its events, at the longest: what an operator feels as a
/// screen that does not answer. It is exact to some milliseconds.
class Pulse : public QObject
{
public:
    Pulse()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] { beat(); });
        m_timer.start(beatMs);
        m_since.start();
    }
    /// Milliseconds without events, the present stretch counted.
    qint64 longest()
    {
        beat();
        return m_longest;
    }

private:
    static constexpr int beatMs = 5;
    void beat() { m_longest = qMax(m_longest, m_since.restart() - beatMs); }

    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

#endif // PROCESSWATCH_H
