// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef LISTGUARD_H
#define LISTGUARD_H

#include <QIdentityProxyModel>

/// Lets QAbstractItemModelTester watch our lists: their rowCount() ignores its parent, which the
/// tester rejects, while a view never asks a list for the children of a row.
class ListGuard : public QIdentityProxyModel
{
public:
    explicit ListGuard(QAbstractItemModel *list, QObject *parent = nullptr)
        : QIdentityProxyModel(parent)
    {
        setSourceModel(list);
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : QIdentityProxyModel::rowCount(parent);
    }
    // Asking a sort and filter proxy is enough to make it look for rows below a row, and find some.
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : QIdentityProxyModel::columnCount(parent);
    }
};

#endif // LISTGUARD_H
