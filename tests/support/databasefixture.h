// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DATABASEFIXTURE_H
#define DATABASEFIXTURE_H

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

#include <sys/stat.h>

#include "database.h"

inline QStringList titles(const DatabaseItemListModel *list)
{
    QStringList result;
    for (const DatabaseItem *item : *list)
        result.append(item->title());
    return result;
}

/// All that the eight lists hold, one line per item.
inline QStringList content(const Database &database)
{
    QStringList result;
    const DatabaseItemListModel *const lists[] = {
        database.m_LocalItemsListModel,     database.m_ElementItemsListModel,
        database.m_SubstratItemsListModel,  database.m_RevetementItemsListModel,
        database.m_NonVisiteItemsListModel, database.m_NonMesureItemsListModel,
        database.m_EtatUsageItemsListModel, database.m_EtatDegradeItemsListModel,
    };
    int number = 0;
    for (const DatabaseItemListModel *list : lists) {
        for (const DatabaseItem *item : *list) {
            result.append(QStringLiteral("%1|%2|%3|%4|%5|%6")
                              .arg(number)
                              .arg(item->type())
                              .arg(item->original())
                              .arg(item->activated())
                              .arg(item->image(), item->title()));
        }
        ++number;
    }
    return result;
}

inline QByteArray item(const char *title)
{
    return QByteArray("<item type=\"t\" original=\"true\" activated=\"true\"><image/><title lang=\"fr\">")
        + title + "</title></item>";
}

inline const QByteArray diagnosticWithoutItems =
    "<database_diagnostic><non_visite/><non_mesure/><etat_usage/><etat_degrade/></database_diagnostic>";

/// A reference database on a home of its own, which holds the one picture database/locaux/cuisine.png.
class DatabaseFixture
{
protected:
    void renew()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QDir(m_directory->path()).mkpath(QStringLiteral("database/locaux"));
        QFile picture(home() + QStringLiteral("database/locaux/cuisine.png"));
        if (!picture.open(QIODevice::WriteOnly))
            qFatal("Cannot write %s", qPrintable(picture.fileName()));
        m_database = std::make_unique<Database>();
    }
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<Database> m_database;

    QString home() const { return m_directory->path() + QLatin1Char('/'); }
    QString unitPath() const { return home() + QStringLiteral("database/database_unit.xml"); }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(home() + QStringLiteral("database/") + QLatin1String(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("Cannot write %s", qPrintable(file.fileName()));
    }
    QByteArray unitFile() const
    {
        QFile file(unitPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
    }
    static QByteArray reference(const char *name)
    {
        QFile file(QStringLiteral(HALVAR_SOURCE_DIR "/tests/data/database/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Cannot read %s", qPrintable(file.fileName()));
        return file.readAll();
    }
    /// A unit file of this content beside a diagnostic file without items.
    bool readUnit(const QByteArray &bytes)
    {
        write("database_unit.xml", bytes);
        write("database_diagnostic.xml", diagnosticWithoutItems);
        return m_database->read(home());
    }
    ino_t unitInode() const
    {
        struct stat status = {};
        return stat(QFile::encodeName(unitPath()).constData(), &status) == 0 ? status.st_ino : 0;
    }
};

#endif // DATABASEFIXTURE_H
