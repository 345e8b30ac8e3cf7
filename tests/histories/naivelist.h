// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef NAIVELIST_H
#define NAIVELIST_H

#include <QMap>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

#include "listitem.h"

namespace histories {

/// What happened to a list, for those who show it.
struct Event
{
    enum Kind {
        Inserted,
        Removed,
        Moved,
        Cleared,
        Changed,
        /// The row's values are others now, and nobody was told.
        Silently
    };
    Kind kind;
    int row;
    /// Of a move: where the row came from.
    int from = -1;
};

/// An item of a history. The tests write its properties; the list has no part in them.
struct Known
{
    QPointer<ListItem> object;
    /// Made without a parent, so that the list it comes into owns it.
    bool orphan;
    bool owned = false;
    /// Whether the list says when it changes.
    bool heard = false;
    bool doomed = false;
};

/// What a list of items is to do, done with a plain vector.
class NaiveList
{
public:
    explicit NaiveList(bool hasDisplayRole)
        : m_hasDisplayRole(hasDisplayRole)
    { }

    /// Called for each event, while the rows are what it made them.
    std::function<void(const Event &)> onEvent = [](const Event &) {};

    const std::vector<Known *> &rows() const { return m_rows; }
    int count() const { return int(m_rows.size()); }
    Known *at(int row) const { return m_rows[std::size_t(row)]; }
    int firstRowOf(const Known *item) const;
    int rowsOf(const Known *item) const;
    Known *byUid(const QString &uid) const { return m_byUid.value(uid, nullptr); }
    QStringList uids() const { return m_byUid.keys(); }
    bool hasDisplayRole() const { return m_hasDisplayRole; }

    /// A new item, which the caller puts somewhere.
    Known *make(bool orphan);
    /// Items that are alive, wherever they are.
    std::vector<Known *> living() const;

    void insert(int row, Known *item);
    void remove(int row);
    void move(int from, int to);
    void clear();
    /// The property that reports this role was given another value.
    void changed(Known *item, int role);
    void died(Known *item);
    /// Ends the items that the list was to delete.
    void collect();

    /// Whether those items are gone, and only those, that were to go.
    bool livesAsItShould() const;

    /// The signals that the list was to emit since the last time.
    QStringList takeSignals();

private:
    void leave(Known *item);
    void announceCount();
    void index(Known *item);
    void unindex(const Known *item);
    void tell(Event::Kind kind, int row) { onEvent({kind, row}); }

    const bool m_hasDisplayRole;
    std::vector<std::unique_ptr<Known>> m_items;
    std::vector<Known *> m_rows;
    QMap<QString, Known *> m_byUid;
    int m_announced = 0;
    QStringList m_signals;
};

} // namespace histories

#endif // NAIVELIST_H
