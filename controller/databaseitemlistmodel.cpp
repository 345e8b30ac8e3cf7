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
        if (m_titlesKnown && last + 1 == count())
            noteTitles(first, last);
        else
            forgetTitles();
    });
    const int titleRole = roleForName(QByteArrayLiteral("title"));
    connect(this, &QAbstractItemModel::dataChanged, this,
            [this, titleRole](const QModelIndex &, const QModelIndex &, const QVector<int> &roles) {
                if (roles.isEmpty() || roles.contains(titleRole))
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
    // What is found is proved: an item that somebody else deleted leaves no signal behind.
    DatabaseItem *found = m_titlesKnown ? m_byTitle.value(title) : nullptr;
    if (m_titlesKnown && (!found || (contains(found) && found->title() == title)))
        return found;
    m_byTitle.clear();
    m_titlesKnown = true;
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
