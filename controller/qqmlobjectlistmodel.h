// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_QQMLOBJECTLISTMODEL_H
#define HALVAR_QQMLOBJECTLISTMODEL_H

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVariant>
#include <QVector>

#include <QsLog.h>

#include "halvar-export.h"
#include "itemroles.h"
#include "itemwatch.h"

/// What QML sees of every list of items: the rows, their count, and the operations on them.
///
/// Lives on the interface thread. Operations report no errors: a row outside the list gives null,
/// a null item is ignored, and an item of the wrong class is never found.
class HALVAR_EXPORT QQmlObjectListModelBase : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit QQmlObjectListModelBase(QObject *parent = nullptr);
    ~QQmlObjectListModelBase() override;

public slots:
    virtual int size() const = 0;
    virtual int count() const = 0;
    virtual bool isEmpty() const = 0;
    virtual bool contains(QObject *item) const = 0;
    /// Row of \p item, or -1.
    virtual int indexOf(QObject *item) const = 0;
    /// Number of the role called \p name, or -1.
    virtual int roleForName(const QByteArray &name) const = 0;
    virtual void clear() = 0;
    virtual void append(QObject *item) = 0;
    virtual void prepend(QObject *item) = 0;
    /// \p idx is used as it is given; it must be a row of the list or its end.
    virtual void insert(int idx, QObject *item) = 0;
    /// Takes the item at the higher of the two rows to the lower one, whatever their order.
    virtual void move(int idx, int pos) = 0;
    virtual void remove(QObject *item) = 0;
    virtual void remove(int idx) = 0;
    /// Item at row \p idx, or null.
    virtual QObject *get(int idx) const = 0;
    /// Item whose identifier is \p uid, or null; always null for a list without identifiers.
    virtual QObject *get(const QString &uid) const = 0;
    /// Null when the list is empty.
    virtual QObject *getFirst() const = 0;
    /// Null when the list is empty.
    virtual QObject *getLast() const = 0;
    /// The items in row order.
    virtual QVariantList toVarArray() const = 0;

protected slots:
    /// Reports the change that the sender's signal announces: dataChanged() of its row and role.
    virtual void onItemPropertyChanged() = 0;

signals:
    /// Follows every insertion and removal that changes the number of rows.
    void countChanged();
};

/// List of \a ItemType objects with one role per property of the class.
///
/// Roles: 256 "qtObject" is the item itself; 257 + i is the property of index i, inherited ones
/// included; 0 (display) exists only when a display role name is given. A change announced by a
/// property's notify signal arrives as dataChanged() of that row and role, in a time that does not grow
/// with the rows.
///
/// An item without parent becomes a child of the list; the list deletes (later) what it removes
/// only when it is the parent. The row of an item that somebody else deletes stays, and is null.
template <class ItemType>
class HALVAR_EXPORT QQmlObjectListModel : public QQmlObjectListModelBase, private ItemWatch::Listener
{
public:
    /// \p uidRole names the property that identifies an item for get(QString), \p displayRole the one
    /// that answers Qt::DisplayRole; either may be empty.
    explicit QQmlObjectListModel(QObject *parent = nullptr, const QByteArray &uidRole = emptyBA(),
                                 const QByteArray &displayRole = emptyBA())
        : QQmlObjectListModelBase(parent)
        , m_count(0)
        , m_uidRoleName(uidRole)
        , m_dispRoleName(displayRole)
        , m_metaObj(ItemType::staticMetaObject)
        , m_roles(itemRoles().names())
        , m_signalIdxToRole(itemRoles().signalIdxToRole())
        , m_watch(*this)
    {
        static const QByteArray HANDLER = QByteArrayLiteral("onItemPropertyChanged()");
        m_handler = metaObject()->method(metaObject()->indexOfMethod(HANDLER.constData()));
        if (!m_dispRoleName.isEmpty())
            m_roles.insert(Qt::DisplayRole, m_dispRoleName);
        for (const QByteArray &name : itemRoles().refusedNames()) {
            static const QByteArray CLASS_NAME =
                QByteArrayLiteral("QQmlObjectListModel<") + m_metaObj.className() + '>';
            QLOG_WARN() << "Can't have" << name << "as a role name in" << CLASS_NAME.constData();
        }
    }

