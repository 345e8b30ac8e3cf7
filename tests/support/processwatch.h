// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PROCESSWATCH_H
#define PROCESSWATCH_H

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTimer>

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

/// What this process holds of the machine.
struct Holdings
{
    qint64 residentKb = 0;
    int threads = 0;
    int descriptors = 0;

    static Holdings now()
    {
        Holdings holdings;
        QFile status(QStringLiteral("/proc/self/status"));
        if (status.open(QIODevice::ReadOnly)) {
            const QList<QByteArray> lines = status.readAll().split('\n');
            for (const QByteArray &line : lines) {
                if (line.startsWith("VmRSS:"))
                    holdings.residentKb = line.simplified().split(' ').at(1).toLongLong();
                else if (line.startsWith("Threads:"))
                    holdings.threads = line.mid(8).trimmed().toInt();
            }
        }
        holdings.descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                   .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                   .size();
        return holdings;
    }
};

#endif // PROCESSWATCH_H
