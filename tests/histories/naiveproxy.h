// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef NAIVEPROXY_H
#define NAIVEPROXY_H

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <vector>

#include "naivelist.h"

namespace histories {

/// The values of a row as a proxy finds them; of a row without item, none.
struct RowValues
{
    const ListItem *item;
    int row;
};

/// What a filter expression says of a row, in C++.
struct FilterExpression
{
    const char *text;
    std::function<bool(const RowValues &)> accepts;
};

/// Whether the left row comes first. Without an answer, the expression fails and the sort role decides.
struct SortExpression
{
    const char *text;
    std::function<bool(const RowValues &, const RowValues &)> isLess;
    bool fails = false;
};

const std::vector<FilterExpression> &filterExpressions();
const std::vector<SortExpression> &sortExpressions();

/// What the sort and filter proxy is to show of a list, worked out one row at a time. A row is looked at
/// again when Qt's proxy does so, and not otherwise.
class NaiveProxy
{
public:
    explicit NaiveProxy(const NaiveList &list)
        : m_list(list)
    { }

    void follow(const Event &event);

    void setSource(bool present);
    void setFilterRoleName(const QString &name);
    void setPattern(const QString &pattern);
    void setSyntax(int syntax);
    void setFilterValue(const QVariant &value);
    void setFilterExpression(int which);
    void setSortRoleName(const QString &name);
    void setSortOrder(Qt::SortOrder order);
    void setSortExpression(int which);
    void filterAgain();
    void sortAgain();

    bool hasSource() const { return m_hasSource; }
    bool accepts(int row) const { return m_hasSource && m_accepted[std::size_t(row)]; }
    /// Whether the views were told of all that is in this row.
    bool isTold(int row) const { return m_told[std::size_t(row)]; }
    /// The first pair of rows, in the proxy's order of source rows, that stands the wrong way round; or
    /// empty.
    QString misplaced(const std::vector<int> &sourceRows) const;

private:
    QVariant value(int row, const QString &roleName) const;
    int role(const QString &name) const;
    bool judge(int row) const;
    bool isLess(int left, int right) const;
    bool isLessByRole(int left, int right) const;
    RowValues values(int row) const;
    // Whether the rows compare consistently: to an expression, a row without item is equal to all others.
    bool isOrdered() const;

    const NaiveList &m_list;
    std::vector<bool> m_accepted;
    std::vector<bool> m_told;
    bool m_hasSource = false;
    QString m_filterRoleName;
    QString m_pattern;
    int m_syntax = 0;
    QVariant m_filterValue;
    int m_filterExpression = 0;
    QString m_sortRoleName;
    int m_sortExpression = 0;
    bool m_sorted = false;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    // False once rows changed without a word, or were placed inconsistently: then any order will do.
    bool m_orderKnown = true;
};

} // namespace histories

#endif // NAIVEPROXY_H
