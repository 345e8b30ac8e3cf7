// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_ITEMWATCH_H
#define HALVAR_ITEMWATCH_H

#include <QHash>
#include <QObject>

#include <utility>

#include "halvar-export.h"

class ItemRelay;

/// Tells a list which of its items emitted which signal, in a time that does not depend on their number.
///
/// A slot of the list itself would have to ask sender() and senderSignalIndex(), which walk all of its
/// incoming connections, one for each property of each row. Here a few items share one small receiver, to
/// which each is connected by one connection for all of its signals; the method number that the connection
/// calls tells the item, and the receiver's short list of connections tells the signal.
///
/// Emissions are direct calls: list and items live on one thread. Qt serves connections to all signals last,
/// so a slot connected to that very signal runs before the report, whether it was connected before or after
/// the item came in; handlers and bindings of QML run before either.
class HALVAR_EXPORT ItemWatch
{
public:
    /// One watched item.
    struct Entry
    {
        QObject *item = nullptr;
        /// Where the list last found the item; the list's to keep and to doubt.
        uint hint = 0;
        /// How many rows hold the item.
        int rows = 0;
        /// False once a row has let go of an item that others still hold: only its end is then reported.
        bool listening = false;
        ItemRelay *relay = nullptr;
    };

    class HALVAR_EXPORT Listener
    {
    public:
        /// \p signal is the method index of the emitted signal. The listener may do as it likes meanwhile,
        /// even delete the item, the watch or itself; \p entry lasts no longer than the item's last row.
        virtual void itemSignalled(ItemWatch::Entry &entry, int signal) = 0;
        /// The item is being destroyed and already forgotten by the watch; it is an address and no more.
        virtual void itemDestroyed(const ItemWatch::Entry &last) = 0;

    protected:
        ~Listener() = default;
    };

    /// Marks a notification as being delivered, for a slot that has no arguments to say so.
    class Delivery
    {
    public:
        Delivery(ItemWatch &watch, Entry &signalled, int signalIndex)
            : entry(signalled)
            , signal(signalIndex)
            , m_watch(&watch)
            , m_outer(std::exchange(watch.m_delivery, this))
        { }
        ~Delivery()
        {
            if (m_watch)
                m_watch->m_delivery = m_outer;
        }
        Entry &entry;
        const int signal;

    private:
        friend class ItemWatch;
        Q_DISABLE_COPY(Delivery)
        ItemWatch *m_watch;
        Delivery *m_outer;
        bool m_taken = false;
    };

    explicit ItemWatch(Listener &listener);
    ~ItemWatch();

    /// Another row holds \p item. However many do, each of its signals is reported once.
    Entry &reference(QObject *item, uint hint);
    /// A row let go of \p item: its signals are no longer reported, even if other rows still hold it.
    void dereference(QObject *item);
    /// Null when no row holds \p item.
    Entry *find(const QObject *item) const { return m_entries.value(item, nullptr); }

    /// The notification being delivered, once; null when there is none or it was taken.
    const Delivery *takeDelivery()
    {
        return m_delivery && !std::exchange(m_delivery->m_taken, true) ? m_delivery : nullptr;
    }

private:
    friend class ItemRelay;
    Q_DISABLE_COPY(ItemWatch)
    void signalled(Entry &entry, int signal);
    void release(Entry &entry);

    Listener &m_listener;
    QHash<const QObject *, Entry *> m_entries;
    // The receiver that takes the next items; the others are reached through their entries.
    ItemRelay *m_open = nullptr;
    Delivery *m_delivery = nullptr;
};

#endif // HALVAR_ITEMWATCH_H
