// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMORYPEAK_H
#define MEMORYPEAK_H

#include <QFile>
#include <QTest>

#include <functional>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

/// What reading may take at its peak, and what it took.
namespace memorypeak {

/// In kB, as the kernel tells it of this process; -1 when it does not.
inline long memory(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    const int at = text.indexOf(key);
    return at < 0 ? -1 : text.mid(at + int(qstrlen(key)) + 1).trimmed().split(' ').first().toLong();
}

/// What \p read needs more at its peak than before, in bytes, measured in a process of its own; -1 when that
/// process died.
inline double of(const std::function<void()> &read)
{
    int ends[2];
    if (pipe(ends) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        malloc_trim(0); // what earlier tests have given back would be used first, and hide what is taken
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        const bool isReset =
            reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && reset.write("5") == 1;
        const long before = memory("VmRSS");
        read();
        const long peak = isReset ? memory("VmHWM") - before : -1;
        const bool told = write(ends[1], &peak, sizeof peak) == sizeof peak;
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    long peak = -1;
    const bool told = ::read(ends[0], &peak, sizeof peak) == sizeof peak;
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return told && status == 0 ? double(peak) * 1024 : -1;
}

/// Whether memory can be measured: the sanitizers' own would be.
constexpr bool isMeasurable()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return true;
#endif
}

/// Fails the test when \p read takes more than 40 bytes for each of the \p size bytes of what it reads, and
/// 20 MB beside.
inline void verify(double size, const std::function<void()> &read)
{
    constexpr double megabyte = 1e6;
    const double peak = of(read);
    const QString figures = QStringLiteral("%1 MB for %2 MB").arg(peak / megabyte).arg(size / megabyte);
    qInfo("%s", qPrintable(figures));
    QVERIFY2(peak >= 0 && peak < 40 * size + 20 * megabyte, qPrintable(figures));
}

} // namespace memorypeak

#endif // MEMORYPEAK_H
