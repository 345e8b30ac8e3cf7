// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "shellrecord.h"

#include <QFile>
#include <QFileInfo>

namespace simulator {

ShellRecord::ShellRecord(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &ShellRecord::read);
}

bool ShellRecord::start(QString &error)
{
    if (m_path.isEmpty())
        return true;
    m_position = QFileInfo(m_path).size();
    if (m_watcher.addPath(m_path))
        return true;
    error = QStringLiteral("%1 cannot be watched").arg(m_path);
    return false;
}

void ShellRecord::read()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (file.size() < m_position) { // begun anew
        m_position = 0;
        m_begun.clear();
    }
    file.seek(m_position);
    const QByteArray added = file.readAll();
    m_position += added.size();
    QList<QByteArray> lines = (m_begun + added).split('\n');
    m_begun = lines.takeLast();
    for (const QByteArray &line : qAsConst(lines))
        emit called(QString::fromUtf8(line));
}

} // namespace simulator
