// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "benchitem.h"

QHash<int, QByteArray> RowModel::roleNames() const
{
    return {{ObjectNameRole, "objectName"}, {TitleRole, "title"},      {ObservationRole, "observation"},
            {ElementRole, "element"},       {RankRole, "rank"},        {ConcentrationRole, "concentration"},
            {ActivatedRole, "activated"},   {DecisionRole, "decision"}};
}

QVariant RowModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= m_rows.size())
        return QVariant();
    const BenchItem::Values &values = m_rows.at(index.row());
    switch (role) {
    case ObjectNameRole:
        return values.objectName;
    case TitleRole:
        return values.title;
    case ObservationRole:
        return values.observation;
    case ElementRole:
        return values.element;
    case RankRole:
        return values.rank;
    case ConcentrationRole:
        return values.concentration;
    case ActivatedRole:
        return values.activated;
    case DecisionRole:
        return QVariant::fromValue(values.decision);
    default:
        return QVariant();
    }
}

void RowModel::append(const BenchItem::Values &values)
{
    beginInsertRows({}, m_rows.size(), m_rows.size());
    m_rows.append(values);
    endInsertRows();
}

void RowModel::setRank(int row, int rank)
{
    if (m_rows.at(row).rank == rank)
        return;
    m_rows[row].rank = rank;
    const QModelIndex changed = index(row);
    emit dataChanged(changed, changed, {RankRole});
}

void RowModel::removeFirst()
{
    beginRemoveRows({}, 0, 0);
    m_rows.removeFirst();
    endRemoveRows();
}

void RowModel::clear()
{
    beginRemoveRows({}, 0, m_rows.size() - 1);
    m_rows.clear();
    endRemoveRows();
}
