// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SOAK_HOLDINGS_H
#define SOAK_HOLDINGS_H

#include <QDir>
#include <QFile>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Declared here because GCC does not install the header that does.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// What this process holds of the machine.
struct Holdings
{
    /// Resident memory. In a sanitizer's build what is allocated: there the resident memory grows with all
    /// that was ever freed, which the sanitizer keeps back to catch whoever uses it.
    qint64 memoryKb = 0;
    int threads = 0;
    int descriptors = 0;

    static Holdings now()
    {
        Holdings holdings;
        QFile status(QStringLiteral("/proc/self/status"));
        if (status.open(QIODevice::ReadOnly)) {
            const QList<QByteArray> lines = status.readAll().split('\n');
            for (const QByteArray &line : lines) {
                if (line.startsWith("VmRSS:"))
                    holdings.memoryKb = line.simplified().split(' ').at(1).toLongLong();
                else if (line.startsWith("Threads:"))
                    holdings.threads = line.mid(8).trimmed().toInt();
            }
        }
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        holdings.memoryKb = qint64(__sanitizer_get_current_allocated_bytes() / 1024);
#endif
        holdings.descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                   .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                   .size();
        return holdings;
    }
};

#endif // SOAK_HOLDINGS_H
