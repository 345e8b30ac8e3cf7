// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "proxylocallistmodel.h"

#include <algorithm>

#include "databaseitemlistmodel.h"
#include "udlistmodel.h"

ProxyLocalListModel::ProxyLocalListModel(DatabaseItemListModel *locaux, UDListModel *uds)
    : m_uds(uds)
    , titleRole(locaux ? locaux->roleForName(QByteArrayLiteral("title")) : -1)
{
    if (m_uds)
        connect(m_uds, &QObject::destroyed, this, [this] { m_uds = nullptr; });
    setSourceModel(locaux);
    // The reference items carry no rank of their own: every row compares equal and the rooms keep the
    // order of their list.
    setSortRole(locaux ? locaux->roleForName(QByteArrayLiteral("order")) : -1);
    setDynamicSortFilter(true);
    sort(0, Qt::AscendingOrder);
}

void ProxyLocalListModel::invalidateLater()
{
    if (m_stale)
        return;
    m_stale = true;
    QMetaObject::invokeMethod(this, &ProxyLocalListModel::refresh, Qt::QueuedConnection);
}

void ProxyLocalListModel::refresh()
{
    if (!m_stale)
        return;
    m_stale = false;
    invalidate();
}

int ProxyLocalListModel::findCurrentIndex(const QString &title)
{
    refresh();
    for (int row = 0; row < rowCount(); ++row) {
        if (index(row, 0).data(titleRole).toString() == title)
            return row;
    }
    return -1;
}

QString ProxyLocalListModel::firstTitle()
{
    refresh();
    return index(0, 0).data(titleRole).toString();
}

bool ProxyLocalListModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!m_uds || m_uds->isEmpty() || !sourceModel())
        return false;
    const QModelIndex source = sourceModel()->index(sourceRow, 0, sourceParent);
    if (!source.isValid())
        return false;
    const QString title = source.data(titleRole).toString();
    return std::any_of(m_uds->constBegin(), m_uds->constEnd(),
                       [&title](const UD *ud) { return ud && ud->local() == title; });
}
