// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "QsLogDest.h"

#include <QFile>

#include <cstdio>

#include <sys/stat.h>

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace QsLogging {

namespace {

/// A log tells what is typed and measured, and how the access point is started: a new one is its owner's
/// only.
spdlog::file_event_handlers ownersOnly()
{
    spdlog::file_event_handlers handlers;
    handlers.after_open = [](const spdlog::filename_t &, std::FILE *file) {
        struct stat status = {};
        if (fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0)
            fchmod(fileno(file), S_IRUSR | S_IWUSR);
    };
    return handlers;
}

/// Lines to a spdlog sink, which owns the file, its rotation and its flushing.
class SinkDestination : public Destination
{
public:
    explicit SinkDestination(spdlog::sink_ptr sink)
        : m_sink(std::move(sink))
    {
        if (m_sink)
            m_sink->set_formatter(std::make_unique<spdlog::pattern_formatter>("%v"));
    }

    void write(const QString &message, Level) override
    {
        if (!m_sink)
            return;
        const QByteArray line = message.toUtf8();
        // A full disk must not end a measurement: the line is lost, the program goes on.
        try {
            m_sink->log(spdlog::details::log_msg(
                spdlog::string_view_t(), spdlog::level::info,
                spdlog::string_view_t(line.constData(), static_cast<size_t>(line.size()))));
            m_sink->flush();
        } catch (const spdlog::spdlog_ex &) { }
    }

    bool isValid() override { return m_sink != nullptr; }

private:
    const spdlog::sink_ptr m_sink;
};

class FunctorDestination : public Destination
{
public:
    explicit FunctorDestination(LogFunction function)
        : m_function(function)
    { }
    void write(const QString &message, Level level) override
    {
        if (m_function)
            m_function(message, level);
    }
    bool isValid() override { return m_function != nullptr; }

private:
    const LogFunction m_function;
};

} // namespace

Destination::~Destination() = default;

DestinationPtr DestinationFactory::MakeFileDestination(const QString &filePath, LogRotationOption rotation,
                                                       const MaxSizeBytes &sizeInBytesToRotateAfter,
                                                       const MaxOldLogCount &oldLogsToKeep)
{
    const std::string path = QFile::encodeName(filePath).toStdString();
    spdlog::sink_ptr sink;
    try {
        if (rotation == EnableLogRotation)
            sink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(
                path, static_cast<size_t>(qMax<qint64>(1, sizeInBytesToRotateAfter.size)),
                static_cast<size_t>(qBound(0, oldLogsToKeep.count, 1000)), false, ownersOnly());
        else
            sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(path, false, ownersOnly());
    } catch (const spdlog::spdlog_ex &) {
        sink.reset();
    }
    return DestinationPtr(new SinkDestination(sink));
}

DestinationPtr DestinationFactory::MakeDebugOutputDestination()
{
    return DestinationPtr(new SinkDestination(std::make_shared<spdlog::sinks::stderr_sink_mt>()));
}

DestinationPtr DestinationFactory::MakeFunctorDestination(Destination::LogFunction function)
{
    return DestinationPtr(new FunctorDestination(function));
}

} // namespace QsLogging
