// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "listrun.h"

#include <utility>

namespace histories {

namespace {

QVariant anything(int number)
{
    static const QVariant values[] = {QVariant(), 1, QVariantList{1}, QStringLiteral("1"), 2};
    return values[number % 5];
}

} // namespace

Known *ListRun::make(int seed)
{
    // Every fourth item belongs to somebody else.
    const bool orphan = seed % 4 != 0;
    Known *known = m_naive.make(orphan);
    known->object = new ListItem(QString::number(seed % 12), orphan ? nullptr : &m_stranger);
    known->object->setRank(seed % 10);
    known->object->setAnything(anything(seed));
    known->object->setUid(seed % 3 ? QStringLiteral("u%1").arg(seed % 7) : QString());
    return known;
}

Known *ListRun::someItem(int a) const
{
    const std::vector<Known *> items = m_naive.living();
    return items.empty() ? nullptr : items[std::size_t(a) % items.size()];
}

void ListRun::put(int row, int seed)
{
    Known *known = make(seed);
    m_list.insert(row, known->object.data());
    m_naive.insert(row, known);
}

void ListRun::append(int a, int)
{
    Known *known = make(a);
    m_list.append(known->object.data());
    m_naive.insert(m_naive.count(), known);
}

void ListRun::prepend(int a, int)
{
    Known *known = make(a);
    m_list.prepend(known->object.data());
    m_naive.insert(0, known);
}

void ListRun::insert(int a, int b)
{
    put(a % (m_naive.count() + 1), b);
}

void ListRun::insertAgain(int a, int b)
{
    Known *known = someItem(a);
    if (!known)
        return;
    const int row = b % (m_naive.count() + 1);
    m_list.insert(row, known->object.data());
    m_naive.insert(row, known);
}

void ListRun::removeRow(int a, int)
{
    // One beyond either end does nothing.
    const int row = a % (m_naive.count() + 2) - 1;
    m_list.remove(row);
    if (row >= 0 && row < m_naive.count())
        m_naive.remove(row);
}

void ListRun::removeItem(int a, int)
{
    Known *known = someItem(a);
    if (!known)
        return;
    m_list.remove(static_cast<QObject *>(known->object));
    if (m_naive.firstRowOf(known) >= 0)
        m_naive.remove(m_naive.firstRowOf(known));
}

void ListRun::move(int a, int b)
{
    if (m_naive.count() == 0)
        return;
    m_list.move(someRow(a), someRow(b));
    m_naive.move(someRow(a), someRow(b));
}

void ListRun::clear(int, int)
{
    m_list.clear();
    m_naive.clear();
}

void ListRun::deleteOutside(int a, int)
{
    Known *known = someItem(a);
    if (!known)
        return;
    delete known->object;
    m_naive.died(known);
}

void ListRun::write(Known *item, int role, bool changes, const std::function<void()> &set)
{
    set();
    // Nobody was told if this still waits; otherwise the plain model was changed there and then.
    const bool waits = bool(std::exchange(m_whenTold, nullptr));
    if (changes && (waits || !m_reacted))
        m_naive.changed(item, role);
    m_reacted = false;
}

void ListRun::setTitle(int a, int b)
{
    const QString title = QString::number(b % 12);
    if (Known *item = someItem(a))
        write(item, ListItem::TitleRole, item->object->title() != title,
              [&] { item->object->setTitle(title); });
}

void ListRun::setRank(int a, int b)
{
    const int rank = b % 10;
    if (Known *item = someItem(a))
        write(item, ListItem::RankRole, item->object->rank() != rank, [&] { item->object->setRank(rank); });
}

void ListRun::setUid(int a, int b)
{
    const QString uid = b % 8 ? QStringLiteral("u%1").arg(b % 8 - 1) : QString();
    if (Known *item = someItem(a))
        write(item, ListItem::UidRole, item->object->uid() != uid, [&] { item->object->setUid(uid); });
}

void ListRun::setState(int a, int b)
{
    const auto state = ListItem::State(b % 3);
    if (Known *item = someItem(a))
        write(item, ListItem::StateRole, item->object->state() != state,
              [&] { item->object->setState(state); });
}

void ListRun::setSides(int a, int b)
{
    Known *item = someItem(a);
    if (!item)
        return;
    // Both sides have one signal, which reports the right one.
    ListItem &object = *item->object;
    if (b % 2)
        write(item, ListItem::RightRole, object.left() != b / 2 % 4, [&] { object.setLeft(b / 2 % 4); });
    else
        write(item, ListItem::RightRole, object.right() != b / 2 % 4, [&] { object.setRight(b / 2 % 4); });
}

void ListRun::setAnything(int a, int b)
{
    if (Known *item = someItem(a))
        write(item, ListItem::AnythingRole, item->object->anything() != anything(b),
              [&] { item->object->setAnything(anything(b)); });
}

void ListRun::setIndex(int a, int b)
{
    if (Known *item = someItem(a))
        item->object->setIndex(b);
}

void ListRun::greet(int a, int)
{
    if (Known *item = someItem(a))
        emit item->object->greeted();
}

void ListRun::writeThroughProxy(int a, int b)
{
    if (m_proxy->rowCount() == 0)
        return;
    const QModelIndex index = m_proxy->index(a % m_proxy->rowCount(), 0);
    Known *item = m_naive.at(m_proxy->mapToSource(index).row());
    if (!item)
        return;
    const int rank = b % 10;
    write(item, ListItem::RankRole, item->object->rank() != rank,
          [&] { m_proxy->setData(index, rank, ListItem::RankRole); });
}

void ListRun::whenTold(int a, int b, const std::function<void(Known *)> &act)
{
    Known *item = someItem(a);
    if (!item)
        return;
    const int rank = (item->object->rank() + 1 + b % 9) % 10;
    m_whenTold = [this, item, act] {
        m_reacted = true;
        m_naive.changed(item, ListItem::RankRole);
        act(item);
    };
    write(item, ListItem::RankRole, true, [&] { item->object->setRank(rank); });
}

void ListRun::removeWhenTold(int a, int b)
{
    whenTold(a, b, [this, b](Known *) {
        m_list.remove(someRow(b));
        m_naive.remove(someRow(b));
    });
}

void ListRun::deleteWhenTold(int a, int b)
{
    whenTold(a, b, [this](Known *item) {
        delete item->object;
        m_naive.died(item);
    });
}

void ListRun::clearWhenTold(int a, int b)
{
    whenTold(a, b, [this](Known *) { clear(0, 0); });
}

} // namespace histories
