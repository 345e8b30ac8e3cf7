// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The proxy for QML beside Qt's own in C++, and its expressions beside bare calls of the same functions.
#include <QJSEngine>
#include <QJSValue>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSortFilterProxyModel>

#include <map>
#include <memory>

#include <benchmark/benchmark.h>

#include "benchitem.h"
#include "goals.h"
#include "qqmlobjectlistmodel.h"
#include "qqmlsortfilterproxymodel.h"

namespace {

using List = QQmlObjectListModel<BenchItem>;
using Proxy = QQmlSortFilterProxyModel;

/// Qt's proxy with a filter by value, as one writes it in C++.
class CppProxy : public QSortFilterProxyModel
{
public:
    void setFilterValue(const QVariant &value)
    {
        m_value = value;
        invalidateFilter();
    }
    qint64 comparisons() const { return m_comparisons; }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override
    {
        if (m_value.isValid() && sourceModel()->index(row, 0, parent).data(filterRole()) != m_value)
            return false;
        return QSortFilterProxyModel::filterAcceptsRow(row, parent);
    }
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override
    {
        ++m_comparisons;
        return QSortFilterProxyModel::lessThan(left, right);
    }

private:
    QVariant m_value;
    mutable qint64 m_comparisons = 0;
};

QQmlEngine &engine()
{
    static QQmlEngine engine;
    return engine;
}

List &source(int rows)
{
    static std::map<int, std::unique_ptr<List>> lists;
    auto &list = lists[rows];
    if (!list) {
        list = std::make_unique<List>();
        for (int row = 0; row < rows; ++row)
            list->append(new BenchItem(BenchItem::Values(row)));
    }
    return *list;
}

std::unique_ptr<Proxy> makeProxy(const QByteArray &body)
{
    QQmlComponent component(&engine());
    component.setData(
        "import QtQml 2.2\nimport SortFilterProxyModel 0.1\nSortFilterProxyModel {" + body + "}", QUrl());
    std::unique_ptr<Proxy> proxy(qobject_cast<Proxy *>(component.create()));
    if (!proxy)
        qFatal("%s", qPrintable(component.errorString()));
    return proxy;
}

// Each filter alternates between two settings, one of which keeps about half of the rows.

template <class Kind>
void filterByValue(benchmark::State &state)
{
    const int rows = int(state.range(0));
    Kind proxy;
    proxy.setSourceModel(&source(rows));
    proxy.setFilterRole(RowModel::ActivatedRole);
    if constexpr (std::is_same_v<Kind, Proxy>)
        proxy.setFilterRoleName(QStringLiteral("activated"));
    benchmark::DoNotOptimize(proxy.rowCount());
    bool value = false;
    for (auto _ : state) {
        proxy.setFilterValue(value = !value);
        if (proxy.rowCount() != rows / 2 || proxy.index(0, 0).data(RowModel::ActivatedRole).toBool() != value)
            state.SkipWithError("wrong rows");
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

template <class Kind>
void filterByPattern(benchmark::State &state)
{
    const int rows = int(state.range(0));
    Kind proxy;
    proxy.setSourceModel(&source(rows));
    proxy.setFilterRole(RowModel::ElementRole);
    if constexpr (std::is_same_v<Kind, Proxy>)
        proxy.setFilterRoleName(QStringLiteral("element"));
    benchmark::DoNotOptimize(proxy.rowCount());
    bool first = false;
    for (auto _ : state) {
        first = !first;
        const QString pattern = first ? QStringLiteral("^Pl.*e$") : QStringLiteral("^F.*e$");
        if constexpr (std::is_same_v<Kind, Proxy>)
            proxy.setFilterPattern(pattern);
        else
            proxy.setFilterRegExp(QRegExp(pattern));
        if (proxy.rowCount() != rows / 2)
            state.SkipWithError("wrong rows");
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

void filterByExpression(benchmark::State &state)
{
    const int rows = int(state.range(0));
    const auto proxy =
        makeProxy("property bool activated; filterExpression: model.activated === activated && index >= 0");
    proxy->setSourceModel(&source(rows));
    benchmark::DoNotOptimize(proxy->rowCount());
    bool activated = false;
    for (auto _ : state) {
        proxy->setProperty("activated", activated = !activated);
        QMetaObject::invokeMethod(proxy.get(), "invalidateFilter");
        if (proxy->rowCount() != rows / 2
            || proxy->index(0, 0).data(RowModel::ActivatedRole).toBool() != activated)
            state.SkipWithError("wrong rows");
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

// The same choice by the KDE frameworks' proxy, whose callback asks the source for what it wants to know.
void filterByCallback(benchmark::State &state)
{
    const int rows = int(state.range(0));
    QQmlComponent component(&engine());
    component.setData(
        "import org.kde.kitemmodels 1.0\n"
        "KSortFilterProxyModel {"
        "  id: self; property bool activated; readonly property int role: "
            + QByteArray::number(RowModel::ActivatedRole)
            + "  \nfilterRowCallback: function(row, parent) {"
              "    return self.sourceModel.data(self.sourceModel.index(row, 0, parent), self.role)"
              "        === self.activated && row >= 0"
              "  }\n"
              "}",
        QUrl());
    const std::unique_ptr<QSortFilterProxyModel> proxy(
        qobject_cast<QSortFilterProxyModel *>(component.create()));
    if (!proxy) {
        state.SkipWithError(qPrintable(component.errorString()));
        return;
    }
    proxy->setSourceModel(&source(rows));
    benchmark::DoNotOptimize(proxy->rowCount());
    bool activated = false;
    for (auto _ : state) {
        proxy->setProperty("activated", activated = !activated);
        QMetaObject::invokeMethod(proxy.get(), "invalidateFilter");
        if (proxy->rowCount() != rows / 2
            || proxy->index(0, 0).data(RowModel::ActivatedRole).toBool() != activated)
            state.SkipWithError("wrong rows");
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

void callForFilter(benchmark::State &state)
{
    const int rows = int(state.range(0));
    QJSValue function = engine().evaluate(
        QStringLiteral("(function(activated, wanted, index) { return activated === wanted && index >= 0 })"));
    const List &list = source(rows);
    bool activated = false;
    for (auto _ : state) {
        activated = !activated;
        int kept = 0;
        for (int row = 0; row < rows; ++row)
            kept += function.call({list.at(row)->activated(), activated, row}).toBool();
        if (kept != rows / 2)
            state.SkipWithError("wrong rows");
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

template <class Kind>
void sortByRole(benchmark::State &state)
{
    const int rows = int(state.range(0));
    Kind proxy;
    proxy.setSourceModel(&source(rows));
    proxy.setSortRole(RowModel::TitleRole);
    if constexpr (std::is_same_v<Kind, Proxy>)
        proxy.setSortRoleName(QStringLiteral("title"));
    benchmark::DoNotOptimize(proxy.rowCount());
    proxy.sort(0, Qt::AscendingOrder);
    auto order = Qt::AscendingOrder;
    for (auto _ : state) {
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
        proxy.sort(0, order);
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

// How often rows are compared when the order by rank is turned round, there and back.
qint64 comparisonsOfTwoSorts(int rows)
{
    CppProxy proxy;
    proxy.setSourceModel(&source(rows));
    proxy.setSortRole(RowModel::RankRole);
    proxy.sort(0, Qt::AscendingOrder);
    const qint64 before = proxy.comparisons();
    proxy.sort(0, Qt::DescendingOrder);
    proxy.sort(0, Qt::AscendingOrder);
    return proxy.comparisons() - before;
}

void sortByExpression(benchmark::State &state)
{
    const int rows = int(state.range(0));
    const auto proxy = makeProxy("sortExpression: modelLeft.rank < modelRight.rank");
    proxy->setSourceModel(&source(rows));
    proxy->sort(0, Qt::AscendingOrder);
    for (auto _ : state) {
        proxy->sort(0, Qt::DescendingOrder);
        proxy->sort(0, Qt::AscendingOrder);
    }
    state.SetItemsProcessed(state.iterations() * comparisonsOfTwoSorts(rows));
}

void callForSort(benchmark::State &state)
{
    const int rows = int(state.range(0));
    QJSValue function = engine().evaluate(QStringLiteral("(function(left, right) { return left < right })"));
    const List &list = source(rows);
    const qint64 comparisons = comparisonsOfTwoSorts(rows);
    for (auto _ : state) {
        for (qint64 i = 0; i < comparisons; ++i) {
            const int row = int(i % (rows - 1));
            benchmark::DoNotOptimize(
                function.call({list.at(row)->rank(), list.at(row + 1)->rank()}).toBool());
        }
    }
    state.SetItemsProcessed(state.iterations() * comparisons);
}

void registerEach(const char *name, void (*run)(benchmark::State &))
{
    for (int size : {1000, 10000})
        benchmark::RegisterBenchmark(name, run)->Arg(size)->MinTime(0.03); // a pass takes some milliseconds
}

const bool registered = [] {
    registerEach("proxy, filter by value, a row:library", filterByValue<Proxy>);
    registerEach("proxy, filter by value, a row:C++ proxy", filterByValue<CppProxy>);
    registerEach("proxy, filter by pattern, a row:library", filterByPattern<Proxy>);
    registerEach("proxy, filter by pattern, a row:C++ proxy", filterByPattern<CppProxy>);
    registerEach("proxy, filter by expression, a row:library", filterByExpression);
    registerEach("proxy, filter by expression, a row:bare call", callForFilter);
    registerEach("proxy, filter by expression, a row:KSortFilterProxyModel", filterByCallback);
    registerEach("proxy, sort by role, a row:library", sortByRole<Proxy>);
    registerEach("proxy, sort by role, a row:C++ proxy", sortByRole<CppProxy>);
    registerEach("proxy, sort by expression, a pair:library", sortByExpression);
    registerEach("proxy, sort by expression, a pair:bare call", callForSort);

    goal("proxy, filter by value, a row", "C++ proxy", 1.5);
    goal("proxy, filter by pattern, a row", "C++ proxy", 1.1);
    goal("proxy, sort by role, a row", "C++ proxy", 1.1);
    goal("proxy, filter by expression, a row", "bare call", 8.0);
    goalFaster("proxy, filter by expression, a row", "KSortFilterProxyModel");
    goal("proxy, sort by expression, a pair", "bare call", 5.0);
    return true;
}();

} // namespace
