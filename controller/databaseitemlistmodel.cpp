// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "databaseitemlistmodel.h"

#include <algorithm>

DatabaseItemListModel::DatabaseItemListModel(QObject *parent)
    : QQmlObjectListModel<DatabaseItem>(parent)
{ }

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
    const auto found = std::find_if(
        begin(), end(), [&title](const DatabaseItem *item) { return item && item->title() == title; });
    return found == end() ? nullptr : *found;
}
