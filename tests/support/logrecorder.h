// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef LOGRECORDER_H
#define LOGRECORDER_H

#include <QStringList>

#include <QsLog.h>

/// Records every log line from construction to destruction, from all threads. One at a time.
///
/// A line is kept as "LEVEL text", e.g. "INFO [Halvar Controller]: * NAP_Server: \"OK\"": without its
/// time and without the blank that the debug stream leaves at its end.
class LogRecorder
{
public:
    explicit LogRecorder(QsLogging::Level level = QsLogging::TraceLevel);
    ~LogRecorder();

    QStringList lines() const;
    /// The lines of one level ("DEBUG", "INFO", ...), without the level.
    QStringList lines(const QString &level) const;
    bool contains(const QString &line) const { return lines().contains(line); }
    int count(const QString &line) const { return int(lines().count(line)); }
    void clear();

private:
    Q_DISABLE_COPY(LogRecorder)
    const QsLogging::Level m_previousLevel;
    QsLogging::DestinationPtr m_destination;
};

#endif // LOGRECORDER_H
