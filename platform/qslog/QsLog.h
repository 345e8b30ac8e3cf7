// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QSLOG_H
#define QSLOG_H

#include <QDebug>
#include <QString>

#include <atomic>
#include <memory>

#include "QsLogDest.h"
#include "QsLogExport.h"
#include "QsLogLevel.h"

namespace QsLogging {

/// The process's logger: lines at or above its level go to every destination, in the order in which
/// they were added. All functions may be called from any thread.
class QSLOG_EXPORT Logger
{
public:
    static Logger &instance();

    void addDestination(const DestinationPtr &destination);
    void removeDestination(const DestinationPtr &destination);
    void setLoggingLevel(Level newLevel);
    /// Info until it is set.
    Level loggingLevel() const { return s_level.load(std::memory_order_relaxed); }
    /// Whether a line of this level goes nowhere. All that a line costs then: neither a call nor the
    /// guard of instance().
    static bool keepsOut(Level lineLevel) { return s_level.load(std::memory_order_relaxed) > lineLevel; }

    /// Composes one line and hands it on when it is destroyed, as
    /// "LEVEL yyyy-MM-ddThh:mm:ss.zzz text", LEVEL padded to five characters.
    class QSLOG_EXPORT Helper
    {
    public:
        explicit Helper(Level logLevel)
            : m_level(logLevel)
            , m_stream(&m_buffer)
        { }
        ~Helper();
        QDebug &stream() { return m_stream; }

    private:
        Q_DISABLE_COPY(Helper)
        Level m_level;
        QString m_buffer;
        QDebug m_stream;
    };

private:
    Logger();
    ~Logger();
    Q_DISABLE_COPY(Logger)
    void write(const QString &text, Level level);

    static std::atomic<Level> s_level;

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace QsLogging

// A line that the level keeps out is not composed: nothing behind the macro is evaluated.
#define QSLOG_LINE(level)                                                                                    \
    if (QsLogging::Logger::keepsOut(level)) {                                                                \
    } else                                                                                                   \
        QsLogging::Logger::Helper(level).stream()
#define QLOG_TRACE() QSLOG_LINE(QsLogging::TraceLevel)
#define QLOG_DEBUG() QSLOG_LINE(QsLogging::DebugLevel)
#define QLOG_INFO() QSLOG_LINE(QsLogging::InfoLevel)
#define QLOG_WARN() QSLOG_LINE(QsLogging::WarnLevel)
#define QLOG_ERROR() QSLOG_LINE(QsLogging::ErrorLevel)
#define QLOG_FATAL() QSLOG_LINE(QsLogging::FatalLevel)

#endif // QSLOG_H
