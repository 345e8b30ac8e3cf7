// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "QsLog.h"

#include <QDateTime>
#include <QVector>

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
    std::mutex mutex;
    QVector<DestinationPtr> destinations;
};

std::atomic<Level> Logger::s_level{InfoLevel};

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
    s_level.store(newLevel, std::memory_order_relaxed);
}

void Logger::write(const QString &text, Level level)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    // The local time costs more than the rest of a line.
    if (d->destinations.isEmpty())
        return;
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz"));
    const QString message =
        QLatin1String(levelName(level)) + QLatin1Char(' ') + time + QLatin1Char(' ') + text;
    for (const DestinationPtr &destination : qAsConst(d->destinations))
        destination->write(message, level);
}

Logger::Helper::~Helper()
{
    Logger::instance().write(m_buffer, m_level);
}

} // namespace QsLogging
