// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "naivelist.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace histories {

int NaiveList::firstRowOf(const Known *item) const
{
    const auto found = std::find(m_rows.begin(), m_rows.end(), item);
    return item && found != m_rows.end() ? int(std::distance(m_rows.begin(), found)) : -1;
}

int NaiveList::rowsOf(const Known *item) const
{
    return int(std::count(m_rows.begin(), m_rows.end(), item));
}

Known *NaiveList::make(bool orphan)
{
    m_items.push_back(std::make_unique<Known>(Known{nullptr, orphan}));
    return m_items.back().get();
}

std::vector<Known *> NaiveList::living() const
{
    std::vector<Known *> result;
    for (const auto &item : m_items) {
        if (item->object && !item->doomed)
            result.push_back(item.get());
    }
    return result;
}

void NaiveList::insert(int row, Known *item)
{
    m_signals.append(QStringLiteral("insert %1").arg(row));
    m_rows.insert(m_rows.begin() + row, item);
    item->owned = item->owned || item->orphan;
    item->heard = true;
    index(item);
    tell(Event::Inserted, row);
    announceCount();
}

void NaiveList::remove(int row)
{
    m_signals.append(QStringLiteral("remove %1").arg(row));
    Known *item = at(row);
    m_rows.erase(m_rows.begin() + row);
    leave(item);
    tell(Event::Removed, row);
    announceCount();
}

void NaiveList::move(int from, int to)
{
    if (from == to)
        return;
    const int high = std::max(from, to);
    const int low = std::min(from, to);
    m_signals.append(QStringLiteral("move %1 to %2").arg(high).arg(low));
    Known *item = at(high);
    m_rows.erase(m_rows.begin() + high);
    m_rows.insert(m_rows.begin() + low, item);
    onEvent({Event::Moved, low, high});
}

void NaiveList::clear()
{
    if (m_rows.empty())
        return;
    m_signals.append(count() == 1 ? QStringLiteral("remove 0")
                                  : QStringLiteral("remove 0 to %1").arg(count() - 1));
    for (Known *item : std::exchange(m_rows, {}))
        leave(item);
    tell(Event::Cleared, 0);
    announceCount();
}

void NaiveList::changed(Known *item, int role)
{
    const int first = firstRowOf(item);
    const bool reported = item->heard && first >= 0;
    for (int row = 0; row < count(); ++row) {
        if (at(row) == item && (row != first || !reported))
            tell(Event::Silently, row);
    }
    if (!reported)
        return;
    const bool displayed = m_hasDisplayRole && role == ListItem::TitleRole;
    m_signals.append(QStringLiteral("change %1 of %2%3")
                         .arg(first)
                         .arg(role)
                         .arg(displayed ? QStringLiteral(",0") : QString()));
    tell(Event::Changed, first);
    if (role == ListItem::UidRole)
        index(item);
}

void NaiveList::died(Known *item)
{
    for (int row = 0; row < count(); ++row) {
        if (at(row) == item) {
            m_rows[std::size_t(row)] = nullptr;
            tell(Event::Silently, row);
        }
    }
    unindex(item);
    item->doomed = true;
}

void NaiveList::collect()
{
    for (const auto &item : m_items) {
        if (item->doomed)
            died(item.get());
    }
}

bool NaiveList::livesAsItShould() const
{
    return std::all_of(m_items.begin(), m_items.end(),
                       [](const auto &item) { return item->object.isNull() == item->doomed; });
}

QStringList NaiveList::takeSignals()
{
    return std::exchange(m_signals, {});
}

void NaiveList::leave(Known *item)
{
    if (!item)
        return;
    // Cutting the list off from the item cuts it off for the item's other rows too.
    item->heard = false;
    unindex(item);
    if (item->owned)
        item->doomed = true;
}

void NaiveList::announceCount()
{
    if (std::exchange(m_announced, count()) != count())
        m_signals.append(QStringLiteral("count"));
}

void NaiveList::index(Known *item)
{
    unindex(item);
    if (!item->object->uid().isEmpty())
        m_byUid.insert(item->object->uid(), item);
}

void NaiveList::unindex(const Known *item)
{
    for (auto it = m_byUid.begin(); it != m_byUid.end();)
        it = it.value() == item ? m_byUid.erase(it) : std::next(it);
}

} // namespace histories
