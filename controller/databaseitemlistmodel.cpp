// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "databaseitemlistmodel.h"

DatabaseItemListModel::DatabaseItemListModel(QObject *parent)
    : QQmlObjectListModel<DatabaseItem>(parent)
{
    connect(this, &QAbstractItemModel::rowsRemoved, this, &DatabaseItemListModel::forgetTitles);
    connect(this, &QAbstractItemModel::rowsMoved, this, &DatabaseItemListModel::forgetTitles);
    connect(this, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
        // At the end, where it mostly happens, nothing that is known changes.
        if (areTitlesKnown() && last + 1 == count())
            noteTitles(first, last);
        else
            forgetTitles();
    });
}

QString DatabaseItemListModel::findImageFromTitle(const QString &title) const
{
    const DatabaseItem *item = findTitle(title);
    return item ? item->image() : QString();
}

bool DatabaseItemListModel::activateIfTitleExist(const QString &title)
{
    DatabaseItem *item = findTitle(title);
    if (!item)
        return false;
    item->setActivated(true);
    return true;
}

void DatabaseItemListModel::add(const QString &title, const QString &image, const QString &type, int index)
{
    auto *item = new DatabaseItem(m_home, this);
    item->setTitle(title);
    item->setType(type); // before the picture, which is looked up in the type's folder
    item->setImage(image);
    item->setActivated(true);
    item->setOriginal(false);
    if (index == -1)
        append(item);
    else
        insert(index, item);
}

DatabaseItem *DatabaseItemListModel::findTitle(const QString &title) const
{
    if (areTitlesKnown())
        return m_byTitle.value(title);
    m_byTitle.clear();
    m_titlesKnown = true;
    m_titlesVersion = DatabaseItem::titlesVersion();
    noteTitles(0, count() - 1);
    return m_byTitle.value(title);
}

void DatabaseItemListModel::noteTitles(int first, int last) const
{
    for (int row = first; row <= last; ++row) {
        DatabaseItem *item = at(row);
        if (item && !m_byTitle.contains(item->title()))
            m_byTitle.insert(item->title(), item);
    }
}
