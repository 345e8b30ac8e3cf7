// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "loglines.h"

#include <QMutex>
#include <QMutexLocker>

namespace {

QMutex mutex;
LogLines *receiver = nullptr;

// "LEVEL yyyy-MM-ddThh:mm:ss.zzz text"
constexpr int TimeStart = 5 + 1 + 11;
constexpr int TimeLength = 12;
constexpr int TextStart = TimeStart + TimeLength + 1;

} // namespace

LogLines::LogLines(QObject *parent)
    : QAbstractListModel(parent)
    , m_destination(QsLogging::DestinationFactory::MakeFunctorDestination(&LogLines::receive))
{
    {
        const QMutexLocker lock(&mutex);
        receiver = this;
    }
    QsLogging::Logger::instance().addDestination(m_destination);
}

LogLines::~LogLines()
{
    QsLogging::Logger::instance().removeDestination(m_destination);
    const QMutexLocker lock(&mutex);
    receiver = nullptr;
}

int LogLines::level() const
{
    return QsLogging::Logger::instance().loggingLevel();
}

void LogLines::setLevel(int level)
{
    if (level == this->level() || level < QsLogging::TraceLevel || level > QsLogging::OffLevel)
        return;
    QsLogging::Logger::instance().setLoggingLevel(static_cast<QsLogging::Level>(level));
    emit levelChanged();
}

int LogLines::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

QVariant LogLines::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_lines.size())
        return QVariant();
    const Line &line = m_lines.at(index.row());
    switch (role) {
    case LevelRole:
        return line.level;
    case TimeRole:
        return line.time;
    case TextRole:
        return line.text;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> LogLines::roleNames() const
{
    return {{LevelRole, "level"}, {TimeRole, "time"}, {TextRole, "text"}};
}

void LogLines::receive(const QString &message, QsLogging::Level level)
{
    const QMutexLocker lock(&mutex);
    if (!receiver)
        return;
    // Never at once: a line may be written while a view reads the list.
    LogLines *const lines = receiver;
    QMetaObject::invokeMethod(
        lines, [lines, level, message] { lines->append(level, message); }, Qt::QueuedConnection);
}

void LogLines::append(int level, const QString &message)
{
    if (m_lines.size() >= limit) {
        // A tenth at a time: views do not move with each line.
        constexpr int chunk = limit / 10;
        beginRemoveRows(QModelIndex(), 0, chunk - 1);
        m_lines.remove(0, chunk);
        endRemoveRows();
    }
    const int row = int(m_lines.size());
    beginInsertRows(QModelIndex(), row, row);
    m_lines.append({level, message.mid(TimeStart, TimeLength), message.mid(TextStart).trimmed()});
    endInsertRows();
}
