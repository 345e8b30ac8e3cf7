// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "filereplace.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QsLog.h>

namespace halvar {

namespace {

/// Repeats \p call as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// An open file that is closed when it goes out of scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    { }
    ~Descriptor() { close(); }
    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    bool close()
    {
        if (!isOpen())
            return true;
        // Not repeated: the descriptor is gone even when a signal came in between.
        const bool closed = ::close(m_descriptor) == 0 || errno == EINTR;
        m_descriptor = -1;
        return closed;
    }

private:
    Q_DISABLE_COPY(Descriptor)
    int m_descriptor;
};

Descriptor openFile(const QByteArray &name, int flags)
{
    return Descriptor(uninterrupted([&] { return ::open(name.constData(), flags | O_CLOEXEC, 0666); }));
}

bool writeAll(int descriptor, const QByteArray &content)
{
    qint64 written = 0;
    while (written < content.size()) {
        const auto rest = static_cast<std::size_t>(content.size() - written);
        const ssize_t count =
            uninterrupted([&] { return ::write(descriptor, content.constData() + written, rest); });
        if (count < 0)
            return false;
        if (count == 0) {
            errno = ENOSPC;
            return false;
        }
        written += count;
    }
    return true;
}

void copyPermissions(const QByteArray &from, int to)
{
    struct stat status = {};
    if (::stat(from.constData(), &status) == 0)
        uninterrupted([&] { return ::fchmod(to, status.st_mode & 07777); });
}

void syncDirectory(const QString &directory)
{
    // Not every file system lets a directory be synchronised. Without it a power cut may bring the old
    // file back, which is complete too: no failure.
    const Descriptor descriptor = openFile(QFile::encodeName(directory), O_RDONLY | O_DIRECTORY);
    if (descriptor.isOpen())
        uninterrupted([&] { return ::fsync(descriptor.get()); });
}

bool fail(ReplaceFailure *failure, bool opened, int error)
{
    if (failure) {
        failure->opened = opened;
        failure->reason = qt_error_string(error);
    }
    return false;
}

} // namespace

bool replaceFile(const QString &path, const QByteArray &content, ReplaceFailure *failure,
                 const QString &temporaryPath)
{
    const QString temporary = temporaryPath.isEmpty() ? path + QLatin1String(".tmp") : temporaryPath;
    // The system would end the name at a null character, and replace another file.
    if (path.contains(QChar::Null) || temporary.contains(QChar::Null))
        return fail(failure, false, EINVAL);

    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporaryName = QFile::encodeName(temporary);
    Descriptor file = openFile(temporaryName, O_WRONLY | O_CREAT | O_TRUNC);
    if (!file.isOpen())
        return fail(failure, false, errno);

    copyPermissions(name, file.get());
    if (!writeAll(file.get(), content) || uninterrupted([&] { return ::fsync(file.get()); }) != 0
        || !file.close() || std::rename(temporaryName.constData(), name.constData()) != 0) {
        const int error = errno;
        ::unlink(temporaryName.constData());
        return fail(failure, true, error);
    }
    syncDirectory(QFileInfo(path).path());
    return true;
}

bool isWriteProtected(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isWritable();
}

void logReplaceFailure(const QString &path, const ReplaceFailure &failure)
{
    QLOG_ERROR() << "[Halvar Controller]: File" << path << "not saved:" << failure.reason;
}

} // namespace halvar
