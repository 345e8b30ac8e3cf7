// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "damagedfile.h"

#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <optional>

#include <sys/stat.h>

#include <QsLog.h>

#include "filereplace.h"

namespace halvar {

namespace {

/// Nothing when the file cannot be read to its end: half of it is no copy.
std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.readAll();
    if (file.error() != QFile::NoError)
        return std::nullopt;
    return content;
}

QString keep(const QString &path, const QByteArray &content)
{
    const QString first = path + QLatin1String(".damaged");
    QString copy = first;
    for (int number = 1; QFile::exists(copy); ++number) {
        if (contentOf(copy) == content)
            return copy;
        copy = first + QLatin1Char('.') + QString::number(number);
    }
    return replaceFile(copy, content) ? copy : QString();
}

} // namespace

bool isNoFile(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR;
    return S_ISDIR(status.st_mode);
}

QString keepDamaged(const QString &path)
{
    static const QRegularExpression copyName(QStringLiteral("\\.damaged(\\.\\d+)?$"));
    if (copyName.match(path).hasMatch())
        return path;
    const std::optional<QByteArray> content = contentOf(path);
    return content ? keep(path, *content) : QString();
}

bool keepBeforeReplacing(const QString &path)
{
    const std::optional<QByteArray> content = contentOf(path);
    if (content ? content->isEmpty() : isNoFile(path))
        return true;
    const QString copy = content ? keep(path, *content) : QString();
    if (copy.isEmpty())
        return false;
    QLOG_WARN() << "[Halvar Controller]: File" << path << "was not read whole; kept as" << copy;
    return true;
}

void logNotKept(const QString &path)
{
    QLOG_ERROR() << "[Halvar Controller]: File" << path
                 << "not saved: the damaged file in its place could not be kept.";
}

} // namespace halvar
