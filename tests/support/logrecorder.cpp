// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "logrecorder.h"

#include <QMutex>
#include <QMutexLocker>

namespace {

QMutex mutex;
QStringList recorded;

void record(const QString &message, QsLogging::Level)
{
    // "LEVEL yyyy-MM-ddThh:mm:ss.zzz text"
    constexpr int levelWidth = 5;
    constexpr int textStart = levelWidth + 1 + 23 + 1;
    QString text = message.mid(textStart);
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    const QMutexLocker lock(&mutex);
    recorded.append(message.left(levelWidth).trimmed() + QLatin1Char(' ') + text);
}

} // namespace

LogRecorder::LogRecorder(QsLogging::Level level)
    : m_previousLevel(QsLogging::Logger::instance().loggingLevel())
    , m_destination(QsLogging::DestinationFactory::MakeFunctorDestination(&record))
{
    clear();
    QsLogging::Logger::instance().addDestination(m_destination);
    QsLogging::Logger::instance().setLoggingLevel(level);
}

LogRecorder::~LogRecorder()
{
    QsLogging::Logger::instance().removeDestination(m_destination);
    QsLogging::Logger::instance().setLoggingLevel(m_previousLevel);
}

QStringList LogRecorder::lines() const
{
    const QMutexLocker lock(&mutex);
    // No data in common with the one that other threads go on writing to: Qt looks without any order between
    // threads whether a list still has it in common with others.
    QStringList copy = recorded;
    copy.detach();
    return copy;
}

QStringList LogRecorder::lines(const QString &level) const
{
    const QString prefix = level + QLatin1Char(' ');
    QStringList result;
    for (const QString &line : lines()) {
        if (line.startsWith(prefix))
            result.append(line.mid(prefix.size()));
    }
    return result;
}

void LogRecorder::clear()
{
    const QMutexLocker lock(&mutex);
    recorded.clear();
}
