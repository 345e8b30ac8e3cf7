// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "QsLog.h"

#include <QDateTime>
#include <QVector>

#include <atomic>
#include <mutex>

namespace QsLogging {

namespace {

const char *levelName(Level level)
{
    switch (level) {
    case TraceLevel:
        return "TRACE";
    case DebugLevel:
        return "DEBUG";
    case InfoLevel:
        return "INFO ";
    case WarnLevel:
        return "WARN ";
    case ErrorLevel:
        return "ERROR";
    case FatalLevel:
        return "FATAL";
    case OffLevel:
        break;
    }
    return "     ";
}

} // namespace

struct Logger::Private
{
    std::atomic<Level> level{InfoLevel};
    std::mutex mutex;
    QVector<DestinationPtr> destinations;
};

Logger::Logger()
    : d(std::make_unique<Private>())
{ }

Logger::~Logger() = default;

Logger &Logger::instance()
{
    static Logger logger;
    return logger;
}

void Logger::addDestination(const DestinationPtr &destination)
{
    if (!destination)
        return;
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->destinations.append(destination);
}

void Logger::removeDestination(const DestinationPtr &destination)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->destinations.removeOne(destination);
}

void Logger::setLoggingLevel(Level newLevel)
{
    d->level.store(newLevel, std::memory_order_relaxed);
}

Level Logger::loggingLevel() const
{
    return d->level.load(std::memory_order_relaxed);
}

void Logger::write(const QString &message, Level level)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    for (const DestinationPtr &destination : qAsConst(d->destinations))
        destination->write(message, level);
}

Logger::Helper::~Helper()
{
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz"));
    Logger::instance().write(
        QLatin1String(levelName(m_level)) + QLatin1Char(' ') + time + QLatin1Char(' ') + m_buffer, m_level);
}

} // namespace QsLogging
