// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The proxy for QML: 1,000 rows, filtered and sorted there and back.
#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

#include "benchitem.h"
#include "corepath.h"
#include "qqmlobjectlistmodel.h"
#include "qqmlsortfilterproxymodel.h"

namespace {

using List = QQmlObjectListModel<BenchItem>;
using Proxy = QQmlSortFilterProxyModel;
constexpr int rows = 1000;

QQmlEngine &engine()
{
    static QQmlEngine engine;
    return engine;
}

List &source()
{
    static List list;
    for (int row = list.count(); row < rows; ++row)
        list.append(new BenchItem(BenchItem::Values(row)));
    return list;
}

std::unique_ptr<Proxy> proxyOf(const QByteArray &body)
{
    QQmlComponent component(&engine());
    component.setData(
        "import QtQml 2.2\nimport SortFilterProxyModel 0.1\nSortFilterProxyModel {" + body + "}", QUrl());
    std::unique_ptr<Proxy> proxy(qobject_cast<Proxy *>(component.create()));
    if (!proxy)
        wrongResult(qPrintable(component.errorString()));
    proxy->setSourceModel(&source());
    return proxy;
}

bool shows(const Proxy &proxy, bool activated)
{
    return proxy.rowCount() == rows / 2
        && proxy.index(0, 0).data(RowModel::ActivatedRole).toBool() == activated;
}

void filterByValue()
{
    const auto proxy = proxyOf("filterRoleName: 'activated'; filterValue: true");
    countSecond([&] {
        for (const bool value : {false, true}) {
            proxy->setFilterValue(value);
            expect(shows(*proxy, value), "wrong rows");
        }
    });
}

void filterByPattern()
{
    const auto proxy = proxyOf("filterRoleName: 'element'; filterPattern: '^Pl.*e$'");
    countSecond([&] {
        // Unactivated rows are windows.
        for (const bool activated : {false, true}) {
            proxy->setFilterPattern(activated ? QStringLiteral("^Pl.*e$") : QStringLiteral("^F.*e$"));
            expect(shows(*proxy, activated), "wrong rows");
        }
    });
}

void filterByExpression()
{
    const auto proxy =
        proxyOf("property bool activated; filterExpression: model.activated === activated && index >= 0");
    countSecond([&] {
        for (const bool activated : {true, false}) {
            proxy->setProperty("activated", activated);
            QMetaObject::invokeMethod(proxy.get(), "invalidateFilter");
            expect(shows(*proxy, activated), "wrong rows");
        }
    });
}

int compare(const QVariant &left, const QVariant &right)
{
    return left.type() == QVariant::String ? QString::compare(left.toString(), right.toString())
                                           : left.toInt() - right.toInt();
}

void sort(Proxy &proxy, RowModel::Role role)
{
    countSecond([&] {
        for (const auto order : {Qt::DescendingOrder, Qt::AscendingOrder}) {
            proxy.sort(0, order);
            const int compared = compare(proxy.index(0, 0).data(role), proxy.index(rows - 1, 0).data(role));
            expect(proxy.rowCount() == rows && (order == Qt::AscendingOrder ? compared < 0 : compared > 0),
                   "wrong order");
        }
    });
}

void sortByRole()
{
    const auto proxy = proxyOf("sortRoleName: 'title'");
    sort(*proxy, RowModel::TitleRole);
}

void sortByExpression()
{
    const auto proxy = proxyOf("sortExpression: modelLeft.rank < modelRight.rank");
    sort(*proxy, RowModel::RankRole);
}

const bool registered = corePath("proxy-filter-value", "1,000 rows filtered by a value, twice", filterByValue)
    && corePath("proxy-filter-pattern", "1,000 rows filtered by a pattern, twice", filterByPattern)
    && corePath("proxy-filter-expression", "1,000 rows filtered by an expression, twice", filterByExpression)
    && corePath("proxy-sort-role", "1,000 rows sorted by a text, there and back", sortByRole)
    && corePath("proxy-sort-expression", "1,000 rows sorted by an expression, there and back",
                sortByExpression);

} // namespace