    int rowCount(const QModelIndex &parent = noParent()) const override
    {
        Q_UNUSED(parent)
        return m_items.count();
    }
    QHash<int, QByteArray> roleNames() const override { return m_roles; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        ItemType *item = at(index.row());
        if (!item)
            return QVariant();
        if (role == baseRole())
            return QVariant::fromValue(static_cast<QObject *>(item));
        // A class derived from ItemType may declare a property of the same name anew, so only an item of
        // exactly this class is read by the property's index.
        const ItemProperty *property = itemRoles().property(role);
        if (property && item->metaObject() == &ItemType::staticMetaObject)
            return property->read(item);
        const QByteArray name = propertyName(role);
        return name.isEmpty() ? QVariant() : item->property(name.constData());
    }
    /// Emits nothing itself: dataChanged() comes when the property announces its change.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        ItemType *item = at(index.row());
        const QByteArray name = propertyName(role);
        if (!item || role == baseRole() || name.isEmpty())
            return false;
        return item->setProperty(name.constData(), value);
    }

    typedef typename QList<ItemType *>::const_iterator const_iterator;
    const_iterator begin() const { return m_items.constBegin(); }
    const_iterator end() const { return m_items.constEnd(); }
    const_iterator constBegin() const { return m_items.constBegin(); }
    const_iterator constEnd() const { return m_items.constEnd(); }

    /// Item at row \p idx, or null.
    ItemType *at(int idx) const { return hasRow(idx) ? m_items.at(idx) : nullptr; }
    /// Item whose identifier is \p uid, or null.
    ItemType *getByUid(const QString &uid) const { return m_indexByUid.value(uid, nullptr); }
    /// Null when the list is empty.
    ItemType *first() const { return at(0); }
    /// Null when the list is empty.
    ItemType *last() const { return at(m_items.count() - 1); }
    const QList<ItemType *> &toList() const { return m_items; }
    /// First row of \p item, or -1.
    int indexOf(ItemType *item) const
    {
        ItemWatch::Entry *entry = m_watch.find(item);
        return entry ? rowOf(*entry) : -1;
    }

    void append(ItemType *item) { insert(m_items.count(), item); }
    void prepend(ItemType *item) { insert(0, item); }
    void insert(int idx, ItemType *item)
    {
        if (!item)
            return;
        Q_ASSERT_X(idx >= 0 && idx <= m_items.count(), "QQmlObjectListModel::insert", "row out of range");
        beginInsertRows(noParent(), idx, idx);
        // The hints of the shorter side are the ones that go stale.
        if (idx < m_items.count() - idx)
            --m_origin;
        m_items.insert(idx, item);
        referenceItem(item, idx);
        endInsertRows();
        updateCounter();
    }

    int size() const override { return m_items.count(); }
    int count() const override { return m_items.count(); }
    bool isEmpty() const override { return m_items.isEmpty(); }
    bool contains(QObject *item) const override { return indexOf(item) >= 0; }
    int indexOf(QObject *item) const override { return indexOf(qobject_cast<ItemType *>(item)); }
    int roleForName(const QByteArray &name) const override { return ItemRoles::roleForName(m_roles, name); }
    void clear() override
    {
        if (m_items.isEmpty())
            return;
        beginRemoveRows(noParent(), 0, m_items.count() - 1);
        for (ItemType *item : qAsConst(m_items))
            dereferenceItem(item);
        m_items.clear();
        endRemoveRows();
        updateCounter();
    }
    void append(QObject *item) override { append(qobject_cast<ItemType *>(item)); }
    void prepend(QObject *item) override { prepend(qobject_cast<ItemType *>(item)); }
    void insert(int idx, QObject *item) override { insert(idx, qobject_cast<ItemType *>(item)); }
    void move(int idx, int pos) override
    {
        if (idx == pos || !hasRow(idx) || !hasRow(pos))
            return;
        // The interface swaps neighbours with move(i, i + 1) and move(i, i - 1) alike.
        const int lowest = qMin(idx, pos);
        const int highest = qMax(idx, pos);
        beginMoveRows(noParent(), highest, highest, noParent(), lowest);
        m_items.move(highest, lowest);
        if (ItemWatch::Entry *entry = m_watch.find(m_items.at(lowest)))
            entry->hint = hintOf(lowest);
        endMoveRows();
    }
    void remove(QObject *item) override { remove(indexOf(item)); }
    void remove(int idx) override
    {
        if (!hasRow(idx))
            return;
        beginRemoveRows(noParent(), idx, idx);
        ItemType *item = m_items.takeAt(idx);
        if (idx < m_items.count() - idx)
            ++m_origin;
        dereferenceItem(item);
        endRemoveRows();
        updateCounter();
    }
    QObject *get(int idx) const override { return at(idx); }
    QObject *get(const QString &uid) const override { return getByUid(uid); }
    QObject *getFirst() const override { return first(); }
    QObject *getLast() const override { return last(); }
    QVariantList toVarArray() const override
    {
        QVariantList result;
        result.reserve(m_items.count());
        for (ItemType *item : m_items)
            result.append(QVariant::fromValue(item));
        return result;
    }

