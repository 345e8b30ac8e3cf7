// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QSLOGDEST_H
#define QSLOGDEST_H

#include <QSharedPointer>
#include <QString>

#include "QsLogExport.h"
#include "QsLogLevel.h"

namespace QsLogging {

/// Where finished lines go. write() is called under the logger's lock, from whichever thread logged:
/// it must not log itself.
class QSLOG_EXPORT Destination
{
public:
    typedef void (*LogFunction)(const QString &message, Level level);

    virtual ~Destination();
    /// \param message the whole line, without a line end.
    virtual void write(const QString &message, Level level) = 0;
    /// False when the destination could not be opened; its lines are then lost.
    virtual bool isValid() = 0;
};

typedef QSharedPointer<Destination> DestinationPtr;

enum LogRotationOption {
    DisableLogRotation = 0,
    EnableLogRotation = 1
};

/// A number with a name, so that the two limits of a file destination cannot be swapped.
struct MaxSizeBytes
{
    MaxSizeBytes()
        : MaxSizeBytes(1024 * 1024)
    { }
    explicit MaxSizeBytes(qint64 bytes)
        : size(bytes)
    { }
    qint64 size;
};

struct MaxOldLogCount
{
    MaxOldLogCount()
        : MaxOldLogCount(5)
    { }
    explicit MaxOldLogCount(int number)
        : count(number)
    { }
    int count;
};

class QSLOG_EXPORT DestinationFactory
{
public:
    /// Appends to the file at \p filePath. With rotation, a file that would grow past the size is
    /// renamed first and the given number of old ones is kept. An unwritable path gives a destination
    /// that is not valid.
    static DestinationPtr MakeFileDestination(const QString &filePath,
                                              LogRotationOption rotation = DisableLogRotation,
                                              const MaxSizeBytes &sizeInBytesToRotateAfter = MaxSizeBytes(),
                                              const MaxOldLogCount &oldLogsToKeep = MaxOldLogCount());
    /// Standard error.
    static DestinationPtr MakeDebugOutputDestination();
    static DestinationPtr MakeFunctorDestination(Destination::LogFunction function);
};

} // namespace QsLogging

#endif // QSLOGDEST_H
