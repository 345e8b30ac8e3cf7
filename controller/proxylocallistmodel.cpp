// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "proxylocallistmodel.h"

#include <QPointer>

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
    // The reference items carry no rank of their own: the rooms keep the order of their list.
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
    m_refreshing = true;
    m_usedTitles.reset();
    const QPointer<ProxyLocalListModel> self(this);
    invalidate(); // whoever shows the rooms asks for them now
    if (!self)
        return;
    m_refreshing = false;
    m_usedTitles.reset();
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
    return isUsed(source.data(titleRole).toString());
}

bool ProxyLocalListModel::isUsed(const QString &title) const
{
    // A unit may change without a word to this proxy, so what the units use is known for one refresh only,
    // and not beyond a change that asks for the next one.
    if (!m_refreshing || m_stale)
        return std::any_of(m_uds->constBegin(), m_uds->constEnd(),
                           [&title](const UD *ud) { return ud && ud->local() == title; });
    if (!m_usedTitles) {
        m_usedTitles.emplace();
        for (const UD *ud : *m_uds) {
            if (ud)
                m_usedTitles->insert(ud->local());
        }
    }
    return m_usedTitles->contains(title);
}

bool ProxyLocalListModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    // A single row that comes in or changes is put behind all its equals unless they are told apart.
    if (QSortFilterProxyModel::lessThan(left, right))
        return true;
    return left.row() < right.row() && !QSortFilterProxyModel::lessThan(right, left);
}
