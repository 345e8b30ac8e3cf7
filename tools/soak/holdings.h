// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SOAK_HOLDINGS_H
#define SOAK_HOLDINGS_H

#include <QDir>
#include <QFile>

/// What this process holds of the machine.
struct Holdings
{
    qint64 residentKb = 0;
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
                    holdings.residentKb = line.simplified().split(' ').at(1).toLongLong();
                else if (line.startsWith("Threads:"))
                    holdings.threads = line.mid(8).trimmed().toInt();
            }
        }
        holdings.descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                   .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                   .size();
        return holdings;
    }
};

#endif // SOAK_HOLDINGS_H
