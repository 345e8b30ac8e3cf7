// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "naiveproxy.h"

#include <QRegExp>

namespace histories {

const std::vector<FilterExpression> &filterExpressions()
{
    // Of a row without item every value is undefined: to read further into one fails, and keeps the row.
    static const std::vector<FilterExpression> all{
        {"", [](const RowValues &) { return true; }},
        {"model.rank % 2 === 0", [](const RowValues &v) { return v.item && v.item->rank() % 2 == 0; }},
        {"model.title.length > 1", [](const RowValues &v) { return !v.item || v.item->title().size() > 1; }},
        {"index % 3 !== 1", [](const RowValues &v) { return v.row % 3 != 1; }},
        {"model.state == 1", [](const RowValues &v) { return v.item && v.item->state() == ListItem::Busy; }},
        {"model['rank'] > 4", [](const RowValues &v) { return v.item && v.item->rank() > 4; }},
        {"{ const r = model.rank; return r > 2 && r < 8 }",
         [](const RowValues &v) { return v.item && v.item->rank() > 2 && v.item->rank() < 8; }},
        {"nowhere.at(index)", [](const RowValues &) { return true; }},
        {"model.uid || model.title === '3'",
         [](const RowValues &v) {
             return v.item && (!v.item->uid().isEmpty() || v.item->title() == QLatin1Char('3'));
         }},
        {"(model.rank = 3) && model.rank > 5",
         [](const RowValues &v) { return v.item && v.item->rank() > 5; }},
        {"index < 20 && model.left <= model.right",
         [](const RowValues &v) { return v.row < 20 && v.item && v.item->left() <= v.item->right(); }},
        {"typeof model.anything === 'number'",
         [](const RowValues &v) { return v.item && v.item->anything().userType() == QMetaType::Int; }},
    };
    return all;
}

const std::vector<SortExpression> &sortExpressions()
{
    // Rows without item compare as they like; none is asked about here.
    static const std::vector<SortExpression> all{
        {"", nullptr, true},
        {"modelLeft.rank < modelRight.rank",
         [](const RowValues &l, const RowValues &r) { return l.item->rank() < r.item->rank(); }},
        {"modelLeft.title > modelRight.title",
         [](const RowValues &l, const RowValues &r) { return l.item->title() > r.item->title(); }},
        {"indexLeft > indexRight", [](const RowValues &l, const RowValues &r) { return l.row > r.row; }},
        {"modelLeft.rank % 3 < modelRight.rank % 3",
         [](const RowValues &l, const RowValues &r) { return l.item->rank() % 3 < r.item->rank() % 3; }},
        {"modelLeft['rank'] > modelRight['rank']",
         [](const RowValues &l, const RowValues &r) { return l.item->rank() > r.item->rank(); }},
        {"modelLeft.state < modelRight.state",
         [](const RowValues &l, const RowValues &r) { return l.item->state() < r.item->state(); }},
        {"nowhere.at(indexLeft)", nullptr, true},
    };
    return all;
}

void NaiveProxy::follow(const Event &event)
{
    const auto row = std::size_t(event.row);
    const auto at = [](auto &flags, int place) { return flags.begin() + place; };
    switch (event.kind) {
    case Event::Inserted:
        m_accepted.insert(at(m_accepted, event.row), judge(event.row));
        m_told.insert(at(m_told, event.row), true);
        break;
    case Event::Removed:
        m_accepted.erase(at(m_accepted, event.row));
        m_told.erase(at(m_told, event.row));
        break;
    case Event::Moved: {
        const bool told = m_told[std::size_t(event.from)];
        m_told.erase(at(m_told, event.from));
        m_told.insert(at(m_told, event.row), told);
        // Qt's proxy takes a move for a new layout, and begins anew.
        filterAgain();
        sortAgain();
        break;
    }
    case Event::Cleared:
        m_accepted.clear();
        m_told.clear();
        break;
    case Event::Changed:
        m_accepted[row] = judge(event.row);
        break;
    case Event::Silently:
        m_told[row] = false;
        m_orderKnown = false;
        break;
    }
    m_orderKnown = m_orderKnown && isOrdered();
    if (m_list.count() == 0)
        sortAgain();
}

void NaiveProxy::setSource(bool present)
{
    m_hasSource = present;
    filterAgain();
    sortAgain();
}

void NaiveProxy::setFilterRoleName(const QString &name)
{
    const int before = role(m_filterRoleName);
    m_filterRoleName = name;
    if (role(name) != before)
        filterAgain();
}

void NaiveProxy::setPattern(const QString &pattern)
{
    if (m_pattern == pattern)
        return;
    m_pattern = pattern;
    filterAgain();
}

void NaiveProxy::setSyntax(int syntax)
{
    if (m_syntax == syntax)
        return;
    m_syntax = syntax;
    filterAgain();
}

void NaiveProxy::setFilterValue(const QVariant &value)
{
    if (m_filterValue.type() == value.type() && m_filterValue == value)
        return;
    m_filterValue = value;
    filterAgain();
}

void NaiveProxy::setFilterExpression(int which)
{
    if (m_filterExpression == which)
        return;
    m_filterExpression = which;
    filterAgain();
}

void NaiveProxy::setSortRoleName(const QString &name)
{
    const int before = role(m_sortRoleName);
    m_sortRoleName = name;
    if (role(name) != before)
        sortAgain();
}

void NaiveProxy::setSortOrder(Qt::SortOrder order)
{
    if (m_sorted && m_order == order)
        return;
    m_sorted = true;
    m_order = order;
    sortAgain();
}

void NaiveProxy::setSortExpression(int which)
{
    if (m_sortExpression == which)
        return;
    m_sortExpression = which;
    if (m_sorted)
        sortAgain();
}

void NaiveProxy::filterAgain()
{
    for (int row = 0; row < m_list.count(); ++row)
        m_accepted[std::size_t(row)] = judge(row);
    m_orderKnown = m_orderKnown && isOrdered();
}

void NaiveProxy::sortAgain()
{
    m_orderKnown = isOrdered();
}

QString NaiveProxy::misplaced(const std::vector<int> &sourceRows) const
{
    if (m_sorted && !m_orderKnown)
        return QString();
    for (std::size_t i = 1; i < sourceRows.size(); ++i) {
        const int before = sourceRows[i - 1];
        const int after = sourceRows[i];
        const bool wrong = !m_sorted        ? before > after
            : m_order == Qt::AscendingOrder ? isLess(after, before)
                                            : isLess(before, after);
        if (wrong)
            return QStringLiteral("source row %1 stands before %2").arg(before).arg(after);
    }
    return QString();
}

QVariant NaiveProxy::value(int row, const QString &roleName) const
{
    const ListItem *item = values(row).item;
    if (!item)
        return QVariant();
    if (roleName == QLatin1String("title"))
        return item->title();
    if (roleName == QLatin1String("rank"))
        return item->rank();
    if (roleName == QLatin1String("uid"))
        return item->uid();
    return m_list.hasDisplayRole() ? QVariant(item->title()) : QVariant();
}

int NaiveProxy::role(const QString &name) const
{
    if (!m_hasSource)
        return 0;
    if (name == QLatin1String("title"))
        return m_list.hasDisplayRole() ? 0 : int(ListItem::TitleRole);
    if (name == QLatin1String("rank"))
        return ListItem::RankRole;
    if (name == QLatin1String("uid"))
        return ListItem::UidRole;
    return 0;
}

bool NaiveProxy::judge(int row) const
{
    const QVariant filtered = value(row, m_filterRoleName);
    if (m_filterValue.isValid() && filtered != m_filterValue)
        return false;
    const QRegExp pattern(m_pattern, Qt::CaseSensitive, QRegExp::PatternSyntax(m_syntax));
    if (!m_pattern.isEmpty() && pattern.indexIn(filtered.toString()) < 0)
        return false;
    return filterExpressions()[std::size_t(m_filterExpression)].accepts(values(row));
}

bool NaiveProxy::isLess(int left, int right) const
{
    const SortExpression &expression = sortExpressions()[std::size_t(m_sortExpression)];
    return expression.fails ? isLessByRole(left, right) : expression.isLess(values(left), values(right));
}

bool NaiveProxy::isLessByRole(int left, int right) const
{
    const QVariant l = value(left, m_sortRoleName);
    const QVariant r = value(right, m_sortRoleName);
    // Rows without a value come last.
    if (!l.isValid() || !r.isValid())
        return l.isValid() && !r.isValid();
    return m_sortRoleName == QLatin1String("rank") ? l.toInt() < r.toInt() : l.toString() < r.toString();
}

RowValues NaiveProxy::values(int row) const
{
    const Known *known = m_list.at(row);
    return {known ? known->object.data() : nullptr, row};
}

bool NaiveProxy::isOrdered() const
{
    if (m_sortExpression == 0)
        return true;
    for (int row = 0; row < m_list.count(); ++row) {
        if (!m_list.at(row) && accepts(row))
            return false;
    }
    return true;
}

} // namespace histories
