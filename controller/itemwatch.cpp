// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "itemwatch.h"

#include <QMetaMethod>

#include <array>

/// The receiver of a few items. It has no meta-object of its own: its methods exist only as the numbers
/// that its connections call, one for each item.
class ItemRelay final : public QObject
{
public:
    explicit ItemRelay(ItemWatch &watch)
        : m_watch(watch)
    { }

    bool isFull() const { return m_next == m_entries.size(); }
    bool isEmpty() const { return m_used == 0; }

    ItemWatch::Entry &add(QObject *item)
    {
        // Places are taken in order and not reused one by one: a list mostly loses rows that came together.
        ItemWatch::Entry &entry = m_entries[m_next++];
        ++m_used;
        entry.item = item;
        entry.relay = this;
        return entry;
    }
    void remove(ItemWatch::Entry &entry)
    {
        entry = ItemWatch::Entry();
        if (--m_used == 0)
            m_next = 0;
    }
    // Calls the relay for each signal of the item, destroyed() included; a second time changes nothing.
    void connectTo(const ItemWatch::Entry &entry) const
    {
        QMetaObject::connect(entry.item, allSignals, this, methodOf(entry),
                             Qt::DirectConnection | Qt::UniqueConnection);
    }
    void disconnectFrom(const ItemWatch::Entry &entry) const
    {
        QMetaObject::disconnectOne(entry.item, allSignals, this, methodOf(entry));
    }

    int qt_metacall(QMetaObject::Call call, int method, void **arguments) override
    {
        if (call != QMetaObject::InvokeMetaMethod || method < firstMethod())
            return QObject::qt_metacall(call, method, arguments);
        // The walk for the sender ends within a few steps, because only a few items are connected here.
        // The relay may be gone when the watch returns.
        m_watch.signalled(m_entries[std::size_t(method - firstMethod())], senderSignalIndex());
        return -1;
    }

private:
    static constexpr int allSignals = -1;
    static int firstMethod()
    {
        static const int first = QObject::staticMetaObject.methodCount();
        return first;
    }
    int methodOf(const ItemWatch::Entry &entry) const
    {
        return firstMethod() + int(&entry - m_entries.data());
    }

    ItemWatch &m_watch;
    // Four share the cost of one QObject; more would save little memory and lengthen the walk.
    std::array<ItemWatch::Entry, 4> m_entries;
    std::size_t m_next = 0;
    std::size_t m_used = 0;
};

ItemWatch::ItemWatch(Listener &listener)
    : m_listener(listener)
{ }

ItemWatch::~ItemWatch()
{
    for (Delivery *delivery = m_delivery; delivery; delivery = delivery->m_outer)
        delivery->m_watch = nullptr;
    // Deleting a relay ends its connections.
    for (Entry *entry : qAsConst(m_entries))
        release(*entry);
    delete m_open;
}

ItemWatch::Entry &ItemWatch::reference(QObject *item, uint hint)
{
    Entry *&entry = m_entries[item];
    if (!entry) {
        if (!m_open || m_open->isFull())
            m_open = new ItemRelay(*this);
        entry = &m_open->add(item);
        entry->hint = hint;
    }
    ++entry->rows;
    entry->listening = true;
    entry->relay->connectTo(*entry);
    return *entry;
}

void ItemWatch::dereference(QObject *item)
{
    Entry *entry = find(item);
    if (!entry)
        return;
    entry->listening = false;
    if (--entry->rows > 0)
        return;
    m_entries.remove(item);
    entry->relay->disconnectFrom(*entry);
    release(*entry);
}

void ItemWatch::signalled(Entry &entry, int signal)
{
    static const int destroyed = QMetaMethod::fromSignal(&QObject::destroyed).methodIndex();
    if (signal == destroyed) {
        const Entry last = entry;
        m_entries.remove(last.item);
        release(entry);
        m_listener.itemDestroyed(last);
    } else if (entry.listening) {
        m_listener.itemSignalled(entry, signal);
    }
}

void ItemWatch::release(Entry &entry)
{
    ItemRelay *relay = entry.relay;
    relay->remove(entry);
    if (relay->isEmpty() && relay != m_open)
        delete relay;
}
