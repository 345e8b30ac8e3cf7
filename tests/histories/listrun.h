// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef LISTRUN_H
#define LISTRUN_H

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "naivelist.h"
#include "naiveproxy.h"
#include "qqmlobjectlistmodel.h"
#include "qqmlsortfilterproxymodel.h"
#include "step.h"
#include "views.h"

namespace histories {

/// A proxy as a QML file has it.
std::unique_ptr<QQmlSortFilterProxyModel> makeProxy(QQmlEngine &engine, const QByteArray &body);

/// One history of a list and of the proxy that shows it, and the plain models beside them.
class ListRun
{
public:
    ListRun(int flavour, QQmlEngine &engine);
    /// Does the step in both. \return what differs then, or empty.
    QString step(const Step &step);
    static const std::vector<std::pair<Kind, void (ListRun::*)(int, int)>> &kinds();

private:
    // In liststeps.cpp.
    void append(int a, int);
    void prepend(int a, int);
    void insert(int a, int b);
    void insertAgain(int a, int b);
    void removeRow(int a, int);
    void removeItem(int a, int);
    void move(int a, int b);
    void clear(int, int);
    void deleteOutside(int a, int);
    void setTitle(int a, int b);
    void setRank(int a, int b);
    void setUid(int a, int b);
    void setState(int a, int b);
    void setSides(int a, int b);
    void setAnything(int a, int b);
    void setIndex(int a, int b);
    void greet(int a, int);
    void writeThroughProxy(int a, int b);
    void removeWhenTold(int a, int b);
    void deleteWhenTold(int a, int b);
    void clearWhenTold(int a, int b);
    // In proxysteps.cpp.
    void filterRole(int a, int);
    void pattern(int a, int);
    void syntax(int a, int);
    void filterValue(int a, int);
    void filterExpression(int a, int);
    void sortRole(int a, int);
    void sortOrder(int a, int);
    void sortExpression(int a, int);
    void invalidate(int, int);
    void invalidateFilter(int, int);
    void source(int a, int);

    Known *make(int seed);
    Known *someItem(int a) const;
    int someRow(int a) const { return a % m_naive.count(); }
    void put(int row, int seed);
    void write(Known *item, int role, bool changes, const std::function<void()> &set);
    void whenTold(int a, int b, const std::function<void(Known *)> &act);
    void hearChanges();
    QString difference();
    QString listDifference() const;
    QString proxyDifference() const;
    std::vector<int> shownRows() const;

    QQmlEngine &m_engine;
    // Outlives the list, like whoever else has items of their own.
    QObject m_stranger;
    QQmlObjectListModel<ListItem> m_list;
    std::unique_ptr<QQmlSortFilterProxyModel> m_proxy;
    NaiveList m_naive;
    NaiveProxy m_naiveProxy;
    Views m_listViews;
    Views m_proxyViews;
    QStringList m_signals;
    QMetaObject::Connection m_heard;
    // What is done the next time that the list tells of a change, and whether it was.
    std::function<void()> m_whenTold;
    bool m_reacted = false;
};

/// The steps of the list and of the sort and filter proxy that shows it.
const std::vector<Kind> &listKinds();

/// Does the steps with a list and a proxy from \p engine and with their plain models. Flavours differ in
/// what the list and the proxy were made with.
/// \return what differs after which step, or empty. \p done counts the steps.
QString runList(const Steps &steps, int flavour, QQmlEngine &engine, long &done);

} // namespace histories

#endif // LISTRUN_H
