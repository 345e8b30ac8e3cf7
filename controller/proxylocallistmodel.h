// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_PROXYLOCALLISTMODEL_H
#define HALVAR_PROXYLOCALLISTMODEL_H

#include <QSortFilterProxyModel>
#include <QString>

#include "halvar-export.h"

class DatabaseItemListModel;
class UDListModel;

/// The rooms of the reference list that at least one diagnostic unit uses, in the order of that list.
///
/// Units that change do not re-filter it: its owner, the unit list, calls invalidate().
class HALVAR_EXPORT ProxyLocalListModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Owns neither list; either may be null, and then no room is shown.
    ProxyLocalListModel(DatabaseItemListModel *locaux, UDListModel *uds);

    /// Row of the first room whose title is \p title, or -1.
    Q_INVOKABLE int findCurrentIndex(const QString &title) const;
    /// Title of the first room, empty when no room is shown.
    Q_INVOKABLE QString firstTitle() const;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    UDListModel *m_uds;
    int titleRole;
};

#endif // HALVAR_PROXYLOCALLISTMODEL_H
