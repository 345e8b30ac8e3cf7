// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FUZZ_MEMORYHOME_H
#define FUZZ_MEMORYHOME_H

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace fuzz {

/// A home directory in memory, gone with the process (and with its private instrument).
class MemoryHome
{
public:
    MemoryHome();
    /// With its final separator, as the library wants it.
    QString path() const { return m_directory.path() + QLatin1Char('/'); }
    QByteArray read(const char *name) const;
    /// And removes the copies that were kept of damaged files of that name: they would pile up, and each next
    /// one is compared with all of them.
    void write(const char *name, const QByteArray &content) const;

private:
    QTemporaryDir m_directory{QStringLiteral("/dev/shm/halvar-fuzz-XXXXXX")};
};

} // namespace fuzz

#endif // FUZZ_MEMORYHOME_H
