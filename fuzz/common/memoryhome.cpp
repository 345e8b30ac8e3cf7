// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "memoryhome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "harness.h"

namespace fuzz {

MemoryHome::MemoryHome()
{
    FUZZ_VERIFY(m_directory.isValid());
    for (const char *directory : {"config", "database/locaux", "files", "shock"})
        FUZZ_VERIFY(QDir(m_directory.path()).mkpath(QLatin1String(directory)));
}

QByteArray MemoryHome::read(const char *name) const
{
    QFile file(path() + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void MemoryHome::write(const char *name, const QByteArray &content) const
{
    const QFileInfo place(path() + QLatin1String(name));
    QDir directory = place.dir();
    const QStringList copies = directory.entryList({place.fileName() + QStringLiteral(".damaged*")});
    for (const QString &copy : copies)
        FUZZ_VERIFY(directory.remove(copy));
    QFile file(place.filePath());
    FUZZ_VERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace fuzz
