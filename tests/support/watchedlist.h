// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef WATCHEDLIST_H
#define WATCHEDLIST_H

#include <QAbstractItemModelTester>

#include "listguard.h"
#include "listitem.h"
#include "qqmlobjectlistmodel.h"
#include "signallog.h"

using List = QQmlObjectListModel<ListItem>;

/// A list under the eyes of the model tester, with the record of its signals.
struct WatchedList : List
{
    explicit WatchedList(const QByteArray &uidRole = QByteArray(),
                         const QByteArray &displayRole = QByteArray())
        : List(nullptr, uidRole, displayRole)
        , guard(this)
        , tester(&guard, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        log.watch(this, &List::rowsAboutToBeInserted, QStringLiteral("inserting"));
        log.watch(this, &List::rowsInserted, QStringLiteral("inserted"));
        log.watch(this, &List::rowsAboutToBeRemoved, QStringLiteral("removing"));
        log.watch(this, &List::rowsRemoved, QStringLiteral("removed"));
        log.watch(this, &List::rowsAboutToBeMoved, QStringLiteral("moving"));
        log.watch(this, &List::rowsMoved, QStringLiteral("moved"));
        log.watch(this, &List::dataChanged, QStringLiteral("data"));
        log.watch(this, &List::countChanged, QStringLiteral("count"));
        log.watch(this, &List::modelReset, QStringLiteral("reset"));
        log.watch(this, &List::layoutChanged, QStringLiteral("layout"));
    }
    ListItem *add(const QString &title)
    {
        auto *item = new ListItem(title);
        append(item);
        return item;
    }
    void fill(int rows)
    {
        for (int row = 0; row < rows; ++row)
            add(QString::number(row));
        log.clear();
    }
    QString titles() const
    {
        QStringList result;
        for (const ListItem *item : *this)
            result.append(item->title());
        return result.join(QLatin1Char(' '));
    }
    QVariant read(int row, int role) const { return data(index(row), role); }

    SignalLog log;
    ListGuard guard;
    QAbstractItemModelTester tester;
};

#endif // WATCHEDLIST_H
