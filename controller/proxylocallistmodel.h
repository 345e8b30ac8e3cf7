// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_PROXYLOCALLISTMODEL_H
#define HALVAR_PROXYLOCALLISTMODEL_H

#include <QSet>
#include <QSortFilterProxyModel>
#include <QString>

#include <optional>

#include "halvar-export.h"

class DatabaseItemListModel;
class UDListModel;

/// The rooms of the reference list that at least one diagnostic unit uses, in the order of that list.
///
/// It does not watch the units itself: its owner, the unit list, tells it when they have changed.
class HALVAR_EXPORT ProxyLocalListModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Owns neither list; either may be null, and then no room is shown.
    ProxyLocalListModel(DatabaseItemListModel *locaux, UDListModel *uds);

    /// Row of the first room whose title is \p title, or -1.
    Q_INVOKABLE int findCurrentIndex(const QString &title);
    /// Title of the first room, empty when no room is shown.
    Q_INVOKABLE QString firstTitle();

    /// Filters anew once the event loop runs, or before the next answer of this class: loading a large
    /// diagnostic filters the rooms once.
    void invalidateLater();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    void refresh();
    bool isUsed(const QString &title) const;

    UDListModel *m_uds;
    int titleRole;
    bool m_stale = false;
    bool m_refreshing = false;
    /// The titles that the units use, while the rooms are filtered anew by them.
    mutable std::optional<QSet<QString>> m_usedTitles;
};

#endif // HALVAR_PROXYLOCALLISTMODEL_H
