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

Descriptor openFile(const QByteArray &name, int flags, mode_t mode = 0)
{
    return Descriptor(uninterrupted([&] { return ::open(name.constData(), flags | O_CLOEXEC, mode); }));
}

/// A new file, nobody else's to read, in place of whatever stands there: an earlier power cut may have left a
/// file that may not be written, and a link or a pipe would lead the content elsewhere.
Descriptor createFile(const QByteArray &name)
{
    if (uninterrupted([&] { return ::unlink(name.constData()); }) != 0 && errno != ENOENT)
        return Descriptor(-1);
    return openFile(name, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
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

/// Gives the file \p descriptor the permissions of the file called \p old, else those of \p readers, whatever
/// the process's mask says. A file system without permissions needs none.
void setPermissions(const QByteArray &old, int descriptor, Readers readers)
{
    mode_t mode = S_IRUSR | S_IWUSR;
    if (readers == Readers::Everybody)
        mode |= S_IRGRP | S_IROTH;
    struct stat status = {};
    if (::stat(old.constData(), &status) == 0)
        mode = status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    uninterrupted([&] { return ::fchmod(descriptor, mode); });
}

/// \return 0, or why the directory's names may not be on the disk.
int syncDirectory(const QString &directory)
{
    const Descriptor descriptor = openFile(QFile::encodeName(directory), O_RDONLY | O_DIRECTORY);
    // A directory that may be written but not read cannot be synchronised, nor can some file systems'.
    if (!descriptor.isOpen())
        return errno == EACCES ? 0 : errno;
    if (uninterrupted([&] { return ::fsync(descriptor.get()); }) == 0 || errno == EINVAL || errno == ENOTSUP)
        return 0;
    return errno;
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
                 const QString &temporaryPath, Readers readers)
{
    const QString temporary = temporaryPath.isEmpty() ? path + QLatin1String(".tmp") : temporaryPath;
    // The system would end the name at a null character, and replace another file.
    if (path.contains(QChar::Null) || temporary.contains(QChar::Null))
        return fail(failure, false, EINVAL);

    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporaryName = QFile::encodeName(temporary);
    Descriptor file = createFile(temporaryName);
    if (!file.isOpen())
        return fail(failure, false, errno);

    setPermissions(name, file.get(), readers);
    if (!writeAll(file.get(), content) || uninterrupted([&] { return ::fsync(file.get()); }) != 0
        || !file.close()
        || uninterrupted([&] { return std::rename(temporaryName.constData(), name.constData()); }) != 0) {
        const int error = errno;
        ::unlink(temporaryName.constData());
        return fail(failure, true, error);
    }
    const int error = syncDirectory(QFileInfo(path).path());
    if (error != 0 && failure) {
        fail(failure, true, error);
        failure->replaced = true;
    }
    return true;
}

bool isWriteProtected(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isWritable();
}

void logReplaceFailure(const QString &path, const ReplaceFailure &failure)
{
    const char *const outcome =
        failure.replaced ? "saved, but a power cut may bring the old one back:" : "not saved:";
    QLOG_ERROR() << "[Halvar Controller]: File" << path << outcome << failure.reason;
}

} // namespace halvar
