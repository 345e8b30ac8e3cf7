// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "diagnosticfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>
#include <QXmlStreamReader>

#include <algorithm>

#include <sys/stat.h>

namespace {

const QString Suffix = QStringLiteral(".xml");
const QString CopySuffix = QStringLiteral(".xml.damaged");
/// What file systems take, with the suffix.
constexpr int MaxNameBytes = 255;

} // namespace

bool DiagnosticFiles::Entry::operator!=(const Entry &other) const
{
    return path != other.path || name != other.name || place != other.place || units != other.units
        || size != other.size || modified != other.modified || problem != other.problem;
}

DiagnosticFiles::DiagnosticFiles(const QString &home, QObject *parent)
    : QAbstractListModel(parent)
    , m_directory(QDir::cleanPath(home + QStringLiteral("/files")))
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DiagnosticFiles::refresh);
}

int DiagnosticFiles::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant DiagnosticFiles::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_files.size())
        return QVariant();
    const Entry &file = m_files.at(index.row());
    switch (role) {
    case NameRole:
        return file.name;
    case PathRole:
        return file.path;
    case PlaceRole:
        return file.place;
    case UnitsRole:
        return file.units;
    case SizeRole:
        return double(file.size);
    case ModifiedRole:
        return file.modified;
    case DamagedRole:
        return !file.problem.isEmpty();
    case ProblemRole:
        return file.problem;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> DiagnosticFiles::roleNames() const
{
    return {{NameRole, "name"},       {PathRole, "path"},      {PlaceRole, "place"},
            {UnitsRole, "units"},     {SizeRole, "size"},      {ModifiedRole, "modified"},
            {DamagedRole, "damaged"}, {ProblemRole, "problem"}};
}

QString DiagnosticFiles::pathOf(const QString &name) const
{
    return m_directory + QLatin1Char('/') + name + Suffix;
}

bool DiagnosticFiles::contains(const QString &name) const
{
    return QFileInfo(pathOf(name)).isFile();
}

bool DiagnosticFiles::exists(const QString &path) const
{
    return QFileInfo::exists(path);
}

QString DiagnosticFiles::stampOf(const QString &name) const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(pathOf(name)).constData(), &status) != 0)
        return QString();
    // A save puts a new file in the place of the old one, so it has another number; clocks tick too slowly.
    return QStringLiteral("%1 %2.%3 %4")
        .arg(status.st_ino)
        .arg(status.st_mtim.tv_sec)
        .arg(status.st_mtim.tv_nsec)
        .arg(status.st_size);
}

QString DiagnosticFiles::nameToSave(const QString &path) const
{
    const QString file = QFileInfo(path).fileName();
    if (file.endsWith(Suffix))
        return file.chopped(Suffix.size());
    QString original = file.left(file.indexOf(CopySuffix));
    for (int number = 1;; ++number) {
        const QString mark =
            number == 1 ? tr(" (récupéré)") : tr(" (récupéré %1)", "a further copy").arg(number);
        QString name = original + mark;
        while (QFile::encodeName(name + Suffix).size() > MaxNameBytes) {
            original.chop(1);
            name = original + mark;
        }
        if (!contains(name))
            return name;
    }
}

void DiagnosticFiles::setFollowing(bool following)
{
    if (m_following == following)
        return;
    m_following = following;
    const QStringList watched = m_watcher.directories();
    if (following) {
        refresh();
    } else if (!watched.isEmpty()) {
        m_watcher.removePaths(watched);
    }
    emit followingChanged();
}

void DiagnosticFiles::refresh()
{
    if (m_following && m_watcher.directories().isEmpty() && QFileInfo(m_directory).isDir())
        m_watcher.addPath(m_directory);

    // Files that did not change are not read again: a large one takes a while.
    QHash<QString, Entry> known;
    for (const Entry &file : qAsConst(m_files))
        known.insert(file.path, file);
    QVector<Entry> files;
    const QFileInfoList infos =
        QDir(m_directory)
            .entryInfoList({QLatin1Char('*') + Suffix, QLatin1Char('*') + CopySuffix + QLatin1Char('*')},
                           QDir::Files | QDir::Hidden, QDir::Time);
    for (const QFileInfo &info : infos) {
        const Entry before = known.value(info.filePath());
        const bool same = before.modified == info.lastModified() && before.size == info.size();
        files.append(same ? before : read(info.filePath()));
    }

    m_freeBytes = double(QStorageInfo(m_directory).bytesAvailable());
    become(files);
    emit changed();
}

void DiagnosticFiles::become(const QVector<Entry> &files)
{
    QSet<QString> remaining;
    for (const Entry &file : files)
        remaining.insert(file.path);
    QSet<QString> listed;
    for (int row = count() - 1; row >= 0; --row) {
        const QString path = m_files.at(row).path;
        if (remaining.contains(path)) {
            listed.insert(path);
            continue;
        }
        beginRemoveRows(QModelIndex(), row, row);
        m_files.remove(row);
        endRemoveRows();
    }
    for (int row = 0; row < files.size(); ++row) {
        int last = row;
        while (last < files.size() && !listed.contains(files.at(last).path))
            ++last;
        if (last > row) {
            beginInsertRows(QModelIndex(), row, last - 1);
            m_files = m_files.mid(0, row) + files.mid(row, last - row) + m_files.mid(row);
            endInsertRows();
            row = last - 1;
            continue;
        }
        const Entry &file = files.at(row);
        const auto found = std::find_if(m_files.cbegin() + row, m_files.cend(),
                                        [&file](const Entry &other) { return other.path == file.path; });
        const int from = int(found - m_files.cbegin());
        if (from != row) {
            beginMoveRows(QModelIndex(), from, from, QModelIndex(), row);
            m_files.move(from, row);
            endMoveRows();
        }
        if (m_files.at(row) != file) {
            m_files[row] = file;
            emit dataChanged(index(row), index(row));
        }
    }
}

DiagnosticFiles::Entry DiagnosticFiles::read(const QString &path)
{
    const QFileInfo info(path);
    Entry file;
    file.path = path;
    file.name = info.fileName();
    if (file.name.endsWith(Suffix))
        file.name.chop(Suffix.size());
    file.size = info.size();
    file.modified = info.lastModified();

    QFile device(path);
    if (!device.open(QIODevice::ReadOnly)) {
        file.problem = device.errorString();
        return file;
    }
    QXmlStreamReader xml(&device);
    // "Localisation" is also what a measure calls its position.
    bool inInformations = false;
    bool isRoot = true;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == QLatin1String("Informations"))
            inInformations = false;
        if (!xml.isStartElement())
            continue;
        if (isRoot && xml.name() != QLatin1String("Dossier")) {
            file.problem = tr("ce n'est pas un diagnostic");
            return file;
        }
        isRoot = false;
        if (xml.name() == QLatin1String("Informations"))
            inInformations = true;
        else if (inInformations && xml.name() == QLatin1String("Localisation"))
            file.place = xml.readElementText(QXmlStreamReader::SkipChildElements);
        else if (xml.name() == QLatin1String("Ud"))
            ++file.units;
    }
    if (xml.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        file.problem = tr("le fichier s'arrête à la ligne %1").arg(xml.lineNumber());
    else if (xml.hasError())
        file.problem =
            tr("illisible à la ligne %1, colonne %2").arg(xml.lineNumber()).arg(xml.columnNumber());
    return file;
}
