// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The list of items, which tells the changes of its rows.
#include <QCoreApplication>
#include <QVariant>

#include <memory>
#include <vector>

#include "benchitem.h"
#include "corepath.h"
#include "qqmlobjectlistmodel.h"

namespace {

using List = QQmlObjectListModel<BenchItem>;
constexpr int rows = 1000;

void fill(List &list)
{
    for (int row = 0; row < rows; ++row)
        list.append(new BenchItem(BenchItem::Values(row)));
}

void change(int row)
{
    List list;
    fill(list);
    int received = 0;
    QObject::connect(&list, &List::dataChanged, &list, [&received, row](const QModelIndex &from) {
        expect(from.row() == row, "a change of another row");
        ++received;
    });
    constexpr int changes = 1000;
    int rank = -1;
    countSecond([&] {
        for (int i = 0; i < changes; ++i)
            list.at(row)->setRank(--rank);
    });
    expect(received == 2 * changes, "a change was not told");
}

void read()
{
    qRegisterMetaType<BenchItem::Decision>(); // as those of the library's own items are
    List list;
    fill(list);
    qint64 valid = 0;
    countSecond([&] {
        for (int row = 0; row < rows; ++row) {
            const QModelIndex index = list.index(row, 0);
            for (int role = RowModel::ObjectNameRole; role <= RowModel::DecisionRole; ++role)
                valid += list.data(index, role).isValid() ? 1 : 0;
        }
    });
    expect(valid == 2 * rows * 8, "a value is missing");
}

void append()
{
    std::unique_ptr<List> list;
    std::vector<BenchItem *> items;
    countSecond(
        [&] {
            list = std::make_unique<List>();
            items.clear();
            for (int row = 0; row < rows; ++row)
                items.push_back(new BenchItem(BenchItem::Values(row)));
        },
        [&] {
            for (BenchItem *item : items)
                list->append(item);
        });
    expect(list->count() == rows, "an item is missing");
}

// With the deletion of the items, which the list puts off.
void removeFirst()
{
    List list;
    countSecond([&] { fill(list); },
                [&] {
                    for (int i = 0; i < rows; ++i)
                        list.remove(0);
                    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                });
    expect(list.isEmpty() && list.children().isEmpty(), "an item is left");
}

const bool registered =
    corePath("list-change-first", "1,000 changes of the first of 1,000 rows", [] { change(0); })
    && corePath("list-change-middle", "1,000 changes of the middle one of 1,000 rows",
                [] { change(rows / 2); })
    && corePath("list-change-last", "1,000 changes of the last of 1,000 rows", [] { change(rows - 1); })
    && corePath("list-read", "all 8 roles of 1,000 rows read", read)
    && corePath("list-append", "1,000 items appended to an empty list", append)
    && corePath("list-remove-first", "the first row removed 1,000 times, its item deleted", removeFirst);

} // namespace