protected:
    static const QString &emptyStr()
    {
        static const QString ret;
        return ret;
    }
    static const QByteArray &emptyBA()
    {
        static const QByteArray ret;
        return ret;
    }
    static const QModelIndex &noParent()
    {
        static const QModelIndex ret;
        return ret;
    }
    static int baseRole() { return Qt::UserRole; }
    /// Names that a QML delegate already uses for something else.
    static const QSet<QByteArray> &roleNamesBlacklist()
    {
        static const QSet<QByteArray> ret{
            QByteArrayLiteral("display"), QByteArrayLiteral("modelData"), QByteArrayLiteral("model"),
            QByteArrayLiteral("class"),   QByteArrayLiteral("index"),
        };
        return ret;
    }

    // Called for each notify signal of an item, and by any signal that is connected to it.
    void onItemPropertyChanged() override
    {
        if (const ItemWatch::Delivery *delivery = m_watch.takeDelivery()) {
            const int row = rowOf(delivery->entry);
            reportChange(at(row), row, delivery->signal);
        } else {
            ItemType *item = qobject_cast<ItemType *>(sender());
            reportChange(item, indexOf(item), senderSignalIndex());
        }
    }

private:
    static const ItemRoles &itemRoles()
    {
        static const ItemRoles ret(ItemType::staticMetaObject, baseRole(), roleNamesBlacklist());
        return ret;
    }
    bool hasRow(int idx) const { return idx >= 0 && idx < m_items.count(); }
    QByteArray propertyName(int role) const
    {
        return role == Qt::DisplayRole ? m_dispRoleName : m_roles.value(role);
    }

    void itemSignalled(ItemWatch::Entry &entry, int signal) override
    {
        if (itemRoles().changedRoles(signal).isEmpty())
            return;
        const ItemWatch::Delivery delivery(m_watch, entry, signal);
        onItemPropertyChanged();
    }
    void itemDestroyed(const ItemWatch::Entry &last) override
    {
        ItemWatch::Entry entry = last;
        for (int row = rowOf(entry); row >= 0; row = rowOf(entry)) {
            m_items[row] = nullptr;
            if (--entry.rows == 0)
                break;
        }
        unindexItem(last.item);
    }
    void reportChange(ItemType *item, int row, int signal)
    {
        const QVector<int> &changedRoles = itemRoles().changedRoles(signal);
        if (row < 0 || changedRoles.isEmpty())
            return;
        const QModelIndex changed = createIndex(row, 0);
        if (m_dispRoleName.isEmpty() && m_uidRoleName.isEmpty()) {
            emit dataChanged(changed, changed, changedRoles);
            return;
        }
        QVector<int> roles = changedRoles;
        const QByteArray name = m_roles.value(roles.first());
        if (name == m_dispRoleName)
            roles.append(Qt::DisplayRole);
        // A listener may take the item out of the list, or delete it, or the list.
        const QPointer<QQmlObjectListModel> self(this);
        const QPointer<ItemType> guard(item);
        const bool identifies = !m_uidRoleName.isEmpty() && name == m_uidRoleName;
        emit dataChanged(changed, changed, roles);
        if (identifies && self && guard && m_watch.find(item))
            indexItem(item);
    }

    // Hints count from an origin that moves with insertions and removals near the front, so that those,
    // like the ones near the end, leave most hints right.
    uint hintOf(int row) const { return uint(row) + m_origin; }
    int rowOf(ItemWatch::Entry &entry) const
    {
        const auto holds = [this, &entry](int row) {
            return hasRow(row) && static_cast<QObject *>(m_items.at(row)) == entry.item;
        };
        int row = int(entry.hint - m_origin);
        if (entry.rows > 1) {
            for (row = 0; row < m_items.count() && !holds(row);)
                ++row;
        } else if (!holds(row)) {
            // Insertions and removals in the middle displace a hint by a few rows.
            const int guess = qBound(0, row, m_items.count() - 1);
            int distance = 0;
            while (distance < m_items.count() && !holds(guess - distance) && !holds(guess + distance))
                ++distance;
            row = holds(guess - distance) ? guess - distance : guess + distance;
        }
        if (!hasRow(row))
            return -1;
        entry.hint = hintOf(row);
        return row;
    }

    void indexItem(ItemType *item)
    {
        unindexItem(item);
        const QString uid = item->property(m_uidRoleName.constData()).toString();
        if (uid.isEmpty())
            return;
        // Of two items with one identifier, the later one is found by it and the other by none.
        m_uidByItem.remove(m_indexByUid.value(uid, nullptr));
        m_indexByUid.insert(uid, item);
        m_uidByItem.insert(item, uid);
    }
    void unindexItem(const QObject *item)
    {
        const QString uid = m_uidByItem.take(item);
        if (!uid.isEmpty())
            m_indexByUid.remove(uid);
    }
    void referenceItem(ItemType *item, int row)
    {
        if (!item->parent())
            item->setParent(this);
        m_watch.reference(item, hintOf(row));
        if (!m_uidRoleName.isEmpty())
            indexItem(item);
    }
    void dereferenceItem(ItemType *item)
    {
        if (!item)
            return;
        disconnect(this, nullptr, item, nullptr);
        disconnect(item, nullptr, this, nullptr);
        m_watch.dereference(item);
        if (!m_uidRoleName.isEmpty())
            unindexItem(item);
        if (item->parent() == this)
            item->deleteLater();
    }
    void updateCounter()
    {
        if (m_count == m_items.count())
            return;
        m_count = m_items.count();
        emit countChanged();
    }

    int m_count;
    QByteArray m_uidRoleName;
    QByteArray m_dispRoleName;
    QMetaObject m_metaObj;
    QMetaMethod m_handler;
    QHash<int, QByteArray> m_roles;
    QHash<int, int> m_signalIdxToRole;
    QList<ItemType *> m_items;
    QHash<QString, ItemType *> m_indexByUid;
    // The way back of m_indexByUid.
    QHash<const QObject *, QString> m_uidByItem;
    ItemWatch m_watch;
    uint m_origin = 0;
};

#endif // HALVAR_QQMLOBJECTLISTMODEL_H
